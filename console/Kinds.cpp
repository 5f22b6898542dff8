#include "Kinds.h"

#include <algorithm>
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

/// The first item of another type; -1 when there is none.
int firstOther(const QVariantList &items, int type)
{
    const auto other =
        std::find_if(items.cbegin(), items.cend(), [type](const QVariant &item) { return item.userType() != type; });
    return other == items.cend() ? -1 : int(other - items.cbegin());
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

template <> QString kindName<long long>()
{
    return kindName<int>();
}

template <> QString kindName<ZrPresenterClass *>()
{
    return QStringLiteral("the word presenter");
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

template <> QString kindName<TextLists>()
{
    return QStringLiteral("a record of lists of texts");
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

QString readKind(const Argument &argument, long long &value)
{
    const QVariant number = numberOf(argument);
    if (number.userType() != QMetaType::LongLong)
        return expected(kindName<long long>(), argument);
    value = number.toLongLong();
    return {};
}

QString readKind(const Argument &argument, ZrPresenterClass *&value)
{
    if (argument.kind != Argument::Kind::Word || argument.text != QLatin1String("presenter"))
        return expected(kindName<ZrPresenterClass *>(), argument);
    value = nullptr; // the host accepts it, and sends in its own name
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
    const QVariantList items = argument.value.toList();
    const int wrong = firstOther(items, QMetaType::QString);
    if (wrong >= 0)
        return QStringLiteral("%1 is expected, item %2 of it is none")
            .arg(kindName<QStringList>(), QString::number(wrong + 1));
    value = argument.value.toStringList();
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
    const QVariantList items = argument.value.toList();
    const int wrong = firstOther(items, QMetaType::QVariantMap);
    if (wrong >= 0)
        return QStringLiteral("%1 is expected, item %2 of it is none")
            .arg(kindName<RecordList>(), QString::number(wrong + 1));
    value.clear();
    for (const QVariant &item : items)
        value.append(item.toMap());
    return {};
}

QString readKind(const Argument &argument, TextLists &value)
{
    if (argument.value.userType() != QMetaType::QVariantMap)
        return expected(kindName<TextLists>(), argument);
    const QVariantMap entries = argument.value.toMap();
    TextLists lists;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        if (entry->userType() != QMetaType::QVariantList || firstOther(entry->toList(), QMetaType::QString) >= 0)
            return QStringLiteral("%1 is expected, \"%2\" of it is no list of texts")
                .arg(kindName<TextLists>(), entry.key());
        lists.insert(entry.key(), entry->toStringList());
    }
    value = lists;
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

QVariant present(const TextLists &value)
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
