#include "UsageModel.h"

#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandFields.h"

using Master_Values::OpenPositionSide::BuyOpen;
using Master_Values::OpenPositionSide::SellOpen;
using Orvane_Fields::Security::orderID;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

double floatOf(const Traded &traded, double price, double buyFee, double sellFee)
{
    const qint64 open = traded.bought - traded.sold;
    const double cost = open > 0   ? traded.boughtAmount / double(traded.bought) * (1 + buyFee)
                        : open < 0 ? traded.soldAmount / double(traded.sold) * (1 - sellFee)
                                   : 0;
    return double(open) * (price - cost);
}

double realizedOf(const Traded &traded, double buyFee, double sellFee)
{
    const qint64 closed = qMin(traded.bought, traded.sold);
    return closed == 0 ? 0
                       : double(closed) * (traded.soldAmount / double(traded.sold) * (1 - sellFee) -
                                           traded.boughtAmount / double(traded.bought) * (1 + buyFee));
}

} // namespace

void Traded::add(bool buy, qint64 quantity, double price)
{
    (buy ? bought : sold) += quantity;
    (buy ? boughtAmount : soldAmount) += double(quantity) * price;
}

Traded Usage::paid() const
{
    // The opening side of a leg has its fee already.
    return {day.bought + leg.bought, day.sold + leg.sold,
            day.boughtAmount * (1 + buyFee) + leg.boughtAmount * (1 + (side == SellOpen ? buyFee : 0)),
            day.soldAmount * (1 - sellFee) + leg.soldAmount * (1 - (side == BuyOpen ? sellFee : 0))};
}

double Usage::average() const
{
    const Traded all = paid();
    return net() == 0 ? 0 : net() > 0 ? all.boughtAmount / double(all.bought) : all.soldAmount / double(all.sold);
}

double Usage::floating(double lastPrice) const
{
    return floatOf(day, lastPrice, buyFee, sellFee) + floatOf(leg, lastPrice, 0, 0);
}

double Usage::realized() const
{
    const double ofLeg = side == BuyOpen ? realizedOf(leg, 0, sellFee) : realizedOf(leg, buyFee, 0);
    return realizedOf(day, buyFee, sellFee) + (gainsAreTheOrganisations ? qMin(ofLeg, 0.0) : ofLeg);
}

UsageModel::UsageModel(const Books &books)
    : m_books(books)
{
    for (const CarriedLeg &leg : books.carried) {
        const Instrument &security = *books.instrument(leg.holding.securityID, leg.holding.exchange);
        Usage &usage = usageOf(leg.trader, {{tradingAccount, leg.holding.account},
                                            {Orvane_Fields::Security::symbol, security.symbol},
                                            {Orvane_Fields::UserAccount::securityExchange, security.exchange}});
        usage.side = leg.side;
        usage.closable = leg.quantity;
        usage.leg.add(leg.side == BuyOpen, leg.quantity, leg.amount / double(leg.quantity));
    }
}

QString UsageModel::key(const QString &trader, const VariantRecord &row)
{
    return QStringLiteral("%1_%2_%3_%4")
        .arg(trader, text(row, tradingAccount), text(row, Orvane_Fields::Security::symbol),
             text(row, Orvane_Fields::UserAccount::securityExchange));
}

Usage &UsageModel::usageOf(const QString &trader, const VariantRecord &row)
{
    const Account &account = *m_books.account(text(row, tradingAccount));
    Usage &usage = this->usage[key(trader, row)];
    usage.buyFee = account.buyFee;
    usage.sellFee = account.sellFee;
    usage.gainsAreTheOrganisations = !account.profitOwner.isEmpty();
    return usage;
}

void UsageModel::accept(const VariantRecord &order)
{
    const QString trader = text(order, Orvane_Fields::UserAccount::loginUserId);
    LiveOrder live{key(trader, order), text(order, Orvane_Fields::Security::side) == Stand_Values::Side::buy, 0};
    Usage &usage = usageOf(trader, order);
    if (usage.side == (live.buy ? SellOpen : BuyOpen))
        live.closing = qMin(usage.closable, order.value(Orvane_Fields::Security::orderQty).toLongLong());
    usage.closable -= live.closing;
    m_orders.insert(text(order, orderID), live);
}

void UsageModel::fill(const VariantRecord &fill)
{
    LiveOrder &order = m_orders[text(fill, orderID)];
    const qint64 quantity = fill.value(Stand_Fields::Fill::fillQty).toLongLong();
    const double price = fill.value(Orvane_Fields::Security::price).toDouble();
    const qint64 closing = qMin(order.closing, quantity);
    order.closing -= closing;
    usage[order.key].leg.add(order.buy, closing, price);
    usage[order.key].day.add(order.buy, quantity - closing, price);
}

void UsageModel::end(const QString &orderId)
{
    const LiveOrder order = m_orders.take(orderId);
    if (order.closing > 0)
        usage[order.key].closable += order.closing;
}

void UsageModel::dayChange()
{
    m_orders.clear();
    for (Usage &one : usage) {
        const qint64 net = one.net();
        const double average = one.average();
        one.side = net > 0 ? BuyOpen : net < 0 ? SellOpen : QString();
        one.closable = qAbs(net);
        one.leg = one.day = {};
        one.leg.add(net > 0, qAbs(net), average);
    }
}
