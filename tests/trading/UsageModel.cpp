#include "UsageModel.h"

#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandFields.h"

using Master_Values::OpenPositionSide::BuyOpen;
using Master_Values::OpenPositionSide::SellOpen;
using Orvane_Fields::Security::orderID;

namespace {

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

bool isBuy(const VariantRecord &row)
{
    return text(row, Orvane_Fields::Security::side) == Stand_Values::Side::buy;
}

double floatOf(const Traded &traded, double price, double buyFee, double sellFee)
{
    const qint64 open = traded.bought - traded.sold;
    if (open == 0)
        return 0;
    const double cost = open > 0 ? traded.boughtAmount / double(traded.bought) * (1 + buyFee)
                                 : traded.soldAmount / double(traded.sold) * (1 - sellFee);
    return double(open) * (price - cost);
}

double realizedOf(const Traded &traded, double buyFee, double sellFee)
{
    const qint64 closed = qMin(traded.bought, traded.sold);
    if (closed == 0)
        return 0;
    return double(closed) * (traded.soldAmount / double(traded.sold) * (1 - sellFee) -
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
    return net() > 0   ? all.boughtAmount / double(all.bought)
           : net() < 0 ? all.soldAmount / double(all.sold)
                       : 0;
}

Usage::Profit Usage::profit(double lastPrice) const
{
    const double ofLeg = side == BuyOpen ? realizedOf(leg, 0, sellFee) : realizedOf(leg, buyFee, 0);
    return {floatOf(day, lastPrice, buyFee, sellFee) + floatOf(leg, lastPrice, 0, 0),
            realizedOf(day, buyFee, sellFee) + (gainsAreTheOrganisations ? qMin(ofLeg, 0.0) : ofLeg)};
}

UsageModel::UsageModel(const Books &books)
{
    // A usage of every trader in everything, so that fees and owners are known before the first fill.
    for (const User &user : books.users)
        for (const QString &account : user.accounts)
            for (const Instrument &instrument : books.instruments) {
                const Account &terms = *books.account(account);
                Usage &usage = m_usage[key(user.userID, {{Orvane_Fields::UserAccount::tradingAccount, account},
                                                         {Orvane_Fields::Security::symbol, instrument.symbol},
                                                         {Orvane_Fields::UserAccount::securityExchange,
                                                          instrument.exchange}})];
                usage.buyFee = terms.buyFee;
                usage.sellFee = terms.sellFee;
                usage.gainsAreTheOrganisations = !terms.profitOwner.isEmpty();
            }
    for (const CarriedLeg &leg : books.carried) {
        const Holding &holding = leg.holding;
        Usage &usage =
            m_usage[QStringLiteral("%1_%2_%3_%4")
                        .arg(leg.trader, holding.account,
                             books.instrument(holding.securityID, holding.exchange)->symbol, holding.exchange)];
        usage.side = leg.side;
        usage.closable = leg.quantity;
        (leg.side == BuyOpen ? usage.leg.bought : usage.leg.sold) = leg.quantity;
        (leg.side == BuyOpen ? usage.leg.boughtAmount : usage.leg.soldAmount) = leg.amount;
    }
}

QString UsageModel::key(const QString &trader, const VariantRecord &row)
{
    return QStringLiteral("%1_%2_%3_%4")
        .arg(trader, text(row, Orvane_Fields::UserAccount::tradingAccount), text(row, Orvane_Fields::Security::symbol),
             text(row, Orvane_Fields::UserAccount::securityExchange));
}

QMap<QString, Usage> UsageModel::openOnes() const
{
    QMap<QString, Usage> open;
    for (auto usage = m_usage.cbegin(); usage != m_usage.cend(); ++usage)
        if (usage->net() != 0)
            open.insert(usage.key(), *usage);
    return open;
}

void UsageModel::accept(const VariantRecord &order)
{
    LiveOrder live{key(text(order, Orvane_Fields::UserAccount::loginUserId), order), isBuy(order), 0};
    Usage &usage = m_usage[live.key];
    if (usage.side == (live.buy ? SellOpen : BuyOpen))
        live.closing = qMin(usage.closable, order.value(Orvane_Fields::Security::orderQty).toLongLong());
    usage.closable -= live.closing;
    m_orders.insert(text(order, orderID), live);
}

void UsageModel::fill(const VariantRecord &fill)
{
    LiveOrder &order = m_orders[text(fill, orderID)];
    Usage &usage = m_usage[order.key];
    const qint64 quantity = fill.value(Stand_Fields::Fill::fillQty).toLongLong();
    const double price = fill.value(Orvane_Fields::Security::price).toDouble();
    const qint64 closing = qMin(order.closing, quantity);
    order.closing -= closing;
    usage.leg.add(order.buy, closing, price);
    usage.day.add(order.buy, quantity - closing, price);
}

void UsageModel::end(const QString &orderId)
{
    const LiveOrder order = m_orders.take(orderId);
    if (order.closing > 0)
        m_usage[order.key].closable += order.closing;
}

void UsageModel::dayChange()
{
    m_orders.clear();
    for (Usage &usage : m_usage) {
        const qint64 net = usage.net();
        const double amount = double(qAbs(net)) * usage.average();
        usage.side = net > 0 ? BuyOpen : net < 0 ? SellOpen : QString();
        usage.leg = net > 0 ? Traded{net, 0, amount, 0} : Traded{0, -net, 0, amount};
        usage.day = {};
        usage.closable = qAbs(net);
    }
}
