#pragma once

#include "ScriptedChannel.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// Rows as the server sends them: 200 accounts, 50 traders (one is the public one), 2,000 symbols.
namespace Records {

/// Fields of a record as the hub holds it.
constexpr int UsageFields = 34;
constexpr int PoolFields = 25;

/// Pools of the account whose answers are measured, whatever the number of records.
constexpr int AnsweredPools = 500;

/// Of every record when a hub is filled.
constexpr qint64 LoadedQuantity = 1000;

/// What a record is looked up by.
struct Keys {
    QString account;
    QString trader;
    QString symbol;
    QString exchange;
    QString securityId;
    QString poolId;
    QString resourceId;
};

/// What a list is asked for. An empty text or list is any; accounts are always named.
struct Filter {
    QStringList accounts;
    QStringList traders;
    QString symbol;
    QString exchange;
};

/// Different keys, the same for the same count. The first AnsweredPools are of answeredAccount(); 200 are planted: ten
/// symbols that twenty accounts have once each, and nobody else; the rest is spread at random.
QVector<Keys> keys(int count);
QVector<Keys> groupedByResource(QVector<Keys> keys); ///< ten pools a resource instead of about one
Filter planted(int symbol);                          ///< symbol: 0 to 9. Exactly twenty records, among however many

const QStringList &accounts();
const QStringList &traders();
QString answeredAccount();
QString loginTrader();

/// A login as loginTrader() that knows the symbols.
ScriptedReference reference();

/// A usage record before the hub derives its fields. time: its modification time, a rising number.
VariantRecord usage(const Keys &keys, qint64 quantity, qint64 time);
VariantRecord pool(const Keys &keys, qint64 quantity);
VariantRecord resource(const Keys &keys, qint64 quantity);
RecordList traderRows();
QString traderName(const QString &trader);

/// Answers for answeredAccount() after a load, each as received. One object for each that takes them.
class PoolAnswers
{
public:
    RecordList next(int changed); ///< so many pools, the first ones, differ from the answer before

private:
    QVector<qint64> m_quantities = QVector<qint64>(AnsweredPools, LoadedQuantity);
};

/// The same rows as a client gets them: encoded and decoded, no value shared with those given.
RecordList asReceived(const RecordList &rows);

} // namespace Records
