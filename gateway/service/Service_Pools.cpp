#include "Service.h"

#include "Answers.h"
#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"

namespace {

namespace T0_ = Master_Fields::ManualT0;

/// Traders of one holding may be named once.
void checkRepeated(ChangeRow &row, const QString &trader, bool repeated)
{
    const bool isPublic = trader == Books::publicTrader();
    row.require(!repeated, isPublic ? GatewayTexts::twoPublicRows() : GatewayTexts::repeatedTrader(trader));
}

/// One without a trader when there is none.
StoredPool poolOfTrader(const QVector<StoredPool> &pools, const Holding &holding, const QString &trader)
{
    for (const StoredPool &pool : pools)
        if (pool.trader == trader && pool.holding == holding)
            return pool;
    return {};
}

/// The limits that a row sets; those that it does not name stay.
void readLimits(ChangeRow &row, qint64 factor, StoredPool &pool)
{
    pool.maxExposure = row.limit(T0_::MaxExposureQty, factor, pool.maxExposure);
    pool.maxPendExposure = row.limit(T0_::MaxPendExposureQty, factor, pool.maxPendExposure);
}

/// Whose orders may use a pool; empty: everybody's.
QString usersOf(const StoredPool &pool)
{
    return pool.trader == Books::publicTrader() ? QString() : pool.trader;
}

VariantRecord idRow(const QString &id)
{
    return {{T0_::PoolDetailId, id}};
}

} // namespace

MessageBody Service::allocatePools(const Request &request)
{
    ChangeRow header(request.row);
    const StoredResource resource = resourceOf(header);
    const QString addType = request.text(Master_Fields::System::addType);
    header.require(addType == Master_Values::AddType::Cover, GatewayTexts::onlyCover(addType));
    const int type = header.poolType();
    if (!header.refusal().isEmpty())
        return Answers::refused(header.refusal());

    // The pools of the other kind stay; those of this kind become what the rows say.
    QVector<StoredPool> replaced;
    qint64 total = 0;
    const QVector<StoredPool> pools = m_store->poolsOf(resource.holding);
    for (const StoredPool &pool : pools) {
        if (int(pool.trader != Books::publicTrader()) == type)
            replaced.append(pool);
        else
            total += pool.quantity;
    }
    QVector<StoredPool> wanted;
    const QString refusal = readSomeRows(request.rows, [&](ChangeRow &row) {
        StoredPool pool = allocationOf(row, resource);
        row.require(row.poolType() == type, GatewayTexts::otherPoolType());
        checkRepeated(row, pool.trader, !poolOfTrader(wanted, pool.holding, pool.trader).trader.isEmpty());
        total += pool.quantity;
        row.require(total <= resource.quantity, GatewayTexts::overAllocated(total, resource.quantity));
        const StoredPool known = poolOfTrader(replaced, pool.holding, pool.trader);
        pool.id = known.id;
        pool.maxExposure = known.maxExposure;
        pool.maxPendExposure = known.maxPendExposure;
        wanted.append(pool);
    });
    return refusal.isEmpty() ? replacePools(replaced, wanted) : Answers::refused(refusal);
}

StoredPool Service::allocationOf(ChangeRow &row, const StoredResource &resource)
{
    StoredPool pool;
    pool.resourceId = resource.id;
    pool.holding = resource.holding;
    pool.trader = traderOf(row, resource.holding.account);
    const QString security = row.id(Orvane_Fields::Security::securityID);
    const QString exchange = row.id(Orvane_Fields::UserAccount::securityExchange);
    row.require(Holding{resource.holding.account, security, exchange} == resource.holding,
                GatewayTexts::otherSecurity(security, exchange));
    pool.quantity = row.quantity(T0_::PoolTotalQty, factorOf(resource.holding));
    return pool;
}

MessageBody Service::replacePools(const QVector<StoredPool> &before, const QVector<StoredPool> &wanted)
{
    for (const StoredPool &pool : before)
        if (poolOfTrader(wanted, pool.holding, pool.trader).quantity == 0)
            m_changes.removePool(pool);
    RecordList rows;
    for (const StoredPool &pool : wanted)
        if (pool.quantity > 0)
            rows.append(idRow(m_changes.savePool(pool)));
    return Answers::success(rows);
}

MessageBody Service::alterPools(const Request &request)
{
    QVector<StoredPool> wanted;
    QSet<QString> seen;
    QMap<Holding, qint64> totals;
    QString refusal = readSomeRows(request.rows, [&](ChangeRow &row) {
        StoredPool pool = poolOf(row);
        row.require(!seen.contains(pool.id), GatewayTexts::repeatedId(pool.id));
        seen.insert(pool.id);
        const qint64 factor = factorOf(pool.holding);
        const qint64 before = pool.quantity;
        if (row.has(T0_::PoolTotalQty))
            pool.quantity = row.quantity(T0_::PoolTotalQty, factor);
        readLimits(row, factor, pool);
        if (!totals.contains(pool.holding))
            totals.insert(pool.holding, allocated(pool.holding));
        totals[pool.holding] += pool.quantity - before;
        wanted.append(pool);
    });
    // Only the whole counts: what one row takes another may give. One that takes nothing is not to blame.
    for (int i = 0; i < wanted.size() && refusal.isEmpty(); ++i) {
        if (wanted.at(i).quantity <= m_store->pool(wanted.at(i).id).quantity)
            continue;
        const qint64 total = totals.value(wanted.at(i).holding);
        const qint64 resource = m_store->resource(wanted.at(i).resourceId).quantity;
        if (total > resource)
            refusal = refusalInRow(i, GatewayTexts::overAllocated(total, resource));
    }
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    for (const StoredPool &pool : qAsConst(wanted))
        m_changes.savePool(pool);
    return Answers::success();
}

