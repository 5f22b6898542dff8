#include "RealtimeFields.h"

#include "DisplayUnits.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "Quantity.h"

#include <QtCore/QStringBuilder>

using namespace Master_Fields::ManualT0;

namespace {

qint64 quantity(const VariantRecord &record, const QString &field)
{
    return Quantity::toQty(record.value(field));
}

double number(const VariantRecord &record, const QString &field)
{
    return Quantity::toNum(record.value(field));
}

} // namespace

// Never deleted: the hub's thread may use them while exit() runs the destructors of statics.

const QVector<QString> &RealtimeFields::scaledQty()
{
    static const auto *fields = new QVector<QString>{PreUnclosedBuyLimit, PreUnclosedSellLimit, PreUnclosedBoughtQty,
                                                     PreUnclosedSoldQty,  DailyBuyLimit,        DailySellLimit,
                                                     DailyBoughtQty,      DailySoldQty,         RtPoolTotalQty};
    return *fields;
}

const QVector<QString> &RealtimeFields::summedQty()
{
    static const auto *fields = new QVector<QString>(scaledQty() + QVector<QString>{RtTotalBuyLimit, RtTotalSellLimit});
    return *fields;
}

const QVector<QString> &RealtimeFields::summedAmount()
{
    static const auto *fields =
        new QVector<QString>{PreUnclosedBoughtAmount, PreUnclosedSoldAmount, DailyBoughtAmount, DailySoldAmount};
    return *fields;
}

QString RealtimeFields::key(const VariantRecord &record, const QString &symbol)
{
    return key(text(record, Orvane_Fields::UserAccount::tradingAccount), text(record, T0TraderId), symbol,
               text(record, Orvane_Fields::UserAccount::securityExchange));
}

QString RealtimeFields::key(const QString &tradingAccount, const QString &traderId, const QString &symbol,
                            const QString &exchange)
{
    const QLatin1Char separator('_');
    return traderId % separator % tradingAccount % separator % symbol % separator % exchange;
}

void RealtimeFields::add(VariantRecord &sum, const VariantRecord &other)
{
    for (const QString &field : summedQty())
        sum.insert(field, Quantity::satAdd(quantity(sum, field), quantity(other, field)));
    for (const QString &field : summedAmount())
        sum.insert(field, number(sum, field) + number(other, field));
}
