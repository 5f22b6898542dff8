#include "SymbolQuote.h"

#include "CommonQuotaHandler.h"
#include "StandFields.h"

namespace {

QVector<SymbolQuote::Level> levels(const VariantRecord &quote, const QString &prices, const QString &quantities)
{
    const QVariantList priceList = quote.value(prices).toList();
    const QVariantList quantityList = quote.value(quantities).toList();
    QVector<SymbolQuote::Level> levels;
    for (int i = 0; i < priceList.size(); ++i)
        levels.append({priceList.at(i).toDouble(), quantityList.value(i).toLongLong()});
    return levels;
}

QList<int> queue(const VariantRecord &quote, const QString &field)
{
    QList<int> quantities;
    const QVariantList list = quote.value(field).toList();
    for (const QVariant &quantity : list)
        quantities.append(quantity.toInt());
    return quantities;
}

} // namespace

SymbolQuote SymbolQuote::of(const QString &symbol)
{
    namespace Quote = Stand_Fields::Quote;
    const VariantRecord record = CommonQuotaHandler::instance().quote(symbol);
    SymbolQuote quote;
    quote.last = record.value(Quote::lastPrice).toDouble();
    quote.preClose = record.value(Quote::preClose).toDouble();
    quote.upLimit = record.value(Quote::upLimit).toDouble();
    quote.downLimit = record.value(Quote::downLimit).toDouble();
    quote.bids = levels(record, Quote::bidPrices, Quote::bidQtys);
    quote.asks = levels(record, Quote::askPrices, Quote::askQtys);
    quote.bidQueue = queue(record, Quote::bidQueue);
    quote.askQueue = queue(record, Quote::askQueue);
    return quote;
}

double SymbolQuote::opposite(bool isBuy) const
{
    const double best = (isBuy ? asks : bids).value(0).price;
    if (best > 0)
        return best;
    return last > 0 ? last : preClose;
}
