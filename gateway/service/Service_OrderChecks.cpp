#include "Service.h"

#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"

namespace {

namespace Security_ = Orvane_Fields::Security;
namespace Side = Master_Values::SideUnion;
namespace UserAccount_ = Orvane_Fields::UserAccount;

Ledger::Order termsOf(const StoredOrder &order, const Instrument &instrument, const QVector<StoredPool> &pools)
{
    Ledger::Order terms;
    terms.buy = order.buy;
    terms.quantity = order.quantity;
    terms.step = instrument.qtyStep;
    terms.minQty = instrument.minQty;
    terms.maxQty = instrument.maxQty;
    for (const StoredPool &pool : pools) {
        if (pool.trader != order.user)
            continue;
        terms.maxExposure = pool.maxExposure;
        terms.maxPendExposure = pool.maxPendExposure;
    }
    return terms;
}

QString refusalText(Ledger::Refusal refusal, const Ledger::Order &order, const Ledger::TraderUse &use, qint64 limit)
{
    switch (refusal) {
    case Ledger::Refusal::None:
        break;
    case Ledger::Refusal::NoQuantity:
        return GatewayTexts::noOrderQuantity();
    case Ledger::Refusal::AboveMaximum:
        return GatewayTexts::aboveMaximum(order.maxQty);
    case Ledger::Refusal::BelowMinimum:
        return GatewayTexts::belowMinimum(order.minQty);
    case Ledger::Refusal::OffStep:
        return order.buy ? GatewayTexts::buyOffStep(order.step) : GatewayTexts::sellOffStep(order.step);
    case Ledger::Refusal::NotReducing:
        return GatewayTexts::notReducing(Ledger::reducible(use, order.buy));
    case Ledger::Refusal::AboveLimit:
        return GatewayTexts::aboveLimit(order.quantity, limit);
    case Ledger::Refusal::Exposure:
        return GatewayTexts::aboveExposure(order.maxExposure);
    case Ledger::Refusal::PendingExposure:
        return GatewayTexts::abovePendingExposure(order.maxPendExposure);
    case Ledger::Refusal::NotSellable:
        return GatewayTexts::notSellable();
    }
    return QString();
}

} // namespace

QString Service::refusalOfList(const Request &request) const
{
    if (request.rows.isEmpty())
        return GatewayTexts::noRows();
    const QString businessType = request.text(Master_Fields::Security::VantaBusiType);
    if (businessType != Master_Values::VantaBusiType::ManualT0Order)
        return GatewayTexts::otherBusiness(businessType);
    const QString account = request.text(UserAccount_::tradingAccount);
    if (!m_books.account(account))
        return GatewayTexts::unknownAccount(account);
    if (!m_memory.enabled.contains(account))
        return GatewayTexts::notEnabled(account);
    const QString &user = request.user().userID;
    // A manager sees every account, but trades as a trader only.
    return m_books.tradersOf(account).contains(user) ? QString() : GatewayTexts::mayNotTrade(user, account);
}

QString Service::readOrder(const VariantRecord &row, StoredOrder &order) const
{
    order.symbol = row.value(Security_::symbol).toString();
    order.holding.exchange = row.value(UserAccount_::securityExchange).toString();
    order.sideUnion = row.value(Master_Fields::Security::SideUnion).toString();
    const Instrument *instrument = m_books.listed(order.symbol, order.holding.exchange);
    if (!instrument)
        return GatewayTexts::unknownSecurity(order.symbol, order.holding.exchange);
    order.holding.securityID = instrument->securityID;
    order.buy = Side::buyItemList.contains(order.sideUnion);
    const QString refusal = refusalOfSide(order);
    if (!refusal.isEmpty())
        return refusal;
    if (row.value(Stand_Fields::Order::priceType).toString() != Orvane_Values::PriceType::limit)
        return GatewayTexts::onlyLimitOrders();
    bool valid = false;
    order.price = row.value(Security_::price).toString().toDouble(&valid);
    if (!valid || !(order.price > 0))
        return GatewayTexts::noOrderPrice();
    if (!readWholeNumber(row.value(Security_::orderQty), order.quantity))
        return GatewayTexts::fractionalQuantity();
    const QString refusalNow = refusalOfMarket(order);
    // One price, one number: prices are compared with those of other orders.
    if (refusalNow.isEmpty())
        order.price = Ticks::price(Ticks::micros(order.price));
    return refusalNow;
}

QString Service::refusalOfSide(const StoredOrder &order) const
{
    const Account &account = *m_books.account(order.holding.account);
    if (!account.exchanges.contains(order.holding.exchange))
        return GatewayTexts::foreignExchange(account.tradingAccount, order.holding.exchange);
    const QString &side = order.sideUnion;
    if (side == Side::normalBuy || side == Side::normalSell)
        return QString();
    if (side != Side::collateralBuy && side != Side::collateralSell)
        return GatewayTexts::unknownSide(side);
    const bool isCredit = account.assetProp == Master_Values::FundAccountType::Credit;
    return isCredit ? QString() : GatewayTexts::onlyCredit(account.tradingAccount);
}

QString Service::refusalOfMarket(const StoredOrder &order) const
{
    const Exchange &exchange = m_memory.exchange;
    const Holding &holding = order.holding;
    switch (exchange.refusal({QString(), holding.securityID, holding.exchange, order.buy, order.price, 1})) {
    case Exchange::Refusal::None:
        break;
    case Exchange::Refusal::UnknownInstrument:
        return GatewayTexts::unknownSecurity(order.symbol, holding.exchange);
    case Exchange::Refusal::Closed:
        return GatewayTexts::marketClosed(holding.exchange);
    case Exchange::Refusal::OffTick:
        return GatewayTexts::offTick();
    case Exchange::Refusal::OutsideLimits: {
        const Quote quote = exchange.prices(order.symbol).value_or(Quote());
        return GatewayTexts::impossiblePrice(quote.downLimit, quote.upLimit);
    }
    }
    return QString();
}

QString Service::accept(StoredOrder &order, UsageGroup &group, bool reduceOnly)
{
    const Instrument &instrument = *m_books.instrument(order.holding.securityID, order.holding.exchange);
    Ledger::Order terms = termsOf(order, instrument, m_store->poolsOf(order.holding));
    terms.reduceOnly = reduceOnly;
    const Ledger::Stock stock = m_store->positionOf(order.holding).stock;
    group.usageOf(order.user); // a trader without a part of it has a limit of 0
    const int trader = group.byTrader.keys().indexOf(order.user);
    QVector<Ledger::TraderUse> uses = group.uses();
    const Ledger::Limits limits = Ledger::limits(group.terms, uses).at(trader);
    const Ledger::Acceptance answer = Ledger::accept(group.terms, stock, uses, trader, terms);
    group.usageOf(order.user).use = uses.at(trader);
    order.open = answer.parts;
    const qint64 limit = order.buy ? limits.closeBuy + limits.dailyBuy : limits.closeSell + limits.dailySell;
    return refusalText(answer.refusal, terms, uses.at(trader), limit);
}
