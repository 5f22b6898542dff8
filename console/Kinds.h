#pragma once

#include "CommandLine.h"
#include "MasterInitStateMgr.h"
#include "SymbolListType.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>

class ZrPresenterClass;
using TextLists = QMap<QString, QStringList>;

/// What an argument may be: how it is called in messages and how it is read from what was written. readKind
/// returns an empty text, or what is wrong.
template <typename T> QString kindName();
template <> QString kindName<QString>();
template <> QString kindName<bool>();
template <> QString kindName<int>();
template <> QString kindName<long long>();
template <> QString kindName<ZrPresenterClass *>();
template <> QString kindName<double>();
template <> QString kindName<QStringList>();
template <> QString kindName<VariantRecord>();
template <> QString kindName<RecordList>();
template <> QString kindName<TextLists>();

QString readKind(const Argument &argument, QString &value);
QString readKind(const Argument &argument, bool &value);
QString readKind(const Argument &argument, int &value);
QString readKind(const Argument &argument, long long &value);
QString readKind(const Argument &argument, ZrPresenterClass *&value); ///< the word "presenter": a null one
QString readKind(const Argument &argument, double &value);
QString readKind(const Argument &argument, QStringList &value);
QString readKind(const Argument &argument, VariantRecord &value);
QString readKind(const Argument &argument, RecordList &value);
QString readKind(const Argument &argument, TextLists &value);

/// What an operation returned, made of what VariantRecord, QVariantList and simple values can hold.
QVariant present(const QString &value);
QVariant present(bool value);
QVariant present(long long value);
QVariant present(double value);
QVariant present(MasterInitStateMgr::InitState value); ///< "not started", "loading", "finished" or "failed"
QVariant present(const QStringList &value);
QVariant present(const VariantRecord &value);
QVariant present(const RecordList &value);
QVariant present(const QMap<QString, QString> &value);
QVariant present(const TextLists &value);
QVariant present(const QList<SymbolListType> &value);
