#pragma once

#include "ScriptedChannel.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// Rows as the server sends them: 200 accounts, 50 traders, 2,000 symbols.
namespace Records {

/// Fields of a usage record and of a pool as the hub holds them.
constexpr int FieldCount = 34;

/// What a record is looked up by.
struct Keys {
    QString account;
    QString trader;
    QString symbol;
    QString exchange;
    QString securityId;
    QString poolId;
};

/// Different keys, the same for the same arguments. The first account has ofFirst of them, the others share the
/// rest at random.
QVector<Keys> keys(int count, int ofFirst);

QString firstAccount();

/// A login that knows the symbols.
ScriptedReference reference();

/// A usage record before the hub derives its fields. time: its modification time, a rising number.
VariantRecord usage(const Keys &keys, qint64 quantity, qint64 time);

VariantRecord pool(const Keys &keys, qint64 quantity);

} // namespace Records
