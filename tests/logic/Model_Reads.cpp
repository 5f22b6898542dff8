#include "Model.h"

#include "ModelRows.h"

using namespace ModelRows;
using Orvane_Fields::UserAccount::userID;

namespace {

const QString publicTrader = QStringLiteral("public");

/// Account, symbol and exchange: what a public pool and its partner have in common.
QString holding(const VariantRecord &row)
{
    return QStringList{str(row, tradingAccount), str(row, Security::symbol), str(row, securityExchange)}.join('_');
}

} // namespace

QString Model::traderOf(const VariantRecord &pool) const
{
    return str(pool, poolTraderIsUser ? userID : T0TraderId);
}

QString Model::nameOf(const QString &trader) const
{
    return trader == publicTrader ? trader : traderNames.value(trader);
}

VariantRecord Model::named(VariantRecord pool) const
{
    pool.insert(T0TraderName, nameOf(str(pool, T0TraderId)));
    return pool;
}

RecordList Model::poolsByResource(const QString &id) const
{
    RecordList own =
        those(pools, [&](const auto &pool) { return resourceId(pool) == id && !orphans.contains(poolId(pool)); });
    sortBy<poolId>(own);
    return own;
}

VariantRecord Model::withSummary(VariantRecord resource) const
{
    int publicQty = 0;
    int privateQty = 0;
    QStringList ids;
    QStringList names;
    const RecordList own = poolsByResource(resourceId(resource));
    for (const VariantRecord &pool : own) {
        const bool isPrivate = pool.value(PoolType).toInt() == 1;
        (isPrivate ? privateQty : publicQty) += int(num(pool, PoolTotalQty));
        ids.append(isPrivate ? str(pool, T0TraderId) : publicTrader);
        names.append(isPrivate ? traderNames.value(ids.last()) : publicTrader);
    }
    resource.insert(PublicPoolQty, publicQty);
    resource.insert(PrivatePoolQty, privateQty);
    resource.insert(T0TraderId, ids.join(','));
    resource.insert(T0TraderName, names.join(','));
    return resource;
}

RecordList Model::allResources() const
{
    return each(resources, [&](const auto &row) { return withSummary(row); });
}

RecordList Model::resource(const QString &id) const
{
    return those(resources, [&](const auto &row) { return resourceId(row) == id; });
}

RecordList Model::resourcesOf(const QStringList &products, const QString &assetProp, const QString &symbol,
                              const QString &exchange, const QStringList &traderIds) const
{
    const QStringList of = enabledAccounts(products, assetProp);
    return those(allResources(), [&](const auto &row) {
        const RecordList own = poolsByResource(resourceId(row));
        const bool hasTrader =
            std::any_of(own.cbegin(), own.cend(), [&](const auto &pool) { return traderIds.contains(traderOf(pool)); });
        return (traderIds.isEmpty() || hasTrader) && matches(row, of, symbol, exchange);
    });
}

RecordList Model::allPools() const
{
    return each(pools, [&](const auto &pool) { return named(pool); });
}

RecordList Model::poolsOfResource(const QString &id, int type) const
{
    return those(allPools(), [&](const auto &pool) {
        return resourceId(pool) == id && !orphans.contains(poolId(pool)) &&
               (type == 3 || pool.value(PoolType).toInt() == type);
    });
}

RecordList Model::poolsById(const QStringList &ids) const
{
    RecordList rows;
    for (const QString &id : ids)
        rows += those(pools, [&](const auto &pool) { return poolId(pool) == id; });
    return rows;
}

RecordList Model::poolsOf(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                          const QString &exchange, bool withPublic) const
{
    RecordList matching =
        those(allPools(), [&](const auto &pool) { return matches(pool, accountList, symbol, exchange); });
    sortBy<poolId>(matching);
    RecordList rows;
    RecordList publicRows; // one for each holding, the last by id
    for (const VariantRecord &pool : qAsConst(matching)) {
        const QString trader = traderOf(pool);
        const bool isPublic = withPublic && trader == publicTrader;
        if (traderIds.isEmpty() ? !isPublic : !trader.isEmpty() && traderIds.contains(trader))
            rows.append(pool);
        if (isPublic)
            put<holding>(publicRows, pool);
    }
    for (VariantRecord &row : rows) {
        for (int i = publicRows.size() - 1; i >= 0; --i) {
            if (holding(publicRows.at(i)) == holding(row))
                row.insert(PublicPoolQty, publicRows.takeAt(i).value(PoolTotalQty));
        }
    }
    sortBy<holding>(publicRows);
    return rows + each(publicRows, [](VariantRecord row) {
               row.remove(T0TraderName);
               row.insert(PublicPoolQty, row.value(PoolTotalQty));
               row.insert(PoolTotalQty, 0);
               return row;
           });
}

QStringList Model::enabledAccounts(const QStringList &products, const QString &assetProp) const
{
    QStringList of;
    for (const QString &product : products) {
        for (const Candidate &candidate : candidates()) {
            if (candidate.product == product && enabled.value(product).contains(candidate.assetProp) &&
                (assetProp.isEmpty() || candidate.assetProp == assetProp))
                of.append(candidate.account);
        }
    }
    return of;
}

QStringList Model::accountsOf(const QStringList &products, const QStringList &properties) const
{
    QStringList of;
    for (const Candidate &candidate : candidates()) {
        const QStringList wanted = products.isEmpty() ? QStringList(enabled.keys()) : products;
        const QStringList props = properties.isEmpty() ? enabled.value(candidate.product) : properties;
        if (wanted.contains(candidate.product) && props.contains(candidate.assetProp))
            of.append(candidate.account);
    }
    return of;
}

RecordList Model::usageOf(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                          const QString &exchange) const
{
    return those(usage, [&](const auto &row) {
        return matches(row, accountList, symbol, exchange) &&
               (traderIds.isEmpty() || traderIds.contains(str(row, T0TraderId)));
    });
}
