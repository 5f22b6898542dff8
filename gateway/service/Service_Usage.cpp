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

/// What is known of one security in one account before its limits are computed.
struct Group {
    qint64 publicQty = 0;
    QMap<QString, StoredUsage> byTrader;

    StoredUsage &usageOf(const QString &trader, const Holding &holding)
    {
        StoredUsage &usage = byTrader[trader];
        usage.trader = trader;
        usage.holding = holding;
        return usage;
    }
};

using Groups = QMap<Holding, Group>;

Groups groupsOf(const QVector<StoredUsage> &records)
{
    Groups groups;
    for (const StoredUsage &usage : records)
        groups[usage.holding].byTrader.insert(usage.trader, usage);
    return groups;
}

/// Private quantities follow from the pools alone.
void applyPools(Groups &groups, const QVector<StoredPool> &pools, const Books &books)
{
    for (const StoredPool &pool : pools) {
        Group &group = groups[pool.holding];
        if (pool.trader != Books::publicTrader()) {
            group.usageOf(pool.trader, pool.holding).use.privateQty += pool.quantity;
            continue;
        }
        group.publicQty += pool.quantity;
        const QStringList traders = books.tradersOf(pool.holding.account);
        for (const QString &trader : traders)
            group.usageOf(trader, pool.holding);
    }
}

/// The records of a group that are new or have other limits than the last time, with their limits.
QVector<StoredUsage> changedIn(const Group &group, const Ledger::Terms &terms)
{
    QVector<Ledger::TraderUse> uses;
    for (const StoredUsage &usage : group.byTrader)
        uses.append(usage.use);
    const QVector<Ledger::Limits> limits = Ledger::limits(terms, uses);
    QVector<StoredUsage> changed;
    int at = 0;
    for (StoredUsage usage : group.byTrader) {
        const Ledger::Limits &fresh = limits.at(at++);
        if (!usage.modifyTime.isEmpty() && usage.limits == fresh)
            continue;
        usage.limits = fresh;
        changed.append(usage);
    }
    return changed;
}

Envelope usagePush(const VariantRecord &row)
{
    return Envelope::push(Master_MsgType::ManualT0RealTimePoolUsagePush, {{}, {row}});
}

} // namespace

bool Service::bringUsageUpToDate()
{
    if (!m_store->errorText().isEmpty() || !m_store->begin())
        return false;
    const bool good = refreshUsage(m_store->allUsage(), m_store->allPools());
    if (good)
        return m_store->commit();
    m_store->rollback();
    return false;
}

bool Service::refreshUsage(const QVector<StoredUsage> &records, const QVector<StoredPool> &pools)
{
    Groups groups = groupsOf(records);
    applyPools(groups, pools, m_books);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        const Holding &holding = group.key();
        const Instrument *instrument = m_books.instrument(holding.securityID, holding.exchange);
        const Ledger::Terms terms{group->publicQty, instrument && instrument->t0,
                                  m_memory.enabled.contains(holding.account)};
        for (StoredUsage usage : changedIn(*group, terms)) {
            usage.modifyTime = m_store->nextModifyTime();
            m_store->saveUsage(usage);
            if (!m_sessions.isEmpty())
                m_pushes.append({usagePush(usageRow(usage)), usage.trader});
        }
    }
    return m_store->errorText().isEmpty();
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
        m_pushes.append({usagePush(usageRow(usage)), trader, &request.session});
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
    m_pushes.append({usagePush(row), trader});
    return Answers::success();
}
