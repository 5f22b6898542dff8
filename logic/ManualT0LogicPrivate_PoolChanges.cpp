#include "ChangeRows.h"
#include "DisplayUnits.h"
#include "HostLog.h"
#include "ManualT0Logic.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "PoolTypes.h"
#include "Quantity.h"
#include "UserTexts.h"

using namespace Master_Fields::ManualT0;

namespace {

QString checkPoolQuantity(const VariantRecord &row, const QString &symbol)
{
    return ChangeRows::checkMultiple(symbol, UserTexts::poolQuantity(), Quantity::toQty(row.value(PoolTotalQty)));
}

/// A pool as an allocation asks for it.
VariantRecord allocationRow(const VariantRecord &row, const QString &traderId, int poolType, const QString &symbol)
{
    using Orvane_Fields::Security::securityID;
    using Orvane_Fields::UserAccount::securityExchange;
    return {{T0TraderId, traderId},
            {securityID, row.value(securityID)},
            {securityExchange, row.value(securityExchange)},
            {PoolType, poolType},
            {PoolTotalQty, ChangeRows::inServerUnits(row, PoolTotalQty, symbol).value(PoolTotalQty)}};
}

/// The rows of new pools by trading account; the first bad row's text.
QString groupNewPools(const RecordList &rows, const QSet<QString> &t0Accounts, const QMap<QString, QString> &traders,
                      ChangeRows::Groups &groups)
{
    int number = 0;
    for (const VariantRecord &row : rows) {
        ++number;
        const QString trader = text(row, T0TraderId);
        const bool isPublic = trader == ManualT0Logic::PublicTrader;
        QString symbol;
        QString failure = ChangeRows::checkAccountAndSymbol(row, t0Accounts, symbol);
        if (failure.isEmpty() && !isPublic && !traders.contains(trader))
            failure = UserTexts::unknownTrader();
        if (failure.isEmpty())
            failure = checkPoolQuantity(row, symbol);
        if (!failure.isEmpty())
            return ChangeRows::inRow(number, rows, failure);
        VariantRecord pool = ChangeRows::inServerUnits(row, PoolTotalQty, symbol);
        pool.insert(PoolType, isPublic ? PoolTypes::Public : PoolTypes::Private);
        groups[text(row, Orvane_Fields::UserAccount::tradingAccount)].append(pool);
    }
    return {};
}

/// Private when any of the rows is.
int commonPoolType(const RecordList &pools)
{
    const bool allPublic = std::all_of(pools.cbegin(), pools.cend(), [](const VariantRecord &pool) {
        return Quantity::toQty(pool.value(PoolType)) == PoolTypes::Public;
    });
    return allPublic ? PoolTypes::Public : PoolTypes::Private;
}

} // namespace

QString ManualT0LogicPrivate::AllocatePublicResource(const RecordList &rows, QString &errorText)
{
    ChangeRows::Groups groups;
    QStringList accounts;
    int number = 0;
    for (const VariantRecord &row : rows) {
        ++number;
        const QString symbol = MasterBusinessDataInterface::GetSymbolFromMap(row);
        const QString failure = checkPublicPool(row, symbol);
        if (!failure.isEmpty()) {
            errorText = ChangeRows::inRow(number, rows, failure);
            return Orvane_Values::RequestExeStatus::fail;
        }
        groups[text(row, ResourceId)].append(
            allocationRow(row, ManualT0Logic::PublicTrader, PoolTypes::Public, symbol));
        accounts += accountsOf(row);
    }
    return sendAllocations("ManualT0LogicPrivate::AllocatePublicResource", groups, PoolTypes::Public, accounts,
                           errorText);
}

QString ManualT0LogicPrivate::AllocateResourceToTrader(const RecordList &rows, QString &errorText)
{
    ChangeRows::Groups groups;
    QMap<QString, qint64> newPrivate; // by resource id, display units
    QStringList accounts;
    int number = 0;
    for (const VariantRecord &row : rows) {
        ++number;
        const QString symbol = MasterBusinessDataInterface::GetSymbolFromMap(row);
        const QString failure = checkPoolQuantity(row, symbol);
        if (!failure.isEmpty()) {
            errorText = ChangeRows::inRow(number, rows, failure);
            return Orvane_Values::RequestExeStatus::fail;
        }
        const QString id = text(row, ResourceId);
        groups[id].append(allocationRow(row, text(row, T0TraderId), PoolTypes::Private, symbol));
        newPrivate[id] = Quantity::satAdd(newPrivate.value(id), Quantity::toQty(row.value(PoolTotalQty)));
        accounts += accountsOf(row);
    }
    const QString failure = checkPrivatePools(newPrivate);
    if (!failure.isEmpty()) {
        errorText = failure;
        return Orvane_Values::RequestExeStatus::fail;
    }
    return sendAllocations("ManualT0LogicPrivate::AllocateResourceToTrader", groups, PoolTypes::Private, accounts,
                           errorText);
}

