#include "Records.h"

#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "MessageBody.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

#include <QtCore/QSet>

#include <random>

using namespace Master_Fields::ManualT0;

namespace {

constexpr int Accounts = 200;
constexpr int Traders = 50;
constexpr int Symbols = 2000;
constexpr int PlantedSymbols = 10;
constexpr int PlantedAccounts = 20;
constexpr int PoolsPerResource = 10;

QStringList numbered(const QString &pattern, int count)
{
    QStringList texts;
    for (int i = 0; i < count; ++i)
        texts.append(pattern.arg(i, 4, 10, QLatin1Char('0')));
    return texts;
}

struct Symbol {
    QString symbol;
    QString securityId;
    QString exchange;
};

const QVector<Symbol> &symbols()
{
    static const QVector<Symbol> all = [] {
        QVector<Symbol> list;
        const QStringList ids = numbered(QStringLiteral("60%1"), Symbols);
        for (int i = 0; i < Symbols; ++i) {
            const QString exchange = i % 2 ? Orvane_Values::Exchange::sz : Orvane_Values::Exchange::sh;
            list.append({ids.at(i) + QLatin1Char('.') + exchange, ids.at(i), exchange});
        }
        return list;
    }();
    return all;
}

Records::Keys keysOf(int account, int trader, int symbol)
{
    const Symbol &of = symbols().at(symbol);
    const int number = (account * Traders + trader) * Symbols + symbol;
    return {Records::accounts().at(account),
            Records::traders().at(trader),
            of.symbol,
            of.exchange,
            of.securityId,
            QStringLiteral("P%1").arg(number, 9, 10, QLatin1Char('0')),
            QStringLiteral("R%1").arg(account * Symbols + symbol, 9, 10, QLatin1Char('0'))};
}

/// Fields that only pass through, up to the full number.
void fillUp(VariantRecord &record, int fields)
{
    static const QStringList names = numbered(QStringLiteral("passedThrough%1"), Records::UsageFields);
    for (int i = 0; record.size() < fields; ++i)
        record.insert(names.at(i), qint64(i));
}

} // namespace

const QStringList &Records::accounts()
{
    static const QStringList texts = numbered(QStringLiteral("88001%1"), Accounts);
    return texts;
}

const QStringList &Records::traders()
{
    static const QStringList texts =
        numbered(QStringLiteral("trader%1"), Traders - 1) + QStringList(ManualT0Logic::PublicTrader);
    return texts;
}

QVector<Records::Keys> Records::keys(int count)
{
    std::mt19937 random(20240102);
    const auto below = [&random](int limit) { return int(random() % unsigned(limit)); };
    QVector<Keys> result;
    QSet<QString> taken;
    result.reserve(count);
    while (result.size() < count) {
        const int planted = result.size() - AnsweredPools;
        Keys next;
        if (planted < 0)
            next = keysOf(0, below(Traders), PlantedSymbols + below(Symbols - PlantedSymbols));
        else if (planted < PlantedSymbols * PlantedAccounts)
            next = keysOf(1 + planted / PlantedSymbols, below(Traders), planted % PlantedSymbols);
        else
            next = keysOf(1 + below(Accounts - 1), below(Traders), PlantedSymbols + below(Symbols - PlantedSymbols));
        if (taken.contains(next.poolId))
            continue;
        taken.insert(next.poolId);
        result.append(next);
    }
    return result;
}

QVector<Records::Keys> Records::groupedByResource(QVector<Keys> keys)
{
    const int resources = keys.size() / PoolsPerResource;
    for (int i = 0; i < keys.size(); ++i)
        keys[i].resourceId = keys.at(i % resources).resourceId;
    return keys;
}

Records::Filter Records::planted(int symbol)
{
    return {accounts().mid(1, PlantedAccounts), traders(), symbols().at(symbol).symbol, symbols().at(symbol).exchange};
}

QString Records::answeredAccount()
{
    return accounts().first();
}

QString Records::loginTrader()
{
    return traders().first();
}

ScriptedReference Records::reference()
{
    ScriptedReference reference;
    reference.user = loginTrader();
    for (int i = 0; i < Symbols; ++i) {
        const Symbol &of = symbols().at(i);
        reference.instruments.append({of.symbol, of.securityId, of.exchange, i % 10 ? 1 : 10, 10.0 + i % 7});
    }
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
                      {ResourceId, keys.resourceId},
                      {PoolType, qint64(keys.trader == ManualT0Logic::PublicTrader ? 0 : 1)},
                      {Orvane_Fields::UserAccount::tradingAccount, keys.account},
                      {Orvane_Fields::UserAccount::securityExchange, keys.exchange},
                      {Orvane_Fields::Security::securityID, keys.securityId},
                      {Orvane_Fields::UserAccount::userID, keys.trader},
                      {T0TraderId, keys.trader},
                      {PoolTotalQty, quantity},
                      {MaxExposureQty, qint64(-1)},
                      {MaxPendExposureQty, quantity / 2}};
    fillUp(row, PoolFields - 1); // the hub adds the symbol
    return row;
}

VariantRecord Records::resource(const Keys &keys, qint64 quantity)
{
    return {{ResourceId, keys.resourceId},
            {Orvane_Fields::UserAccount::tradingAccount, keys.account},
            {Orvane_Fields::UserAccount::securityExchange, keys.exchange},
            {Orvane_Fields::Security::securityID, keys.securityId},
            {ResourceQty, quantity}};
}

RecordList Records::traderRows()
{
    RecordList rows;
    for (const QString &trader : traders()) {
        if (trader != ManualT0Logic::PublicTrader)
            rows.append({{Orvane_Fields::UserAccount::userID, trader},
                         {Orvane_Fields::UserAccount::userName, traderName(trader)}});
    }
    return rows;
}

QString Records::traderName(const QString &trader)
{
    return trader == ManualT0Logic::PublicTrader ? trader : QStringLiteral("name of ") + trader;
}

RecordList Records::PoolAnswers::next(int changed)
{
    static const QVector<Keys> answered = keys(AnsweredPools);
    RecordList rows;
    for (int i = 0; i < AnsweredPools; ++i) {
        m_quantities[i] += i < changed ? 1 : 0;
        rows.append(pool(answered.at(i), m_quantities.at(i)));
    }
    return asReceived(rows);
}

RecordList Records::asReceived(const RecordList &rows)
{
    MessageBody body;
    QString errorText;
    if (!MessageBody::decode(MessageBody{{}, rows}.encode(), body, errorText))
        qFatal("rows that cannot be sent: %s", qUtf8Printable(errorText));
    return body.rows;
}
