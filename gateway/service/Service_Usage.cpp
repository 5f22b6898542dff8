#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <limits>

namespace {

namespace T0_ = Master_Fields::ManualT0;

using Groups = QMap<Holding, UsageGroup>;

UsageGroup &groupAt(Groups &groups, const Holding &holding)
{
    UsageGroup &group = groups[holding];
    group.holding = holding;
    return group;
}

/// Private quantities and live orders are not kept in the records: they follow from pools and orders alone.
void applyPools(Groups &groups, const QVector<StoredPool> &pools, const Books &books)
{
    for (const StoredPool &pool : pools) {
        UsageGroup &group = groupAt(groups, pool.holding);
        if (pool.trader != Books::publicTrader()) {
            group.usageOf(pool.trader).use.privateQty += pool.quantity;
            continue;
        }
        group.terms.publicQty += pool.quantity;
        const QStringList traders = books.tradersOf(pool.holding.account);
        for (const QString &trader : traders)
            group.usageOf(trader);
    }
}

void applyLive(UsageGroup &group, const QString &user, bool buy, const Ledger::Parts &open)
{
    Ledger::Live &live = group.usageOf(user).use.live;
    (buy ? live.buyPre : live.sellPre) += open.pre;
    (buy ? live.buyDaily : live.sellDaily) += open.daily;
}

} // namespace

bool Service::refreshUsage(const UsageParts &parts)
{
    Groups groups;
    for (const StoredUsage &usage : parts.records)
        groupAt(groups, usage.holding).byTrader.insert(usage.trader, usage);
    applyPools(groups, parts.pools, m_books);
    for (const StoredOrder &order : parts.orders)
        applyLive(groupAt(groups, order.holding), order.user, order.buy, order.open);
    for (UsageGroup &group : groups) {
        setTerms(group);
        saveGroup(group);
    }
    return m_store->errorText().isEmpty();
}

void Service::setTerms(UsageGroup &group) const
{
    const Instrument *instrument = m_books.instrument(group.holding.securityID, group.holding.exchange);
    group.terms.t0 = instrument && instrument->t0;
    group.terms.enabled = m_memory.enabled.contains(group.holding.account);
}

UsageGroup Service::groupOf(const Holding &holding)
{
    Groups groups;
    const QVector<StoredUsage> records = m_store->usageOf(holding);
    for (const StoredUsage &usage : records)
        groupAt(groups, holding).byTrader.insert(usage.trader, usage);
    applyPools(groups, m_store->poolsOf(holding), m_books);
    UsageGroup &group = groupAt(groups, holding);
    const QVector<StoredLive> sums = m_store->liveOf(holding);
    for (const StoredLive &live : sums)
        applyLive(group, live.user, live.buy, live.open);
    setTerms(group);
    return group;
}

void Service::saveGroup(const UsageGroup &group, const QString &touched)
{
    const QVector<Ledger::Limits> limits = Ledger::limits(group.terms, group.uses());
    int at = 0;
    for (StoredUsage usage : group.byTrader) {
        const Ledger::Limits &fresh = limits.at(at++);
        if (!usage.modifyTime.isEmpty() && usage.limits == fresh && usage.trader != touched)
            continue;
        usage.limits = fresh;
        saveUsage(usage);
    }
}

void Service::saveUsage(StoredUsage &usage)
{
    usage.modifyTime = m_store->nextModifyTime();
    m_store->saveUsage(usage);
    push(Master_MsgType::ManualT0RealTimePoolUsagePush, usageRow(usage), usage.trader);
}

