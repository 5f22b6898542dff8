#include "CBusinessDataBase.h"
#include "ChangeRows.h"
#include "DisplayUnits.h"
#include "HostLog.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterUtils.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "PoolTypes.h"
#include "Quantity.h"
#include "UserTexts.h"

using namespace Master_Fields::ManualT0;

namespace {

/// Rows of each trading account in server units, without those that set nothing aside; the first bad row's text.
QString groupNewResources(const RecordList &rows, const QSet<QString> &t0Accounts, ChangeRows::Groups &groups)
{
    int number = 0;
    for (const VariantRecord &row : rows) {
        ++number;
        QString symbol;
        QString failure = ChangeRows::checkAccountAndSymbol(row, t0Accounts, symbol);
        if (failure.isEmpty())
            failure = ChangeRows::checkMultiple(symbol, UserTexts::resourceQuantity(),
                                                Quantity::toQty(row.value(ResourceQty)));
        if (!failure.isEmpty())
            return ChangeRows::inRow(number, rows, failure);
        if (Quantity::toNum(row.value(ResourceQty)) > Quantity::Tolerance)
            groups[text(row, Orvane_Fields::UserAccount::tradingAccount)].append(
                ChangeRows::inServerUnits(row, ResourceQty, symbol));
        else
            HOST_INFO("ManualT0LogicPrivate",
                      "ManualT0LogicPrivate::AddT0Resource" << UserTexts::rowsWithoutQuantity() << row);
    }
    return groups.isEmpty() ? UserTexts::noResourceToAdd() : QString();
}

} // namespace

QString ManualT0LogicPrivate::AddT0Resource(const RecordList &rows, bool cover, QString &errorText)
{
    ChangeRows::Groups groups;
    errorText = groupNewResources(rows, t0Accounts(), groups);
    if (!errorText.isEmpty())
        return Orvane_Values::RequestExeStatus::fail;

    ChangeRows::Batch batch;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        QString failure;
        const QString code = sendChange(
            Master_MsgType::AddManualT0ResourceRequest,
            {{Master_Fields::System::addType, cover ? Master_Values::AddType::Cover : Master_Values::AddType::Append},
             {Orvane_Fields::System::subGroupNumber, group->size()}},
            *group, failure);
        batch.add(code, failure);
        if (ChangeRows::mayBeInForce(code))
            queryResources(group.key());
    }
    errorText = batch.errorTexts();
    return batch.code();
}

QString ManualT0LogicPrivate::AlterT0Resource(const VariantRecord &resource, QString &errorText)
{
    QString symbol;
    errorText = checkAlteredResource(resource, symbol);
    if (!errorText.isEmpty())
        return Orvane_Values::RequestExeStatus::fail;

    const QString code =
        sendChange(Master_MsgType::AlterManualT0ResourceRequest, {{Orvane_Fields::System::subGroupNumber, 1}},
                   {ChangeRows::inServerUnits(resource, ResourceQty, symbol)}, errorText);
    if (ChangeRows::mayBeInForce(code)) {
        const QStringList accounts = accountsOf(resource);
        for (const QString &account : accounts)
            queryResources(account);
    }
    return code == Orvane_Values::RequestExeStatus::success ? code : Orvane_Values::RequestExeStatus::fail;
}

QString ManualT0LogicPrivate::DeleteT0Resource(const RecordList &rows, QString &errorText)
{
    RecordList requested;
    QStringList resourceIds;
    QStringList accounts;
    for (const VariantRecord &row : rows) {
        const QString id = text(row, ResourceId);
        requested.append({{ResourceId, id}});
        resourceIds.append(id);
        accounts += accountsOf(row);
    }
    accounts.removeDuplicates();

    const QString code = sendChange(Master_MsgType::DeleteManualT0ResourceRequest,
                                    {{Orvane_Fields::System::subGroupNumber, rows.size()}}, requested, errorText);
    if (code == Orvane_Values::RequestExeStatus::success) {
        forgetResources(resourceIds, accounts);
        for (const QString &account : qAsConst(accounts))
            slotRecvSecurityPoolChangedPush(account);
    } else if (code == Master_Values::RequestExeStatus::timeout) {
        for (const QString &account : qAsConst(accounts))
            queryResources(account);
    }
    return code;
}

QString ManualT0LogicPrivate::checkAlteredResource(const VariantRecord &resource, QString &symbol) const
{
    const QString id = text(resource, ResourceId);
    if (id.isEmpty())
        return UserTexts::noResourceId();
    ReadLock lock(resourceLock);
    const VariantRecord held = resourceCache.value(id);
    lock.unlock();
    if (held.isEmpty())
        return UserTexts::unknownResource();
    symbol = text(held, Orvane_Fields::Security::symbol);
    if (symbol.isEmpty())
        symbol = text(resource, Orvane_Fields::Security::symbol);

    const double allocated = poolQuantity(id, PoolTypes::All);
    const qint64 quantity = Quantity::toQty(resource.value(ResourceQty));
    if (allocated - Quantity::Tolerance > double(quantity))
        return UserTexts::belowAllocated(Quantity::roundToInt64(allocated));
    return ChangeRows::checkMultiple(symbol, UserTexts::resourceQuantity(), quantity);
}

void ManualT0LogicPrivate::forgetResources(const QStringList &resourceIds, const QStringList &tradingAccounts)
{
    WriteLock lock(resourceLock);
    for (const QString &id : resourceIds)
        removeResource(id);
    for (const QString &account : tradingAccounts) {
        const auto queries = resourceQueries.find(account);
        if (queries != resourceQueries.end())
            queries->deleted.unite({resourceIds.cbegin(), resourceIds.cend()});
    }
    lock.unlock();

    // The pools themselves go with the answer that no longer lists them.
    WriteLock poolLock(securityPoolLock);
    ++poolVersion;
    for (const QString &id : resourceIds)
        poolIdsByResource.removeKey(id);
}

QStringList ManualT0LogicPrivate::accountsOf(const VariantRecord &row) const
{
    ReadLock lock(resourceLock);
    const VariantRecord held = resourceCache.value(text(row, ResourceId));
    lock.unlock();
    // The server goes by the resource, so its account has changed, whatever the row says.
    QStringList accounts{text(row, Orvane_Fields::UserAccount::tradingAccount),
                         text(held, Orvane_Fields::UserAccount::tradingAccount)};
    accounts.removeDuplicates();
    accounts.removeAll(QString());
    return accounts;
}

QSet<QString> ManualT0LogicPrivate::t0Accounts() const
{
    const QStringList accounts = GetAllT0TradingAccountList();
    return {accounts.cbegin(), accounts.cend()};
}

QString ManualT0LogicPrivate::sendChange(const QString &msgType, VariantRecord header, const RecordList &rows,
                                         QString &errorText) const
{
    header.insert(Orvane_Fields::UserAccount::loginUserId, CBusinessDataBase::GetInstance()->GetLoginAccount());
    RecordList answer;
    return MasterUtils::SendRequestListToServer(presenter, msgType, RecordList{header} + rows, 0, errorText, answer,
                                                false, false);
}
