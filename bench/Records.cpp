#include "Records.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

#include <QtCore/QSet>

#include <random>

using namespace Master_Fields::ManualT0;

namespace {

constexpr int Accounts = 200;
constexpr int Traders = 50;
constexpr int Symbols = 2000;

QStringList numbered(const QString &pattern, int count)
{
    QStringList texts;
    for (int i = 0; i < count; ++i)
        texts.append(pattern.arg(i, 4, 10, QLatin1Char('0')));
    return texts;
}

const QStringList &accounts()
{
    static const QStringList texts = numbered(QStringLiteral("88001%1"), Accounts);
    return texts;
}

const QStringList &traders()
{
    static const QStringList texts = numbered(QStringLiteral("trader%1"), Traders);
    return texts;
}

const QStringList &securityIds()
{
    static const QStringList texts = numbered(QStringLiteral("60%1"), Symbols);
    return texts;
}

const QStringList &symbols()
{
    static const QStringList texts = numbered(QStringLiteral("60%1.SH"), Symbols);
    return texts;
}

/// Fields that only pass through, up to the full number.
void fillUp(VariantRecord &record, int fields)
{
    for (int i = 0; record.size() < fields; ++i)
        record.insert(QStringLiteral("passedThrough%1").arg(i, 2, 10, QLatin1Char('0')), qint64(i));
}

} // namespace

QVector<Records::Keys> Records::keys(int count, int ofFirst)
{
    std::mt19937 random(20240102);
    const auto below = [&random](int limit) { return int(random() % unsigned(limit)); };
    QVector<Keys> result;
    QSet<int> taken;
    while (result.size() < count) {
        const int account = result.size() < ofFirst ? 0 : 1 + below(Accounts - 1);
        const int trader = below(Traders);
        const int symbol = below(Symbols);
        const int number = (account * Traders + trader) * Symbols + symbol;
        if (taken.contains(number))
            continue;
        taken.insert(number);
        result.append({accounts().at(account), traders().at(trader), symbols().at(symbol), Orvane_Values::Exchange::sh,
                       securityIds().at(symbol), QStringLiteral("P%1").arg(number, 9, 10, QLatin1Char('0'))});
    }
    return result;
}

QString Records::firstAccount()
{
    return accounts().first();
}

ScriptedReference Records::reference()
{
    ScriptedReference reference;
    for (int i = 0; i < Symbols; ++i)
        reference.instruments.append({symbols().at(i), securityIds().at(i), Orvane_Values::Exchange::sh});
    return reference;
}

VariantRecord Records::usage(const Keys &keys, qint64 quantity, qint64 time)
{
    return {{Orvane_Fields::UserAccount::tradingAccount, keys.account},
            {Orvane_Fields::UserAccount::securityExchange, keys.exchange},
            {Orvane_Fields::Security::securityID, keys.securityId},
            {T0TraderId, keys.trader},
            {Master_Fields::System::ModifyTime, QStringLiteral("20240102%1").arg(time, 12, 10, QLatin1Char('0'))},
            {RtPoolTotalQty, 10 * quantity},
            {DailyBuyLimit, 9 * quantity},
            {DailySellLimit, 10 * quantity},
            {DailyBoughtQty, quantity},
            {DailySoldQty, quantity / 2},
            {DailyBoughtAmount, 10.01 * double(quantity)},
            {DailySoldAmount, 5.02 * double(quantity)},
            {DailyBuyTradeFee, 0.0005},
            {DailySellTradeFee, 0.0015},
            {PreUnclosedBuyLimit, qint64(200)},
            {PreUnclosedSellLimit, qint64(0)},
            {PreUnclosedBoughtQty, qint64(0)},
            {PreUnclosedSoldQty, qint64(200)},
            {PreUnclosedBoughtAmount, 0.0},
            {PreUnclosedSoldAmount, 1998.0},
            {PreUnclosedSide, Master_Values::OpenPositionSide::SellOpen},
            {TransDayProfitOwner, Master_Values::TransDayProfitOwner::ProfitToOrg}};
}

VariantRecord Records::pool(const Keys &keys, qint64 quantity)
{
    VariantRecord row{{PoolDetailId, keys.poolId},
                      {ResourceId, QString(QLatin1Char('R') + keys.account + keys.symbol)},
                      {PoolType, qint64(1)},
                      {Orvane_Fields::UserAccount::tradingAccount, keys.account},
                      {Orvane_Fields::UserAccount::securityExchange, keys.exchange},
                      {Orvane_Fields::Security::securityID, keys.securityId},
                      {Orvane_Fields::UserAccount::userID, keys.trader},
                      {T0TraderId, keys.trader},
                      {PoolTotalQty, quantity},
                      {MaxExposureQty, qint64(-1)},
                      {MaxPendExposureQty, quantity / 2}};
    fillUp(row, FieldCount - 1); // the hub adds the symbol
    return row;
}
