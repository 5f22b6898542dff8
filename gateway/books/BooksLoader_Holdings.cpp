#include "BooksLoader.h"

#include "MasterValues.h"
#include "StandFields.h"

#include <limits>

namespace {

QString keyOf(const Holding &holding)
{
    return QStringList{holding.account, holding.securityID, holding.exchange}.join(QLatin1Char('|'));
}

int numberUpTo(RowReader &row, const char *column, int most)
{
    const qint64 number = row.whole(column, 0);
    if (number > most)
        row.fail(column, QStringLiteral("at most %1, or 0 for no such rule").arg(most));
    return int(qMin<qint64>(number, most));
}

} // namespace

Holding BooksLoader::readHolding(RowReader &row)
{
    Holding holding{row.id("tradingAccount"), row.id("securityID"), row.oneOf("exchange", BookTexts::exchanges())};
    const int account = m_accountAt.value(holding.account, -1);
    if (row.ok({"tradingAccount"}) && m_haveAccounts && account < 0)
        row.fail("tradingAccount", QStringLiteral("a trading account of accounts.csv"));
    const bool known = m_instrumentAt.contains(holding.securityID + QLatin1Char('|') + holding.exchange);
    if (row.ok({"securityID", "exchange"}) && m_haveInstruments && !known)
        row.fail("securityID", QStringLiteral("a security of instruments.csv on exchange ") + holding.exchange);
    if (row.ok({"exchange"}) && account >= 0 && !m_books.accounts.at(account).exchanges.contains(holding.exchange))
        row.fail("exchange", QStringLiteral("one of the account's exchanges ") +
                                 m_books.accounts.at(account).exchanges.join(QLatin1Char(';')));
    return holding;
}

/// A private pool or a leg needs somebody who may trade it; without a holding, any trader is good.
QString BooksLoader::readTrader(RowReader &row, const Holding &holding)
{
    const QString trader = row.id("trader");
    if (!row.ok({"trader"}) || !m_haveUsers || trader == Books::publicTrader())
        return trader;
    const User *user = m_books.user(trader);
    if (!user)
        row.fail("trader", QStringLiteral("a user of users.csv"));
    else if (!user->isTrader())
        row.fail("trader", QStringLiteral("a user with the role ") + Master_Values::UserRoles::ManualT0Trader);
    else if (m_accountAt.contains(holding.account) && !m_books.tradersOf(holding.account).contains(trader))
        row.fail("trader", QStringLiteral("a user who may trade account ") + holding.account);
    return trader;
}

void BooksLoader::checkUnits(RowReader &row, const char *column, qint64 quantity, const Holding &holding)
{
    const int at = m_instrumentAt.value(holding.securityID + QLatin1Char('|') + holding.exchange, -1);
    const qint64 factor = at < 0 ? 1 : m_books.instruments.at(at).dispFactor;
    if (quantity > 0 && quantity % factor != 0)
        row.fail(column, QStringLiteral("a multiple of the display factor %1").arg(factor));
}

void BooksLoader::readPosition(RowReader &row)
{
    Position position{readHolding(row), row.whole("quantity", 0), row.whole("tradeable", 0)};
    if (row.ok({"quantity", "tradeable"}) && position.tradeable > position.quantity)
        row.fail("tradeable", QStringLiteral("at most the quantity %1").arg(position.quantity));
    checkUnique(row, "securityID", keyOf(position.holding), QStringLiteral("an account, security and exchange"));
    m_books.positions.append(position);
}

void BooksLoader::readMargin(RowReader &row)
{
    MarginSecurity margin{readHolding(row), row.whole("quantity", 0), row.filledText("loanState")};
    const int account = m_accountAt.value(margin.holding.account, -1);
    if (account >= 0 && m_books.accounts.at(account).assetProp == Stand_Values::AssetProp::Cash)
        row.fail("tradingAccount", QStringLiteral("an account of the kind ") + Master_Values::FundAccountType::Credit);
    checkUnique(row, "securityID", keyOf(margin.holding) + QLatin1Char('|') + margin.loanState,
                QStringLiteral("an account, security, exchange and loan state"));
    m_books.margin.append(margin);
}

