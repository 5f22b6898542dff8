#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "Service.h"
#include "StandFields.h"

#include <limits>

namespace {

namespace Picture_ = Stand_Fields::Picture;
namespace T0_ = Master_Fields::ManualT0;
using Orvane_Fields::UserAccount::productAccount;

constexpr int allOfThem = std::numeric_limits<int>::max();

/// What a resource's pools hold.
struct Allocated {
    qint64 publicQty = 0;
    qint64 privateQty = 0;
    QStringList traders; ///< ascending by pool

    void add(const StoredPool &pool)
    {
        (pool.trader == Books::publicTrader() ? publicQty : privateQty) += pool.quantity;
        traders.append(pool.trader);
    }
};

} // namespace

MessageBody Service::picture(const Request &request)
{
    if (!request.user().isManager())
        return Answers::refused(GatewayTexts::onlyManagers());
    QVariantList resources;
    QVariantList pools;
    for (const Account &account : m_books.accounts) {
        if (!m_memory.enabled.contains(account.tradingAccount))
            continue;
        resources += pictureOfResources(account.tradingAccount);
        pools += pictureOfPools(account.tradingAccount);
    }
    MessageBody answer = Answers::success();
    answer.values.insert(Picture_::Products, pictureOfProducts());
    answer.values.insert(Picture_::Resources, resources);
    answer.values.insert(Picture_::SecurityPools, pools);
    answer.values.insert(Picture_::RealtimeUsage, pictureOfUsage());
    return answer;
}

QVariantList Service::pictureOfProducts() const
{
    QMap<QPair<QString, QString>, VariantRecord> products;
    for (const Account &account : m_books.accounts) {
        if (!m_memory.enabled.contains(account.tradingAccount))
            continue;
        VariantRecord &row = products[{account.productAccount, account.assetProp}];
        QStringList accounts = row.value(Picture_::tradingAccounts).toStringList();
        accounts.append(account.tradingAccount);
        accounts.sort();
        row = {{productAccount, account.productAccount},
               {Stand_Fields::Account::productName, account.productName},
               {Stand_Fields::Account::assetProp, account.assetProp},
               {Picture_::tradingAccounts, accounts}};
    }
    QVariantList rows;
    for (const VariantRecord &row : qAsConst(products))
        rows.append(row);
    return rows;
}

QVariantList Service::pictureOfResources(const QString &account)
{
    QHash<QString, Allocated> allocated;
    const QVector<StoredPool> pools = m_store->pools(account, QString(), allOfThem);
    for (const StoredPool &pool : pools)
        allocated[pool.resourceId].add(pool);

    QVariantList rows;
    const QVector<StoredResource> resources = m_store->resources(account, QString(), allOfThem);
    for (const StoredResource &resource : resources) {
        const Allocated parts = allocated.value(resource.id);
        VariantRecord row = securityRow(resource.holding);
        row.insert(T0_::ResourceId, resource.id);
        row.insert(T0_::ResourceQty, resource.quantity);
        row.insert(T0_::PublicPoolQty, parts.publicQty);
        row.insert(T0_::PrivatePoolQty, parts.privateQty);
        row.insert(T0_::T0TraderId, parts.traders.join(QLatin1Char(',')));
        rows.append(row);
    }
    return rows;
}

QVariantList Service::pictureOfPools(const QString &account)
{
    QVariantList rows;
    const QVector<StoredPool> pools = m_store->pools(account, QString(), allOfThem);
    for (const StoredPool &pool : pools) {
        const User *trader = m_books.user(pool.trader);
        VariantRecord row = securityRow(pool.holding);
        row.insert(T0_::PoolDetailId, pool.id);
        row.insert(T0_::T0TraderId, pool.trader);
        row.insert(T0_::T0TraderName, trader ? trader->userName : pool.trader);
        row.insert(T0_::PoolTotalQty, pool.quantity);
        row.insert(T0_::MaxExposureQty, pool.maxExposure);
        row.insert(T0_::MaxPendExposureQty, pool.maxPendExposure);
        rows.append(row);
    }
    return rows;
}

QVariantList Service::pictureOfUsage()
{
    QVariantList rows;
    const QVector<StoredUsage> records = m_store->allUsage();
    for (const StoredUsage &usage : records) {
        if (!m_memory.enabled.contains(usage.holding.account))
            continue;
        VariantRecord row = securityRow(usage.holding);
        row.insert(T0_::T0TraderId, usage.trader);
        row.insert(T0_::RtPoolTotalQty, usage.limits.poolTotal);
        row.insert(T0_::RtTotalBuyLimit, usage.limits.dailyBuy + usage.limits.closeBuy);
        row.insert(T0_::RtTotalSellLimit, usage.limits.dailySell + usage.limits.closeSell);
        rows.append(row);
    }
    return rows;
}

VariantRecord Service::securityRow(const Holding &holding) const
{
    const Instrument *instrument = m_books.instrument(holding.securityID, holding.exchange);
    return {{Orvane_Fields::UserAccount::tradingAccount, holding.account},
            {Orvane_Fields::Security::symbol, instrument ? instrument->symbol : QString()},
            {Orvane_Fields::UserAccount::securityExchange, holding.exchange}};
}
