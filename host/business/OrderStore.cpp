#include "OrderStore.h"

#include "OrvaneFields.h"
#include "StandFields.h"

#include <QtCore/QHash>
#include <QtCore/QReadWriteLock>
#include <QtCore/QVector>

#include <algorithm>
#include <cmath>

namespace {

constexpr int defaultPage = 100;

using Records = QHash<QString, VariantRecord>; ///< by id; never handed out: a push would copy it

struct State {
    QReadWriteLock lock;
    Records orders;
    Records fills;
};

State &state()
{
    static auto *state = new State; // never deleted: look-ups may come while the process ends
    return *state;
}

bool isLive(const VariantRecord &order)
{
    const QString status = order.value(Orvane_Fields::Security::orderStatus).toString();
    return status == Stand_Values::OrderStatus::Accepted || status == Stand_Values::OrderStatus::PartlyFilled;
}

/// Many changes fall on one time of the market's clock, but what is filled only grows, and an order ends once.
bool isOlder(const VariantRecord &order, const VariantRecord &than)
{
    const QString time = order.value(Stand_Fields::Order::updateTime).toString();
    const QString otherTime = than.value(Stand_Fields::Order::updateTime).toString();
    const qint64 filled = order.value(Stand_Fields::Order::filledQty).toLongLong();
    const qint64 otherFilled = than.value(Stand_Fields::Order::filledQty).toLongLong();
    return time < otherTime || filled < otherFilled || (isLive(order) && !isLive(than));
}

QStringList textsOf(const QVariant &value)
{
    const bool isList = value.userType() == QMetaType::QStringList || value.userType() == QMetaType::QVariantList;
    return isList ? value.toStringList() : QStringList(value.toString());
}

/// A filter with its values as texts, so that they are converted once and not for each record.
class Filter
{
public:
    explicit Filter(const VariantRecord &filter)
    {
        for (auto it = filter.cbegin(); it != filter.cend(); ++it)
            m_wanted.append({it.key(), textsOf(it.value())});
    }

    bool passes(const VariantRecord &record) const
    {
        return std::all_of(m_wanted.cbegin(), m_wanted.cend(), [&](const QPair<QString, QStringList> &wanted) {
            return wanted.second.contains(record.value(wanted.first).toString());
        });
    }

private:
    QVector<QPair<QString, QStringList>> m_wanted;
};

RecordList passing(const Records &records, const Filter &filter)
{
    RecordList found;
    for (const VariantRecord &record : records) {
        if (filter.passes(record))
            found.append(record);
    }
    return found;
}

/// What is not a number is none: it would have no place among the others.
bool isNumber(const QVariant &value)
{
    const bool isReal = value.userType() == QMetaType::Double && !std::isnan(value.toDouble());
    return isReal || value.userType() == QMetaType::LongLong; // what a message can hold
}

/// Numbers before texts, so that a field that has both still has one order.
int compare(const QVariant &a, const QVariant &b)
{
    if (isNumber(a) != isNumber(b))
        return isNumber(a) ? -1 : 1;
    if (!isNumber(a))
        return QString::compare(a.toString(), b.toString());
    return a.toDouble() < b.toDouble() ? -1 : a.toDouble() > b.toDouble();
}

void sortBy(RecordList &records, const QStringList &sortKeys)
{
    std::sort(records.begin(), records.end(), [&](const VariantRecord &a, const VariantRecord &b) {
        for (const QString &key : sortKeys) {
            const bool descending = key.startsWith(QLatin1Char('-'));
            const QString field = descending ? key.mid(1) : key;
            const int order = compare(a.value(field), b.value(field));
            if (order != 0)
                return descending ? order > 0 : order < 0;
        }
        return false;
    });
}

VariantRecord narrowed(const VariantRecord &record, const QStringList &fields)
{
    if (fields.isEmpty())
        return record;
    VariantRecord out;
    for (const QString &field : fields) {
        const auto found = record.constFind(field);
        if (found != record.constEnd())
            out.insert(field, found.value());
    }
    return out;
}

/// Times begin with their day.
void removeBefore(Records &records, const QString &timeField, const QString &day)
{
    for (auto record = records.begin(); record != records.end();) {
        if (record->value(timeField).toString() < day)
            record = records.erase(record);
        else
            ++record;
    }
}

} // namespace

RecordList OrderStore::enterOrders(const RecordList &rows)
{
    RecordList entered;
    QWriteLocker lock(&state().lock);
    for (const VariantRecord &row : rows) {
        const QString id = row.value(Orvane_Fields::Security::orderID).toString();
        const auto held = state().orders.constFind(id);
        if (!id.isEmpty() && (held == state().orders.cend() || !isOlder(row, *held))) {
            state().orders.insert(id, row);
            entered.append(row);
        }
    }
    return entered;
}

RecordList OrderStore::enterFills(const RecordList &rows)
{
    RecordList entered;
    QWriteLocker lock(&state().lock);
    for (const VariantRecord &row : rows) {
        const QString id = row.value(Stand_Fields::Fill::fillID).toString();
        if (!id.isEmpty() && !state().fills.contains(id)) {
            state().fills.insert(id, row);
            entered.append(row);
        }
    }
    return entered;
}

void OrderStore::beginDay(const QString &day)
{
    QWriteLocker lock(&state().lock);
    removeBefore(state().orders, Stand_Fields::Order::orderTime, day);
    removeBefore(state().fills, Stand_Fields::Fill::fillTime, day);
}

RecordList OrderStore::orders(const VariantRecord &filter, int &total, int start, int count,
                              const QStringList &sortKeys, const QStringList &fields)
{
    const Filter wanted(filter);
    QReadLocker lock(&state().lock);
    RecordList found = passing(state().orders, wanted);
    lock.unlock();
    sortBy(found, sortKeys + QStringList(Orvane_Fields::Security::orderID));
    total = found.size();
    RecordList page = found.mid(qMax(0, start), count > 0 ? count : defaultPage);
    for (VariantRecord &record : page)
        record = narrowed(record, fields);
    return page;
}

RecordList OrderStore::fills(const VariantRecord &filter)
{
    const Filter wanted(filter);
    QReadLocker lock(&state().lock);
    RecordList found = passing(state().fills, wanted);
    lock.unlock();
    sortBy(found, {Stand_Fields::Fill::fillID});
    return found;
}

void OrderStore::clear()
{
    QWriteLocker lock(&state().lock);
    state().orders.clear();
    state().fills.clear();
}