void BooksLoader::readResource(RowReader &row)
{
    OpeningResource resource{readHolding(row), row.whole("quantity", 0)};
    checkUnits(row, "quantity", resource.quantity, resource.holding);
    checkUnique(row, "securityID", keyOf(resource.holding), QStringLiteral("an account, security and exchange"));
    const qint64 unknown = std::numeric_limits<qint64>::max();
    m_poolRoom.insert(resource.holding, row.ok({"quantity"}) ? resource.quantity : unknown);
    m_books.resources.append(resource);
}

void BooksLoader::readPool(RowReader &row)
{
    OpeningPool pool;
    pool.holding = readHolding(row);
    pool.trader = readTrader(row, pool.holding);
    pool.quantity = row.whole("quantity", 0);
    pool.maxExposure = row.whole("maxExposure", -1);
    pool.maxPendExposure = row.whole("maxPendExposure", -1);
    checkUnits(row, "quantity", pool.quantity, pool.holding);
    checkUnits(row, "maxExposure", pool.maxExposure, pool.holding);
    checkUnits(row, "maxPendExposure", pool.maxPendExposure, pool.holding);
    checkUnique(row, "trader", pool.trader + QLatin1Char('|') + keyOf(pool.holding),
                QStringLiteral("a trader, account, security and exchange"));
    m_books.pools.append(pool);
    if (!row.ok({"tradingAccount", "securityID", "exchange"}) || !m_haveResources)
        return;
    const auto room = m_poolRoom.find(pool.holding);
    if (room == m_poolRoom.end()) {
        row.fail("securityID", QStringLiteral("a security with a row for the account in resources.csv"));
    } else if (row.ok({"quantity"}) && pool.quantity > *room) {
        row.fail("quantity", QStringLiteral("at most %1, which other pools leave of the resource").arg(*room));
    } else {
        *room -= pool.quantity;
    }
}

void BooksLoader::readCarried(RowReader &row)
{
    CarriedLeg leg;
    leg.holding = readHolding(row);
    leg.trader = readTrader(row, leg.holding);
    leg.side = row.oneOf("side", {Master_Values::OpenPositionSide::BuyOpen, Master_Values::OpenPositionSide::SellOpen});
    leg.quantity = row.whole("quantity", 1);
    leg.amount = row.above("amount", 0);
    if (leg.trader == Books::publicTrader())
        row.fail("trader", QStringLiteral("a user of users.csv"));
    checkUnique(row, "side", leg.trader + QLatin1Char('|') + keyOf(leg.holding),
                QStringLiteral("a trader, account, security and exchange: a leg has one side"));
    m_books.carried.append(leg);
}

void BooksLoader::readSafety(RowReader &row)
{
    OpeningSafety safety;
    safety.trader = readTrader(row);
    SafetyRules &rules = safety.rules;
    rules.tradeSwitch = row.oneOf("tradeSwitch", SafetyRules::tradeSwitches());
    rules.ordersPerSecond = numberUpTo(row, "ordersPerSecond", SafetyRules::maxOrdersPerSecond);
    rules.cancelsPerMinute = numberUpTo(row, "cancelsPerMinute", SafetyRules::maxCancelsPerMinute);
    rules.duplicateMs = numberUpTo(row, "duplicateMs", SafetyRules::maxDuplicateMs);
    rules.refuseSelfMatch = row.flag("refuseSelfMatch");
    if (safety.trader == Books::publicTrader())
        row.fail("trader", QStringLiteral("a user of users.csv"));
    checkUnique(row, "trader", safety.trader, QStringLiteral("a trader"));
    m_books.safety.append(safety);
}
