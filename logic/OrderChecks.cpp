#include "OrderChecks.h"

#include "MasterBusinessDataInterface.h"
#include "MasterValues.h"
#include "Quantity.h"
#include "UserTexts.h"

#include <cmath>
#include <limits>

namespace OrderChecks {

namespace {

using ::Quantity::Tolerance;

QString checkAccounts(const Order &order)
{
    return order.accounts.isEmpty() ? UserTexts::noMatchingAccount() : QString();
}

QString checkSymbolAndExchange(const Order &order)
{
    return order.symbol.isEmpty() || order.exchange.isEmpty() ? UserTexts::noSymbolOrExchange() : QString();
}

/// deliberate: the price is raised and the unit lowered before they are divided, which keeps an exact multiple from
/// falling one unit short through rounding. The rule gives up on prices no instrument has: multiples of 0.01 from
/// 524,288.07 on, of 0.001 from 9,999.998 on, of 0.0001 from 99.9999 on are refused, and whatever has more than
/// 2^31 - 1 units.
bool isMultiple(double price, double unit)
{
    if (!(unit > Tolerance))
        return false;
    const double units = std::trunc((price + Tolerance) / (unit - Tolerance));
    if (!(std::fabs(units) <= std::numeric_limits<int>::max()))
        return false;
    const double rest = price - units * unit;
    return rest > -Tolerance && rest < Tolerance;
}

QString checkPrice(const Order &order)
{
    if (!(order.price > Tolerance)) // refuses not-a-number too
        return UserTexts::priceNotPositive();
    const double unit = MasterBusinessDataInterface::GetPriceUnitBySymbol(order.symbol, order.price, order.sideUnion);
    if (isMultiple(order.price, unit))
        return {};
    return UserTexts::priceNotMultiple(unit,
                                       MasterBusinessDataInterface::GetPricePrecisionBySymbol(order.symbol, QString()));
}

QString checkQuantity(const Order &order)
{
    if (order.quantity <= 0)
        return UserTexts::quantityNotPositive();
    const int step = MasterBusinessDataInterface::GetQtyStepBySymbol(order.symbol);
    // deliberate: only buying is held to the step, odd lots may be sold
    if (order.isBuy && step > 0 && order.quantity % step != 0)
        return UserTexts::quantityNotMultiple(step);
    return {};
}

QString checkQuota(const Order &order)
{
    const qint64 quota = order.quota();
    return quota < order.quantity ? UserTexts::quotaTooSmall(quota, order.quantity) : QString();
}

struct Entry {
    Flag flag;
    QString (*check)(const Order &order);
};

constexpr Entry table[] = {{Accounts, checkAccounts},
                           {SymbolAndExchange, checkSymbolAndExchange},
                           {Price, checkPrice},
                           {Quantity, checkQuantity},
                           {Quota, checkQuota}};

} // namespace

QString check(const Order &order, int flags)
{
    for (const Entry &entry : table) {
        const QString failure = flags & entry.flag ? entry.check(order) : QString();
        if (!failure.isEmpty())
            return failure;
    }
    return {};
}

bool isBuy(const QString &sideUnion)
{
    return Master_Values::SideUnion::buyItemList.contains(sideUnion, Qt::CaseSensitive);
}

QStringList matchingAccounts(const QStringList &accounts, const QString &sideUnion)
{
    const bool ordinary =
        sideUnion == Master_Values::SideUnion::normalBuy || sideUnion == Master_Values::SideUnion::normalSell;
    QStringList matching;
    for (const QString &account : accounts) {
        if (account.isEmpty())
            continue;
        if (ordinary || MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(account) ==
                            Master_Values::FundAccountType::Credit)
            matching.append(account);
    }
    return matching;
}

} // namespace OrderChecks
