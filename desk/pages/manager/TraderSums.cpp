#include "TraderSums.h"

#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

using namespace Master_Fields::ManualT0;

namespace {

using Sums = QMap<QString, TraderSums>;

void addPools(Sums &sums)
{
    const RecordList pools = ManualT0Logic::GetAllSecurityPoolList();
    for (const VariantRecord &pool : pools) {
        const QString trader = pool.value(T0TraderId).toString();
        if (trader == ManualT0Logic::PublicTrader)
            continue;
        TraderSums &sum = sums[trader];
        ++sum.pools;
        sum.poolQty += pool.value(PoolTotalQty).toDouble();
    }
}

void addUsage(Sums &sums, const QStringList &accounts)
{
    const RecordList records = ManualT0Logic::GetRealtimePoolDetailList(accounts, {}, {}, {});
    for (const VariantRecord &usage : records) {
        TraderSums &sum = sums[usage.value(T0TraderId).toString()];
        sum.boughtQty += usage.value(RtRealBoughtQty).toDouble();
        sum.soldQty += usage.value(RtRealSoldQty).toDouble();
        sum.usage.add(UsageFigures::of(usage));
    }
}

void addOrders(Sums &sums, const QStringList &accounts)
{
    const RecordList orders = ManualT0Logic::GetCancelableOrderList(accounts, {}, {}, {}, {}, true);
    for (const VariantRecord &order : orders)
        ++sums[order.value(Orvane_Fields::UserAccount::loginUserId).toString()].liveOrders;
}

} // namespace

void TraderSums::add(const TraderSums &other)
{
    pools += other.pools;
    poolQty += other.poolQty;
    boughtQty += other.boughtQty;
    soldQty += other.soldQty;
    liveOrders += other.liveOrders;
    usage += other.usage;
}

QMap<QString, TraderSums> TraderSums::all()
{
    Sums sums;
    const QMap<QString, QString> traders = ManualT0Logic::GetAllT0TraderId();
    for (auto trader = traders.keyBegin(); trader != traders.keyEnd(); ++trader)
        sums.insert(*trader, {});
    QStringList accounts = ManualT0Logic::GetAllT0TradingAccountList();
    accounts.removeDuplicates();
    addPools(sums);
    addUsage(sums, accounts);
    addOrders(sums, accounts);
    for (auto sum = sums.begin(); sum != sums.end(); ++sum)
        sum->trader = sum.key();
    return sums;
}
