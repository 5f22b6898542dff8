#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"

#include <algorithm>

namespace {

namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;

enum PoolKind { PublicPool = 0, PrivatePool = 1 };

/// Negative limits mean "none" and are no quantities, so they are not scaled.
qint64 exposure(qint64 quantity, qint64 factor)
{
    return quantity < 0 ? -1 : quantity / factor;
}

} // namespace

MessageBody Service::queryProducts(const Request &request)
{
    // The first row echoes the request; its reader drops it.
    RecordList rows{request.row};
    for (const Account &account : m_books.accounts)
        if (m_memory.enabled.contains(account.tradingAccount))
            rows.append({{UserAccount_::productAccount, account.productAccount},
                         {UserAccount_::tradingAccount, account.tradingAccount}});
    return Answers::success(rows);
}

MessageBody Service::queryUsersByRole(const Request &request)
{
    const QString organ = request.text(UserAccount_::organCode);
    const QString role = request.text(Master_Fields::UserAccount::UserRoleId);
    QMap<QString, VariantRecord> byId;
    const bool known = request.text(Master_Fields::UserAccount::UserRoleType) == Master_Values::UserRoleType::OperRoles;
    for (const User &user : m_books.users)
        if (known && user.organCode == organ && user.roles.contains(role))
            byId.insert(user.userID, {{UserAccount_::userID, user.userID}, {UserAccount_::userName, user.userName}});
    return Answers::success(byId.values());
}

MessageBody Service::queryResources(const Request &request)
{
    const QString account = request.text(UserAccount_::tradingAccount);
    return Answers::idPage(
        request.values, Store::isResourceId,
        [&](const QString &afterId, int limit) { return m_store->resources(account, afterId, limit); },
        [](const StoredResource &resource) { return resource.id; },
        [this](const StoredResource &resource) {
            const auto factor = qint64(dispFactor(resource.holding));
            return VariantRecord{{T0_::ResourceId, resource.id},
                                 {UserAccount_::tradingAccount, resource.holding.account},
                                 {Orvane_Fields::Security::securityID, resource.holding.securityID},
                                 {UserAccount_::securityExchange, resource.holding.exchange},
                                 {T0_::ResourceQty, resource.quantity / factor}};
        });
}

MessageBody Service::queryPools(const Request &request)
{
    const QString account = request.text(UserAccount_::tradingAccount);
    return Answers::idPage(
        request.values, Store::isPoolId,
        [&](const QString &afterId, int limit) { return m_store->pools(account, afterId, limit); },
        [](const StoredPool &pool) { return pool.id; },
        [this](const StoredPool &pool) {
            const auto factor = qint64(dispFactor(pool.holding));
            const bool isPublic = pool.trader == Books::publicTrader();
            // The trader goes out under both names: clients index a first load by the one and later answers
            // by the other.
            return VariantRecord{{T0_::PoolDetailId, pool.id},
                                 {UserAccount_::tradingAccount, pool.holding.account},
                                 {Orvane_Fields::Security::securityID, pool.holding.securityID},
                                 {UserAccount_::securityExchange, pool.holding.exchange},
                                 {T0_::T0TraderId, pool.trader},
                                 {UserAccount_::userID, pool.trader},
                                 {T0_::ResourceId, pool.resourceId},
                                 {T0_::PoolType, int(isPublic ? PublicPool : PrivatePool)},
                                 {T0_::PoolTotalQty, pool.quantity / factor},
                                 {T0_::MaxExposureQty, exposure(pool.maxExposure, factor)},
                                 {T0_::MaxPendExposureQty, exposure(pool.maxPendExposure, factor)}};
        });
}

MessageBody Service::queryAccountPriority(const Request &request)
{
    const QString trader = request.text(T0_::T0TraderId);
    if (trader != request.user().userID && !request.user().isManager())
        return Answers::refused(GatewayTexts::notAllowed(trader));
    const User *user = m_books.user(trader);
    const QVector<QString> accounts = user ? user->accounts.toVector() : QVector<QString>();
    return Answers::listPage(request.values, accounts, [this](const QString &account) {
        const bool enabled = m_memory.enabled.contains(account);
        return enabled ? VariantRecord{{UserAccount_::tradingAccount, account}} : VariantRecord();
    });
}