MessageBody Service::queryUsage(const Request &request)
{
    const Answers::PageSize size = Answers::pageSize(request.values);
    if (!size.refusal.isEmpty())
        return Answers::refused(size.refusal);
    bool valid = true;
    const QVariant asked = request.values.value(Stand_Fields::Paging::pageIndex, 0);
    const int page = asked.toInt(&valid);
    if (!valid || page < 0 || page > 1'000'000'000 / size.rows)
        return Answers::refused(GatewayTexts::badPosition());

    QStringList traders = request.text(T0_::T0TraderId).split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (!request.user().isManager())
        traders = traders.contains(request.user().userID) ? QStringList{request.user().userID} : QStringList();
    const QVector<StoredUsage> records = m_store->usage(traders, page * size.rows, size.rows + 1);
    RecordList rows;
    for (int i = 0; i < records.size() && i < size.rows; ++i)
        rows.append(usageRow(records.at(i)));
    MessageBody answer = Answers::success(rows);
    answer.values.insert(Stand_Fields::Paging::hasMore, records.size() > size.rows);
    return answer;
}

VariantRecord Service::usageRow(const StoredUsage &usage) const
{
    const Holding &holding = usage.holding;
    const Ledger::TraderUse &use = usage.use;
    const Account account = m_books.account(holding.account) ? *m_books.account(holding.account) : Account();
    const double factor = dispFactor(holding);
    const auto units = [factor](qint64 quantity) { return double(quantity) / factor; };
    return {{T0_::T0TraderId, usage.trader},
            {Orvane_Fields::UserAccount::tradingAccount, holding.account},
            {Orvane_Fields::Security::securityID, holding.securityID},
            {Orvane_Fields::UserAccount::securityExchange, holding.exchange},
            {Master_Fields::System::ModifyTime, usage.modifyTime},
            {T0_::RtPoolTotalQty, units(usage.limits.poolTotal)},
            {T0_::DailyBuyLimit, units(usage.limits.dailyBuy)},
            {T0_::DailySellLimit, units(usage.limits.dailySell)},
            {T0_::DailyBoughtQty, units(use.dailyBought)},
            {T0_::DailySoldQty, units(use.dailySold)},
            {T0_::DailyBoughtAmount, use.dailyBoughtAmount},
            {T0_::DailySoldAmount, use.dailySoldAmount},
            {T0_::DailyBuyTradeFee, account.buyFee},
            {T0_::DailySellTradeFee, account.sellFee},
            {T0_::PreUnclosedBuyLimit, units(usage.limits.closeBuy)},
            {T0_::PreUnclosedSellLimit, units(usage.limits.closeSell)},
            {T0_::PreUnclosedBoughtQty, units(use.leg.bought)},
            {T0_::PreUnclosedSoldQty, units(use.leg.sold)},
            {T0_::PreUnclosedBoughtAmount, use.leg.boughtAmount},
            {T0_::PreUnclosedSoldAmount, use.leg.soldAmount},
            {T0_::PreUnclosedSide, legSideText(use.leg.side)},
            {T0_::TransDayProfitOwner, account.profitOwner}};
}

void Service::pushSnapshot(const Request &request, const QString &trader)
{
    const QVector<StoredUsage> records = m_store->usage({trader}, 0, std::numeric_limits<int>::max());
    for (const StoredUsage &usage : records)
        push(Master_MsgType::ManualT0RealTimePoolUsagePush, usageRow(usage), trader, &request.session);
}

MessageBody Service::pushUsage(const Request &request)
{
    const QString trader = request.text(T0_::T0TraderId);
    if (trader.isEmpty())
        return Answers::refused(GatewayTexts::noTrader());
    // Clients join ids with these.
    for (const QString &field : {T0_::T0TraderId, Orvane_Fields::UserAccount::tradingAccount,
                                 Orvane_Fields::Security::securityID, Orvane_Fields::UserAccount::securityExchange}) {
        const QString id = request.text(field);
        if (id.contains(QLatin1Char('_')) || id.contains(QLatin1Char(',')))
            return Answers::refused(GatewayTexts::badId(id));
    }
    VariantRecord row = request.row;
    if (row.value(Master_Fields::System::ModifyTime).toString().isEmpty())
        row.insert(Master_Fields::System::ModifyTime, m_store->nextModifyTime());
    push(Master_MsgType::ManualT0RealTimePoolUsagePush, row, trader);
    return Answers::success();
}
