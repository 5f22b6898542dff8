#include "DisplayUnits.h"
#include "ManualT0LogicPrivate.h"
#include "MasterConstants.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OpenPosition.h"
#include "OrderAllocation.h"
#include "OrderChecks.h"
#include "OrvaneValues.h"
#include "Quantity.h"
#include "RealtimeFields.h"
#include "StandFields.h"
#include "UserTexts.h"

#include <map>
#include <tuple>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::chineseName;
using Orvane_Fields::Security::orderQty;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

/// What an order row asks for.
struct Wanted {
    explicit Wanted(const VariantRecord &row)
        : symbol(text(row, Orvane_Fields::Security::symbol))
        , exchange(text(row, Orvane_Fields::UserAccount::securityExchange))
        , sideUnion(text(row, Master_Fields::Security::SideUnion))
        , isBuy(OrderChecks::isBuy(sideUnion))
        , quantity(Quantity::toQty(row.value(orderQty)))
        , accounts(row.value(tradingAccount).toStringList())
    {}

    QString symbol;
    QString exchange;
    QString sideUnion;
    bool isBuy;
    qint64 quantity;
    QStringList accounts;
};

qint64 stepOf(const QString &symbol)
{
    return qMax(1, MasterBusinessDataInterface::GetQtyStepBySymbol(symbol));
}

/// What the rows of one call have taken so far, by account, symbol, exchange and direction.
class Placed
{
public:
    /// Distributes a row over what earlier rows have left of the accounts, and takes it.
    QVector<OrderAllocation::Share> distribute(const Wanted &wanted, QVector<OrderAllocation::Account> accounts)
    {
        for (OrderAllocation::Account &account : accounts) {
            const qint64 taken = of(account.id, wanted);
            account.quota = qMax<qint64>(0, Quantity::satSub(account.quota, taken));
            account.close = qMax<qint64>(0, Quantity::satSub(account.close, taken));
        }
        const QVector<OrderAllocation::Share> shares =
            OrderAllocation::distribute(wanted.quantity, wanted.isBuy, stepOf(wanted.symbol), accounts);
        for (const OrderAllocation::Share &share : shares)
            of(share.account, wanted) += share.quantity;
        return shares;
    }

private:
    qint64 &of(const QString &account, const Wanted &wanted)
    {
        return m_quantities[std::make_tuple(account, wanted.symbol, wanted.exchange, wanted.isBuy)];
    }

    std::map<std::tuple<QString, QString, QString, bool>, qint64> m_quantities;
};

VariantRecord residual(VariantRecord row, qint64 quantity, const QString &reason)
{
    row.insert(orderQty, quantity);
    row.insert(Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::fail);
    row.insert(Orvane_Fields::System::textDescription, reason);
    return row;
}

/// A credit account trades its own stock as collateral.
QString sideInAccount(const QString &sideUnion, const QString &account)
{
    if (MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(account) !=
        Master_Values::FundAccountType::Credit)
        return sideUnion;
    if (sideUnion == Master_Values::SideUnion::normalBuy)
        return Master_Values::SideUnion::collateralBuy;
    return sideUnion == Master_Values::SideUnion::normalSell ? Master_Values::SideUnion::collateralSell : sideUnion;
}

/// The rows one account gets of an order.
RecordList confirmationRows(const VariantRecord &row, const Wanted &wanted, const OrderAllocation::Share &share,
                            qint64 customQty)
{
    const VariantRecord details = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(wanted.symbol);
    VariantRecord part = row;
    part.insert(tradingAccount, share.account);
    part.insert(Master_Fields::Security::SideUnion, sideInAccount(wanted.sideUnion, share.account));
    if (text(row, chineseName).isEmpty())
        part.insert(chineseName, text(details, chineseName));
    RecordList rows;
    const QVector<qint64> quantities =
        OrderAllocation::split(share.quantity, customQty, stepOf(wanted.symbol),
                               Quantity::toQty(details.value(Stand_Fields::Security::minQty)));
    for (const qint64 quantity : quantities) {
        part.insert(orderQty, quantity);
        rows.append(part);
    }
    return rows;
}

/// The chosen accounts that suit the direction and are the user's own, best first.
QStringList inPriority(const Wanted &wanted, const QStringList &ownAccounts)
{
    const QStringList matching = OrderChecks::matchingAccounts(wanted.accounts, wanted.sideUnion);
    QStringList ranked;
    for (const QString &account : ownAccounts)
        if (matching.contains(account) && !ranked.contains(account))
            ranked.append(account);
    return ranked;
}

QString reasonAgainst(const Wanted &wanted)
{
    if (wanted.quantity <= 0)
        return UserTexts::quantityNotPositive();
    return wanted.symbol.isEmpty() || wanted.exchange.isEmpty() ? UserTexts::noSymbolOrExchange() : QString();
}

} // namespace

RecordList ManualT0LogicPrivate::GetOrderConfirmMap(const RecordList &orders) const
{
    RecordList rest;
    return GetOrderConfirmMap(orders, rest);
}

RecordList ManualT0LogicPrivate::GetOrderConfirmMap(const RecordList &orders, RecordList &rest) const
{
    const QStringList ownAccounts = GetAllT0TradingAccountListByCurUser();
    const RecordList rows = orders; // the caller may give one list as both
    Placed placed;
    RecordList confirmed;
    for (const VariantRecord &row : rows) {
        const Wanted wanted(row);
        QString reason = reasonAgainst(wanted);
        const QStringList accounts = reason.isEmpty() ? inPriority(wanted, ownAccounts) : QStringList();
        if (reason.isEmpty() && accounts.isEmpty())
            reason = UserTexts::noMatchingAccount();
        qint64 total = 0;
        const qint64 customQty = customQuantity(wanted.symbol);
        const QVector<OrderAllocation::Share> shares =
            placed.distribute(wanted, roomOf(accounts, wanted.symbol, wanted.exchange, wanted.isBuy));
        for (const OrderAllocation::Share &share : shares) {
            total += share.quantity;
            confirmed += confirmationRows(row, wanted, share, customQty);
        }
        if (reason.isEmpty() && total < wanted.quantity)
            reason = UserTexts::quotaTooSmall(total, wanted.quantity);
        if (!reason.isEmpty())
            rest.append(residual(row, wanted.quantity - total, reason));
    }
    return confirmed;
}

QVector<OrderAllocation::Account> ManualT0LogicPrivate::roomOf(const QStringList &accounts, const QString &symbol,
                                                               const QString &exchange, bool isBuy) const
{
    QVector<OrderAllocation::Account> room;
    room.reserve(accounts.size());
    ReadLock lock(realtimePoolLock);
    for (const QString &account : accounts) {
        const VariantRecord usage =
            realtimePoolCache.value(RealtimeFields::key(account, loginUserId, symbol, exchange));
        room.append({account, Quantity::toQty(usage.value(isBuy ? RtTotalBuyLimit : RtTotalSellLimit)),
                     OpenPosition::closedBy(OpenPosition::net(usage), isBuy)});
    }
    return room;
}

qint64 ManualT0LogicPrivate::customQuantity(const QString &symbol) const
{
    ReadLock lock(symbolTradeSettingsLock);
    return Quantity::toQty(
        symbolTradeSettings.value(symbol).value(MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty));
}
