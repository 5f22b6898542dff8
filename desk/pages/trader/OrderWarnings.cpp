#include "OrderWarnings.h"

#include "Format.h"
#include "InstrumentRules.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

#include <cmath>

namespace {

constexpr double farShare = 0.02;
constexpr double tolerance = 1e-9; ///< prices are equal when they differ by less

bool crosses(const OrderWish &wish, const VariantRecord &order)
{
    OrderWish other;
    other.sideUnion = order.value(Master_Fields::Security::SideUnion).toString();
    using namespace Orvane_Fields;
    if (order.value(Security::symbol).toString() != wish.symbol ||
        order.value(UserAccount::securityExchange).toString() != wish.exchange || other.isBuy() == wish.isBuy())
        return false;
    const double price = order.value(Orvane_Fields::Security::price).toDouble();
    return wish.isBuy() ? wish.price > price - tolerance : wish.price < price + tolerance;
}

} // namespace

QStringList OrderWarnings::of(const OrderWish &wish, const SymbolQuote &quote, const RecordList &ownLiveOrders)
{
    QStringList warnings{aboutLast(wish, quote), aboutLimits(wish, quote)};
    for (const VariantRecord &order : ownLiveOrders)
        warnings.append(aboutOwnOrder(wish, order));
    warnings.removeAll(QString());
    return warnings;
}

QString OrderWarnings::aboutLast(const OrderWish &wish, const SymbolQuote &quote)
{
    if (!(quote.last > 0))
        return tr("没有最新价，无法判断委托价是否偏离");
    const double share = wish.price / quote.last - 1;
    return std::abs(share) > farShare + tolerance ? tr("委托价偏离最新价 %1").arg(Format::percent(share)) : QString();
}

QString OrderWarnings::aboutLimits(const OrderWish &wish, const SymbolQuote &quote)
{
    if (quote.upLimit > 0 && wish.price > quote.upLimit - tolerance)
        return wish.price > quote.upLimit + tolerance ? tr("委托价高于涨停价") : tr("委托价等于涨停价");
    if (quote.downLimit > 0 && wish.price < quote.downLimit + tolerance)
        return wish.price < quote.downLimit - tolerance ? tr("委托价低于跌停价") : tr("委托价等于跌停价");
    return {};
}

QString OrderWarnings::aboutOwnOrder(const OrderWish &wish, const VariantRecord &order)
{
    if (!crosses(wish, order))
        return {};
    const QString price =
        Format::price(order.value(Orvane_Fields::Security::price), InstrumentRules::decimals(wish.symbol));
    return tr("可能与自己的委托 %1（价格 %2）自成交")
        .arg(order.value(Orvane_Fields::Security::orderID).toString(), price);
}
