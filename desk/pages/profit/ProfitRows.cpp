#include "ProfitRows.h"

#include "MasterFields.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <cmath>

using namespace Master_Fields::ManualT0;

namespace {

/// Not a number and infinite count as 0.
double number(const VariantRecord &row, const QString &field)
{
    const double value = row.value(field).toDouble();
    return std::isfinite(value) ? value : 0;
}

bool matches(const QString &wanted, const VariantRecord &usage, const QString &field)
{
    return wanted.isEmpty() || usage.value(field).toString() == wanted;
}

/// What all records of a group have in common.
const QVector<QString> &commonFields(ProfitRows::Group group)
{
    using namespace Orvane_Fields;
    static const QVector<QString> fields[] = {
        {T0TraderId, UserAccount::tradingAccount, Security::symbol, UserAccount::securityExchange},
        {Security::symbol, UserAccount::securityExchange},
        {T0TraderId},
        {UserAccount::tradingAccount}};
    return fields[int(group)]; // in the order of ProfitRows::Group
}

/// The key of the group that a record belongs to.
QString groupOf(ProfitRows::Group group, const QString &key, const VariantRecord &usage)
{
    if (group == ProfitRows::Group::Detail)
        return key;
    const QVector<QString> &fields = commonFields(group);
    QString text = usage.value(fields.constFirst()).toString();
    for (int i = 1; i < fields.size(); ++i)
        text += QLatin1Char('_') + usage.value(fields.at(i)).toString();
    return text;
}

void insertFigures(VariantRecord &row, const UsageTotals &totals)
{
    if (totals.rows == totals.withoutPrice)
        return;
    row.insert(FloatProfit, totals.floatProfit);
    row.insert(RealizeProfit, totals.realizeProfit);
    row.insert(TotalProfit, totals.totalProfit);
    row.insert(ProfitFields::exposure(), totals.exposure);
    if (totals.limit > 0) {
        row.insert(ProfitFields::limit(), totals.limit);
        row.insert(ProfitFields::limitShare(), totals.limitedExposure / totals.limit);
    }
}

/// Of one security only: shares of several are no quantity.
void insertQuantities(VariantRecord &row, const ProfitSum &sum)
{
    row.insert(RtRealBoughtQty, sum.boughtQty);
    row.insert(RtRealSoldQty, sum.soldQty);
    row.insert(OpenPosQty, sum.openQty);
    if (sum.isOneSided && sum.openQty != 0)
        row.insert(OpenAvgPrice, sum.openCost / std::abs(sum.openQty));
}

} // namespace

void ProfitSum::add(const UsageEntry &entry)
{
    totals.add(entry.figures);
    boughtQty += number(entry.usage, RtRealBoughtQty);
    soldQty += number(entry.usage, RtRealSoldQty);
    boughtAmount += number(entry.usage, RtRealBoughtAmount);
    soldAmount += number(entry.usage, RtRealSoldAmount);
    const double open = number(entry.usage, OpenPosQty);
    isOneSided = isOneSided && open * openQty >= 0;
    openQty += open;
    openCost += std::abs(open) * number(entry.usage, OpenAvgPrice);
}

bool ProfitRows::Filter::passes(const VariantRecord &usage) const
{
    return matches(trader, usage, T0TraderId) && matches(account, usage, Orvane_Fields::UserAccount::tradingAccount) &&
           matches(symbol, usage, Orvane_Fields::Security::symbol) && (!onlyActive || isActive(usage));
}

ProfitRows::ProfitRows(Group group, const Filter &filter)
    : m_group(group)
    , m_filter(filter)
{}

bool ProfitRows::isActive(const VariantRecord &usage)
{
    return number(usage, RtRealBoughtQty) != 0 || number(usage, RtRealSoldQty) != 0 || number(usage, OpenPosQty) != 0;
}

void ProfitRows::replace(const QHash<QString, UsageEntry> &entries)
{
    m_entries.clear();
    m_members.clear();
    m_changed.clear();
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
        put(entry.key(), *entry);
    m_changed.clear();
}

/// A record that no longer passes is kept: within a day what was active stays so, and the rest of the filter is fixed
/// fields.
void ProfitRows::put(const QString &key, const UsageEntry &entry)
{
    const bool isHeld = m_entries.contains(key);
    if (!isHeld && !m_filter.passes(entry.usage))
        return;
    m_entries.insert(key, entry);
    const QString group = groupOf(m_group, key, entry.usage);
    if (!isHeld)
        m_members[group].append(key);
    m_changed.insert(group);
}

RecordList ProfitRows::takeChanged()
{
    RecordList changed;
    const QSet<QString> groups = std::exchange(m_changed, {});
    for (const QString &group : groups)
        changed.append(row(group));
    return changed;
}

RecordList ProfitRows::rows() const
{
    RecordList rows;
    QStringList groups = m_members.keys();
    groups.sort();
    for (const QString &group : qAsConst(groups))
        rows.append(row(group));
    return rows;
}

/// Summed anew instead of corrected by the difference: sums of changes would drift.
ProfitSum ProfitRows::sumOf(const QString &group) const
{
    ProfitSum sum;
    const QStringList members = m_members.value(group);
    for (const QString &key : members)
        sum.add(m_entries.value(key));
    return sum;
}

VariantRecord ProfitRows::row(const QString &group) const
{
    const QStringList members = m_members.value(group);
    const UsageEntry first = m_entries.value(members.value(0));
    const ProfitSum sum = sumOf(group);
    VariantRecord row{{ProfitFields::key(), group},
                      {ProfitFields::records(), members.size()},
                      {ProfitFields::withoutPrice(), sum.totals.withoutPrice},
                      {RtRealBoughtAmount, sum.boughtAmount},
                      {RtRealSoldAmount, sum.soldAmount}};
    for (const QString &field : commonFields(m_group))
        row.insert(field, first.usage.value(field));
    if (m_group == Group::Detail || m_group == Group::Symbol) {
        insertQuantities(row, sum);
        if (first.figures.lastPrice)
            row.insert(Stand_Fields::Quote::lastPrice, *first.figures.lastPrice);
    }
    insertFigures(row, sum.totals);
    return row;
}

UsageTotals ProfitRows::total() const
{
    UsageTotals total;
    for (const UsageEntry &entry : m_entries)
        total.add(entry.figures);
    return total;
}

QMap<QString, UsageTotals> ProfitRows::totals(const QHash<QString, UsageEntry> &entries, Group group,
                                              const Filter &filter)
{
    QMap<QString, UsageTotals> totals;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        if (filter.passes(entry->usage))
            totals[groupOf(group, entry.key(), entry->usage)].add(entry->figures);
    }
    return totals;
}

QString ProfitRows::keyOf(const VariantRecord &row)
{
    return row.value(ProfitFields::key()).toString();
}

QString ProfitFields::key()
{
    return QStringLiteral("key");
}

QString ProfitFields::exposure()
{
    return QStringLiteral("exposure");
}

QString ProfitFields::limit()
{
    return QStringLiteral("limit");
}

QString ProfitFields::limitShare()
{
    return QStringLiteral("limitShare");
}

QString ProfitFields::records()
{
    return QStringLiteral("records");
}

QString ProfitFields::withoutPrice()
{
    return QStringLiteral("withoutPrice");
}
