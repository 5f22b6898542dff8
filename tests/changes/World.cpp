#include "World.h"

#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"

namespace {

const Books &theBooks()
{
    static const Books books = World::books();
    return books;
}

} // namespace

Books World::books()
{
    using namespace Orvane_Values::Exchange;
    const QString cash = Stand_Values::AssetProp::Cash;
    const QString credit = Master_Values::FundAccountType::Credit;
    const QString manager = Master_Values::UserRoles::ManualT0Mangager;
    const QString trader = Master_Values::UserRoles::ManualT0Trader;
    Books books;
    // A text that is put into another one must not be taken for a place in it.
    books.accounts = {{"P1", "One", "A1", "A1%2", cash, {sh, hhk}, true, "", 0, 0},
                      {"P1", "One", "A2", "A2%1", credit, {sh}, true, "", 0, 0},
                      {"P2", "Two", "A3", "A3", cash, {sh, hhk}, true, "", 0, 0}};
    books.users = {{"m", "Manager", "O1", {manager}, {}},
                   {"t1", "First", "O1", {trader}, {"A1", "A2", "A3"}},
                   {"t2", "Second", "O1", {trader}, {"A3", "A1"}},
                   {"t3", "Third", "O1", {trader}, {"A2"}},
                   {"x", "Nobody", "O1", {}, {"A1"}}};
    for (const Security &security : securities()) {
        Instrument instrument;
        instrument.exchange = security.exchange;
        instrument.securityID = security.securityID;
        instrument.symbol = security.symbol;
        instrument.dispFactor = security.factor;
        books.instruments.append(instrument);
    }
    books.buildIndexes();
    return books;
}

const QVector<World::Security> &World::securities()
{
    using namespace Orvane_Values::Exchange;
    static const QVector<Security> all{{"600001", sh, "600001.SH", 1},
                                       {"110001", sh, "110001.SH", 10},
                                       {"00700", hhk, "00700.HK", 1}};
    return all;
}

World::Security World::securityOf(const VariantRecord &row)
{
    const QString id = row.value(Orvane_Fields::Security::securityID).toString();
    const QString exchange = row.value(Orvane_Fields::UserAccount::securityExchange).toString();
    for (const Security &security : securities())
        if (security.securityID == id && security.exchange == exchange)
            return security;
    return {id, exchange, QString(), 1};
}

QString World::accountText(const QString &account)
{
    const Account *known = theBooks().account(account);
    return known ? known->accountText : QString();
}

bool World::mayHold(const QString &account, const Security &security)
{
    const Account *known = theBooks().account(account);
    return known && !security.symbol.isEmpty() && known->exchanges.contains(security.exchange);
}

bool World::mayTrade(const QString &trader, const QString &account)
{
    return trader == Books::publicTrader() || theBooks().tradersOf(account).contains(trader);
}