MessageBody Service::deletePools(const Request &request)
{
    QMap<QString, StoredPool> doomed;
    const QString refusal = readRows(request.rows, [&](ChangeRow &row) {
        const StoredPool pool = poolOf(row);
        row.require(!doomed.contains(pool.id), GatewayTexts::repeatedId(pool.id));
        const QString against = liveAgainst(pool.holding, usersOf(pool));
        row.require(against.isEmpty(), against);
        doomed.insert(pool.id, pool);
    });
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    for (const StoredPool &pool : qAsConst(doomed))
        m_changes.removePool(pool);
    return Answers::success();
}

/// What a request that adds resources together with their pools asks for.
struct Service::Addition {
    bool cover = false;
    QString account;
    QMap<Holding, StoredResource> resources; ///< as they shall be
    QMap<Holding, int> rows;                 ///< the first data row of each, from 0
    QSet<QPair<Holding, QString>> traders;   ///< of each
    QVector<StoredPool> pools;               ///< as they shall be, in the order of the rows
};

void Service::readAddition(ChangeRow &row, Addition &addition)
{
    if (row.has(Orvane_Fields::UserAccount::tradingAccount)) {
        const QString named = row.id(Orvane_Fields::UserAccount::tradingAccount);
        row.require(named == addition.account, GatewayTexts::oneAccount(named));
    }
    const Holding holding = holdingOf(row, addition.account);
    const QString trader = traderOf(row, addition.account);
    checkRepeated(row, trader, addition.traders.contains({holding, trader}));
    addition.traders.insert({holding, trader});
    const qint64 given = row.quantity(T0_::PoolTotalQty, factorOf(holding), 1);

    if (!addition.resources.contains(holding)) {
        const StoredResource known = m_store->resourceOf(holding);
        addition.resources.insert(holding, {known.id, holding, addition.cover ? 0 : known.quantity});
    }
    qint64 &quantity = addition.resources[holding].quantity;
    quantity += given;
    row.require(quantity <= ChangeRow::maxQuantity, GatewayTexts::tooLarge(T0_::PoolTotalQty, ChangeRow::maxQuantity));

    StoredPool pool = poolOfTrader(m_store->poolsOf(holding), holding, trader);
    pool.trader = trader;
    pool.holding = holding;
    pool.quantity = addition.cover ? given : pool.quantity + given;
    readLimits(row, factorOf(holding), pool);
    addition.pools.append(pool);
}

QVector<StoredPool> Service::poolsLeftOut(const Addition &addition)
{
    QVector<StoredPool> found;
    for (auto holding = addition.resources.keyBegin(); holding != addition.resources.keyEnd(); ++holding) {
        const QVector<StoredPool> pools = addition.cover ? m_store->poolsOf(*holding) : QVector<StoredPool>();
        for (const StoredPool &pool : pools)
            if (!addition.traders.contains({*holding, pool.trader}))
                found.append(pool);
    }
    return found;
}

QString Service::removalStandsAgainst(const StoredPool &pool, const Addition &addition)
{
    if (pool.trader != Books::publicTrader())
        return standsAgainst(pool.holding, pool.trader);
    // Whoever gets nothing of his own traded on the public part.
    const QVector<StoredUsage> records = m_store->usageOf(pool.holding);
    for (const StoredUsage &usage : records) {
        const bool isNamed = addition.traders.contains({pool.holding, usage.trader});
        const QString against = isNamed ? QString() : standsAgainst(pool.holding, usage.trader);
        if (!against.isEmpty())
            return against;
    }
    return QString();
}

MessageBody Service::addResourcesAndPools(const Request &request)
{
    // deliberate: the header's pool type says nothing; rows of both kinds stand in one request.
    ChangeRow header(request.row);
    Addition addition;
    addition.cover = header.covers();
    addition.account = header.id(Orvane_Fields::UserAccount::tradingAccount);
    checkAddable(header, addition.account);
    if (!header.refusal().isEmpty())
        return Answers::refused(header.refusal());
    int at = 0;
    QString refusal = readSomeRows(request.rows, [&](ChangeRow &row) {
        readAddition(row, addition);
        const Holding holding = addition.pools.constLast().holding;
        addition.rows.insert(holding, addition.rows.value(holding, at++));
    });
    const QVector<StoredPool> leftOut = poolsLeftOut(addition);
    for (const StoredPool &pool : leftOut) {
        const QString against = removalStandsAgainst(pool, addition);
        if (refusal.isEmpty() && !against.isEmpty())
            refusal = refusalInRow(addition.rows.value(pool.holding), against);
    }
    return refusal.isEmpty() ? saveAddition(addition, leftOut) : Answers::refused(refusal);
}

MessageBody Service::saveAddition(const Addition &addition, const QVector<StoredPool> &leftOut)
{
    for (const StoredPool &pool : leftOut)
        m_changes.removePool(pool);
    QMap<Holding, QString> ids;
    for (const StoredResource &resource : addition.resources)
        ids.insert(resource.holding, m_changes.saveResource(resource));
    RecordList rows;
    for (StoredPool pool : addition.pools) {
        pool.resourceId = ids.value(pool.holding);
        rows.append(idRow(m_changes.savePool(pool)));
    }
    return Answers::success(rows);
}
