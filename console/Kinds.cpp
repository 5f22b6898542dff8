#include "Kinds.h"

#include <limits>

namespace {

QString expected(const QString &kind, const Argument &argument)
{
    return QStringLiteral("%1 is expected, not %2").arg(kind, argument.text);
}

bool isText(const QVariant &value)
{
    return value.userType() == QMetaType::QString;
}

/// A number that was written bare, or as the start value of a reference; invalid for anything else.
QVariant numberOf(const Argument &argument)
{
    bool isNumber = false;
    if (argument.kind == Argument::Kind::Word) {
        const qlonglong integer = argument.text.toLongLong(&isNumber);
        if (isNumber)
            return integer;
        const double number = argument.text.toDouble(&isNumber);
        return isNumber ? QVariant(number) : QVariant();
    }
    const int type = argument.value.userType();
    return type == QMetaType::LongLong || type == QMetaType::Double ? argument.value : QVariant();
}

} // namespace

template <> QString kindName<QString>()
{
    return QStringLiteral("a text");
}

template <> QString kindName<bool>()
{
    return QStringLiteral("true or false");
}

template <> QString kindName<int>()
{
    return QStringLiteral("an integer");
}

template <> QString kindName<double>()
{
    return QStringLiteral("a number");
}

template <> QString kindName<QStringList>()
{
    return QStringLiteral("a list of texts");
}

template <> QString kindName<VariantRecord>()
{
    return QStringLiteral("a record");
}

template <> QString kindName<RecordList>()
{
    return QStringLiteral("a list of records");
}

QString readKind(const Argument &argument, QString &value)
{
    if (argument.kind != Argument::Kind::Word && !isText(argument.value))
        return expected(kindName<QString>(), argument);
    value = argument.kind == Argument::Kind::Word ? argument.text : argument.value.toString();
    return {};
}

QString readKind(const Argument &argument, bool &value)
{
    const bool isBool = argument.value.userType() == QMetaType::Bool;
    const bool isTrue = argument.text == QLatin1String("true");
    if (!isBool && !isTrue && argument.text != QLatin1String("false"))
        return expected(kindName<bool>(), argument);
    value = isBool ? argument.value.toBool() : isTrue;
    return {};
}

QString readKind(const Argument &argument, int &value)
{
    const QVariant number = numberOf(argument);
    const double asDouble = number.toDouble();
    using Limits = std::numeric_limits<int>;
    if (!number.isValid() || !(asDouble >= Limits::min() && asDouble <= Limits::max()) || asDouble != int(asDouble))
        return expected(kindName<int>(), argument);
    value = int(asDouble);
    return {};
}

QString readKind(const Argument &argument, double &value)
{
    const QVariant number = numberOf(argument);
    if (!number.isValid())
        return expected(kindName<double>(), argument);
    value = number.toDouble();
    return {};
}

QString readKind(const Argument &argument, QStringList &value)
{
    if (argument.value.userType() != QMetaType::QVariantList)
        return expected(kindName<QStringList>(), argument);
    QStringList texts;
    const QVariantList items = argument.value.toList();
    for (const QVariant &item : items) {
        if (!isText(item))
            return QStringLiteral("%1 is expected, item %2 of it is none")
                .arg(kindName<QStringList>(), QString::number(texts.size() + 1));
        texts.append(item.toString());
    }
    value = texts;
    return {};
}

QString readKind(const Argument &argument, VariantRecord &value)
{
    if (argument.value.userType() != QMetaType::QVariantMap)
        return expected(kindName<VariantRecord>(), argument);
    value = argument.value.toMap();
    return {};
}

QString readKind(const Argument &argument, RecordList &value)
{
    if (argument.value.userType() != QMetaType::QVariantList)
        return expected(kindName<RecordList>(), argument);
    RecordList rows;
    const QVariantList items = argument.value.toList();
    for (const QVariant &item : items) {
        if (item.userType() != QMetaType::QVariantMap)
            return QStringLiteral("%1 is expected, item %2 of it is none")
                .arg(kindName<RecordList>(), QString::number(rows.size() + 1));
        rows.append(item.toMap());
    }
    value = rows;
    return {};
}

QVariant present(const QString &value)
{
    return value;
}

QVariant present(bool value)
{
    return value;
}

QVariant present(long long value)
{
    return value;
}

QVariant present(double value)
{
    return value;
}

QVariant present(MasterInitStateMgr::InitState value)
{
    switch (value) {
    case MasterInitStateMgr::Initing:
        return QStringLiteral("loading");
    case MasterInitStateMgr::Inited:
        return QStringLiteral("finished");
    case MasterInitStateMgr::InitFailed:
        return QStringLiteral("failed");
    case MasterInitStateMgr::NotInit:
        break;
    }
    return QStringLiteral("not started");
}

QVariant present(const QStringList &value)
{
    return value;
}

QVariant present(const VariantRecord &value)
{
    return value;
}

QVariant present(const RecordList &value)
{
    QVariantList rows;
    for (const VariantRecord &row : value)
        rows.append(row);
    return rows;
}

QVariant present(const QMap<QString, QString> &value)
{
    QVariantMap map;
    for (auto entry = value.cbegin(); entry != value.cend(); ++entry)
        map.insert(entry.key(), entry.value());
    return map;
}

QVariant present(const QMap<QString, QStringList> &value)
{
    QVariantMap map;
    for (auto entry = value.cbegin(); entry != value.cend(); ++entry)
        map.insert(entry.key(), entry.value());
    return map;
}

QVariant present(const QList<SymbolListType> &value)
{
    QVariantList rows;
    for (const SymbolListType &filter : value)
        rows.append(VariantRecord{{QStringLiteral("type"), filter.type},
                                  {QStringLiteral("subTypes"), filter.subTypes},
                                  {QStringLiteral("suffixes"), filter.suffixes},
                                  {QStringLiteral("flag"), filter.flag},
                                  {QStringLiteral("further"), filter.further}});
    return rows;
}