QString ManualT0LogicPrivate::DeleteSecurityPoolsByIdList(const QStringList &poolIds, QString &errorText)
{
    RecordList rows;
    QStringList accounts;
    ReadLock lock(securityPoolLock);
    for (const QString &id : poolIds) {
        const VariantRecord pool = securityPoolMap.value(id);
        if (pool.isEmpty()) {
            errorText = UserTexts::unknownPool();
            return Orvane_Values::RequestExeStatus::fail;
        }
        rows.append({{PoolDetailId, id}});
        accounts.append(text(pool, Orvane_Fields::UserAccount::tradingAccount));
    }
    lock.unlock();

    const QString code = sendChange(Master_MsgType::DeleteManualT0SecurityPoolRequest, {}, rows, errorText);
    HOST_INFO("ManualT0LogicPrivate", "ManualT0LogicPrivate::DeleteSecurityPoolsByIdList" << poolIds << code);
    queryPoolsOfEach(accounts);
    return code;
}

QString ManualT0LogicPrivate::AddSecurityPoolAndResource(const RecordList &rows, bool cover, QString &errorText)
{
    ChangeRows::Groups groups;
    errorText = rows.isEmpty() ? UserTexts::noPools() : groupNewPools(rows, t0Accounts(), GetAllT0TraderId(), groups);
    if (!errorText.isEmpty())
        return Orvane_Values::RequestExeStatus::fail;

    ChangeRows::Batch batch;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        QString failure;
        const QString code = sendChange(
            Master_MsgType::AddManualT0ResourceAndPoolRequest,
            {{Orvane_Fields::UserAccount::tradingAccount, group.key()},
             {Master_Fields::System::addType, cover ? Master_Values::AddType::Cover : Master_Values::AddType::Append},
             {PoolType, commonPoolType(*group)}},
            *group, failure);
        batch.add(code, failure);
        if (ChangeRows::mayBeInForce(code)) {
            queryResources(group.key());
            slotRecvSecurityPoolChangedPush(group.key());
        }
    }
    const QString code = batch.code();
    errorText =
        code == Orvane_Values::RequestExeStatus::success ? QString() : UserTexts::poolsNotAdded(batch.errorTexts());
    return code;
}

QString ManualT0LogicPrivate::checkPublicPool(const VariantRecord &row, const QString &symbol) const
{
    const QString id = text(row, ResourceId);
    const double resourceQty = Quantity::toNum(GetResourceDetailById(id).value(ResourceQty));
    const double wanted = double(Quantity::toQty(row.value(PoolTotalQty)));
    if (resourceQty + Quantity::Tolerance < wanted + poolQuantity(id, PoolTypes::Private))
        return UserTexts::overAllocated();
    return checkPoolQuantity(row, symbol);
}

QString ManualT0LogicPrivate::checkPrivatePools(const QMap<QString, qint64> &newPrivate) const
{
    for (auto wanted = newPrivate.cbegin(); wanted != newPrivate.cend(); ++wanted) {
        const VariantRecord resource = GetResourceDetailById(wanted.key());
        const double publicSum = poolQuantity(wanted.key(), PoolTypes::Public);
        if (Quantity::toNum(resource.value(ResourceQty)) + Quantity::Tolerance >= publicSum + double(*wanted))
            continue;
        const tagUserAccountInfo info = MasterBusinessDataInterface::GetAccountInfoByTradingAccount(
            text(resource, Orvane_Fields::UserAccount::tradingAccount), 1);
        return UserTexts::overAllocated(info.accountText, text(resource, Orvane_Fields::Security::symbol));
    }
    return {};
}

QString ManualT0LogicPrivate::sendAllocations(const char *operation, const ChangeRows::Groups &poolsByResource,
                                              int poolType, const QStringList &tradingAccounts, QString &errorText)
{
    ChangeRows::Batch batch;
    for (auto pools = poolsByResource.cbegin(); pools != poolsByResource.cend(); ++pools) {
        const QString code = sendChange(Master_MsgType::AllocateManualT0SecurityPoolRequest,
                                        {{Master_Fields::System::addType, Master_Values::AddType::Cover},
                                         {PoolType, poolType},
                                         {ResourceId, pools.key()},
                                         {Orvane_Fields::System::subGroupNumber, pools->size()}},
                                        *pools, errorText);
        batch.add(code, errorText);
    }
    HOST_INFO("ManualT0LogicPrivate", operation << tradingAccounts);
    queryPoolsOfEach(tradingAccounts);
    return batch.code();
}

void ManualT0LogicPrivate::queryPoolsOfEach(QStringList tradingAccounts)
{
    tradingAccounts.removeDuplicates();
    for (const QString &account : qAsConst(tradingAccounts))
        slotRecvSecurityPoolChangedPush(account);
}

double ManualT0LogicPrivate::poolQuantity(const QString &resourceId, int poolType) const
{
    double sum = 0;
    ReadLock lock(securityPoolLock);
    const RecordList pools = poolsOfResource(resourceId, poolType);
    for (const VariantRecord &pool : pools)
        sum += Quantity::toNum(pool.value(PoolTotalQty));
    return sum;
}
