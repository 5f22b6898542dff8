#include "CBusinessDataBase.h"
#include "ChangeRows.h"
#include "InitKeys.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "Retries.h"

#include <utility>

QMap<QString, QStringList> ManualT0LogicPrivate::GetAllT0ProductAccount() const
{
    ReadLock lock(productLock);
    return productAccountMap;
}

QStringList ManualT0LogicPrivate::GetAllT0TradingAccountList() const
{
    ReadLock lock(productLock);
    return tradingAccountList;
}

QMap<QString, QStringList> ManualT0LogicPrivate::GetCandidateT0ProductAccount() const
{
    QMap<QString, QStringList> result;
    for (auto product = candidateProductAccountMap.cbegin(); product != candidateProductAccountMap.cend(); ++product)
        result.insert(product.key(), product->keys());
    return result;
}

QStringList ManualT0LogicPrivate::GetProductAssetPropList(const QString &productAccount) const
{
    ReadLock lock(productLock);
    return productAccountMap.value(productAccount);
}

bool ManualT0LogicPrivate::IsProductAndAssetPropInT0(const QString &productAccount, const QString &assetProp) const
{
    ReadLock lock(productLock);
    return productAccountMap.value(productAccount).contains(assetProp, Qt::CaseSensitive);
}

QMap<QString, QString> ManualT0LogicPrivate::GetT0ProductMap() const
{
    ReadLock lock(productLock);
    const QStringList products = productAccountMap.keys();
    lock.unlock();

    const QMap<QString, QString> texts = MasterBusinessDataInterface::GetAllProductAccountMap();
    QMap<QString, QString> result;
    for (const QString &product : products)
        result.insert(product, texts.value(product));
    return result;
}

QStringList ManualT0LogicPrivate::GetTradingAccountListByProductAndAssetProp(const QString &productAccount,
                                                                             const QString &assetProp) const
{
    ReadLock lock(productLock);
    const QStringList enabled = productAccountMap.value(productAccount);
    if (!assetProp.isEmpty())
        return enabled.contains(assetProp, Qt::CaseSensitive) ? candidateAccounts(productAccount, assetProp)
                                                              : QStringList();
    QStringList accounts;
    for (const QString &property : enabled)
        accounts += candidateAccounts(productAccount, property);
    return accounts;
}

QString ManualT0LogicPrivate::AlterT0ProductAccount(const QMap<QString, QStringList> &newProductMap, QString &errMsg)
{
    using namespace Orvane_Fields::UserAccount;
    using Master_Fields::System::alterType;
    RecordList accepted;
    RecordList requested;
    // The whole wanted state, not a difference: every account the user could enable is added or deleted.
    for (auto product = candidateProductAccountMap.cbegin(); product != candidateProductAccountMap.cend(); ++product) {
        const QStringList wanted = newProductMap.value(product.key());
        for (auto property = product->cbegin(); property != product->cend(); ++property) {
            const bool enabled = wanted.contains(property.key(), Qt::CaseSensitive);
            for (const QString &account : *property) {
                VariantRecord row{{productAccount, product.key()}, {tradingAccount, account}};
                if (enabled)
                    accepted.append(row);
                row.insert(alterType, enabled ? Master_Values::AlterType::Add : Master_Values::AlterType::Delete);
                requested.append(row);
            }
        }
    }
    const QString code = sendChange(Master_MsgType::AlterManualT0ProductsRequest, {}, requested, errMsg);
    const bool isReread = ChangeRows::mayBeInForce(code) && rereadProductsLater(); // before an old answer can end
    if (code == Orvane_Values::RequestExeStatus::success)
        applyT0ProductList(accepted);
    else if (code == Master_Values::RequestExeStatus::timeout && !isReread)
        queryT0Products();
    return code;
}

void ManualT0LogicPrivate::slotQueryT0ProductsResponse(QString code, QList<QVariantMap> prdList)
{
    if (!enterSlot())
        return;
    if (code == Orvane_Values::RequestExeStatus::success)
        applyT0ProductList(prdList);
    else
        failT0Products();
    endProductQuery(); // now: whoever changes the products meanwhile must know of this answer
}

bool ManualT0LogicPrivate::rereadProductsLater()
{
    WriteLock lock(productLock);
    productsToReread = productQueries > 0;
    return productsToReread;
}

void ManualT0LogicPrivate::endProductQuery()
{
    WriteLock lock(productLock);
    productQueries = qMax(0, productQueries - 1);
    if (productQueries > 0 || !std::exchange(productsToReread, false))
        return;
    lock.unlock();
    queryT0Products();
}

void ManualT0LogicPrivate::failT0Products()
{
    WriteLock lock(productLock);
    const bool again = ++productQueryRetries < Retries::MaxRequests;
    lock.unlock();
    if (again) {
        queryT0Products();
        return;
    }
    // deliberate: the counter stays, so that only a success earns another round of requests
    initStates().FinishInit(initKey(ManualT0Logic::Products), false, true);
    sendDataInited(ManualT0Logic::Products);
}

void ManualT0LogicPrivate::applyT0ProductList(const RecordList &productList)
{
    QStringList accounts;
    QMap<QString, QMap<QString, bool>> properties; // inner map: an ascending set
    for (const VariantRecord &row : productList) {
        const QString account = row.value(Orvane_Fields::UserAccount::tradingAccount).toString();
        const QString product = row.value(Orvane_Fields::UserAccount::productAccount).toString();
        accounts.append(account);
        properties[product].insert(MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(account), true);
    }
    QMap<QString, QStringList> enabled;
    for (auto product = properties.cbegin(); product != properties.cend(); ++product)
        enabled.insert(product.key(), product->keys());

    WriteLock lock(productLock);
    productAccountMap.swap(enabled);
    initStates().FinishInit(initKey(ManualT0Logic::Products), true, true);
    productQueryRetries = 0;
    tradingAccountList.swap(accounts);
    lock.unlock();
    sendDataInited(ManualT0Logic::Products);

    // Resources and pools are asked for by account: other accounts, other answers.
    initStates().Reset(initKey(ManualT0Logic::Resources));
    loadResources();
    initStates().Reset(initKey(ManualT0Logic::SecurityPools));
    loadSecurityPools();
}

void ManualT0LogicPrivate::buildCandidates()
{
    const QList<tagUserAccountInfo> accounts =
        MasterBusinessDataInterface::GetFundAccountListByFundProp(3, 16, true, GetSupportExchangeList(), true);
    for (const tagUserAccountInfo &account : accounts)
        candidateProductAccountMap[account.productAccount][account.assetProp].append(account.tradingAccount);
}

void ManualT0LogicPrivate::queryT0Products()
{
    {
        WriteLock lock(productLock);
        ++productQueries;
    }
    emit signalQueryT0Products({{Orvane_Fields::UserAccount::loginUserId, CBusinessDataBase::GetLoginAccount()}});
}

QStringList ManualT0LogicPrivate::candidateAccounts(const QString &productAccount, const QString &assetProp) const
{
    return candidateProductAccountMap.value(productAccount).value(assetProp);
}
