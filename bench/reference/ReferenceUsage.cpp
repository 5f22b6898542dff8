#include "ReferenceUsage.h"

#include "ChangeRows.h"
#include "CommonQuotaHandler.h"
#include "DisplayUnits.h"
#include "MasterFields.h"
#include "MasterUtils.h"
#include "MasterValues.h"
#include "OrderChecks.h"
#include "OrvaneValues.h"
#include "ProfitLoss.h"
#include "Quantity.h"
#include "RealtimeFields.h"
#include "VantaKeys.h"

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;
using ReferenceDerive::Names;

namespace {

QString keyOf(const VariantRecord &record, const QString &symbolText)
{
    return QStringLiteral("%1_%2_%3_%4")
        .arg(text(record, T0TraderId), text(record, tradingAccount), symbolText, text(record, securityExchange));
}

void addTo(VariantRecord &sum, const VariantRecord &record)
{
    for (const QString &field : RealtimeFields::summedQty())
        sum.insert(field, Quantity::satAdd(Quantity::toQty(sum.value(field)), Quantity::toQty(record.value(field))));
    for (const QString &field : RealtimeFields::summedAmount())
        sum.insert(field, Quantity::toNum(sum.value(field)) + Quantity::toNum(record.value(field)));
}

VariantRecord profitRow(const VariantRecord &record)
{
    VariantRecord row;
    for (const QString &field : {tradingAccount, symbol, securityExchange})
        row.insert(field, record.value(field));
    const double lastPrice = CommonQuotaHandler::instance().lastPrice(text(record, symbol), 0);
    if (!(lastPrice > Quantity::Tolerance))
        return row;
    const ProfitLoss::Legs legs = ProfitLoss::ofRecord(record, lastPrice);
    row.insert(FloatProfit, legs.today.floating + legs.carried.floating);
    row.insert(RealizeProfit, legs.today.realized + legs.carried.realized);
    row.insert(TotalProfit, legs.today.total() + legs.carried.total());
    return row;
}

} // namespace

void ReferenceUsage::hold(const RecordList &derived)
{
    WriteLock lock(m_lock);
    m_cache.records.clear();
    for (const VariantRecord &record : derived)
        m_cache.records.insert(keyOf(record, text(record, symbol)), record);
    m_cache.rebuildIndexes();
}

void ReferenceUsage::takeFirst(const RecordList &rows)
{
    RecordList derived = rows;
    for (VariantRecord &record : derived) {
        const QString symbolText = symbolOf(record);
        ReferenceDerive::derive(record, symbolText, displayFactor(symbolText), Names::Prebuilt);
    }
    hold(derived);
}

bool ReferenceUsage::push(const VariantRecord &received, Names names)
{
    using Master_Fields::System::ModifyTime;
    VariantRecord record = received;
    const QString symbolText = symbolOf(record);
    const QString key = keyOf(record, symbolText);
    WriteLock lock(m_lock);
    const bool isNew = !m_cache.records.contains(key);
    if (!isNew && !(text(m_cache.records.value(key), ModifyTime) < text(record, ModifyTime)))
        return false;
    ReferenceDerive::derive(record, symbolText, displayFactor(symbolText), names);
    if (isNew)
        m_cache.add(key, record);
    else
        m_cache.records.insert(key, record);
    lock.unlock();
    MasterUtils::SendEventMsg(nullptr, Vanta_Keys::EventMsgName::ManualT0PoolRealTimeUpdated, QVariantList{record});
    return true;
}

VariantRecord ReferenceUsage::one(const Records::Keys &keys) const
{
    return list({{keys.account}, {keys.trader}, keys.symbol, keys.exchange}).value(0);
}

RecordList ReferenceUsage::list(const Records::Filter &filter) const
{
    RecordList found;
    ReadLock lock(m_lock);
    const IndexedCache::Ids keys = m_cache.find(filter.accounts, filter.traders, filter.symbol, filter.exchange);
    for (const QString &key : keys)
        found.append(m_cache.records.value(key));
    return found;
}

RecordList ReferenceUsage::sums(const Records::Filter &filter) const
{
    QMap<QString, VariantRecord> sums;
    const RecordList records = list(filter);
    for (const VariantRecord &record : records) {
        const QString group = text(record, symbol) + text(record, securityExchange);
        if (sums.contains(group))
            addTo(sums[group], record);
        else
            sums.insert(group, record);
    }
    return sums.values();
}

RecordList ReferenceUsage::profits(const Records::Filter &filter) const
{
    RecordList rows;
    const RecordList records = list(filter);
    for (const VariantRecord &record : records)
        rows.append(profitRow(record));
    return rows;
}

QString ReferenceUsage::checkOrder(const VariantRecord &row, const QString &trader, int checkFlags) const
{
    const QString side = text(row, Master_Fields::Security::SideUnion);
    OrderChecks::Order order;
    order.accounts = OrderChecks::matchingAccounts(row.value(tradingAccount).toStringList(), side);
    order.symbol = text(row, symbol);
    order.exchange = text(row, securityExchange);
    order.sideUnion = side;
    order.price = Quantity::toNum(row.value(Orvane_Fields::Security::price));
    order.quantity = Quantity::toQty(row.value(Orvane_Fields::Security::orderQty));
    order.isBuy = OrderChecks::isBuy(side);
    order.quota = [&] {
        qint64 sum = 0;
        const RecordList records = list({order.accounts, {trader}, order.symbol, order.exchange});
        for (const VariantRecord &record : records)
            sum += Quantity::toQty(record.value(order.isBuy ? RtTotalBuyLimit : RtTotalSellLimit));
        return sum;
    };
    return OrderChecks::check(order, checkFlags);
}

QString ReferenceUsage::checkOrders(const RecordList &orders, const QString &trader, RecordList &results,
                                    int checkFlags) const
{
    int failed = 0;
    for (const VariantRecord &order : orders) {
        const QString failure = checkOrder(order, trader, checkFlags);
        VariantRecord result = order;
        result.insert(Orvane_Fields::System::requestExeStatus, failure.isEmpty()
                                                                   ? Orvane_Values::RequestExeStatus::success
                                                                   : Orvane_Values::RequestExeStatus::fail);
        if (!failure.isEmpty()) {
            ++failed;
            result.insert(Orvane_Fields::System::textDescription, failure);
        }
        results.append(result);
    }
    return ChangeRows::overallCode(failed, orders.size());
}
