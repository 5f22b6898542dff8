#include "BooksLoader.h"

#include "BookFiles.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "StandFields.h"

QStringList BookTexts::exchanges()
{
    return {Orvane_Values::Exchange::sh, Orvane_Values::Exchange::sz, Master_Values::Exchange::bj,
            Orvane_Values::Exchange::hhk, Orvane_Values::Exchange::szhk};
}

QString BookTexts::suffixOf(const QString &exchange)
{
    if (exchange == Orvane_Values::Exchange::sh)
        return Orvane_Values::SymbolPost::sh;
    if (exchange == Orvane_Values::Exchange::sz)
        return Orvane_Values::SymbolPost::sz;
    if (exchange == Master_Values::Exchange::bj)
        return Orvane_Values::SymbolPost::bj;
    return Orvane_Values::SymbolPost::hk;
}

Books::Loaded Books::load(const QString &dir)
{
    return BooksLoader(dir).load();
}

BooksLoader::BooksLoader(const QString &dir)
    : m_dir(dir)
{}

Books::Loaded BooksLoader::load()
{
    m_haveTicks = forEachRow(BookFiles::ticks(), [this](RowReader &row) { readTick(row); });
    forEachRow(BookFiles::sessions(), [this](RowReader &row) { readSession(row); });
    m_haveInstruments = forEachRow(BookFiles::instruments(), [this](RowReader &row) { readInstrument(row); });
    m_haveAccounts = forEachRow(BookFiles::accounts(), [this](RowReader &row) { readAccount(row); });
    m_haveUsers = forEachRow(BookFiles::users(), [this](RowReader &row) { readUser(row); });
    m_books.buildIndexes();
    forEachRow(BookFiles::positions(), [this](RowReader &row) { readPosition(row); });
    forEachRow(BookFiles::margin(), [this](RowReader &row) { readMargin(row); });
    m_haveResources = forEachRow(BookFiles::resources(), [this](RowReader &row) { readResource(row); });
    forEachRow(BookFiles::pools(), [this](RowReader &row) { readPool(row); });
    forEachRow(BookFiles::carried(), [this](RowReader &row) { readCarried(row); });
    forEachRow(BookFiles::safety(), [this](RowReader &row) { readSafety(row); });
    forEachRow(BookFiles::quotes(), [this](RowReader &row) { readQuote(row); });

    if (m_errors.isEmpty())
        return {std::move(m_books), {}};
    return {std::nullopt, std::move(m_errors)};
}

bool BooksLoader::forEachRow(const QString &file, const std::function<void(RowReader &)> &read)
{
    BookError error;
    const auto rows = readCsv(m_dir, file, error);
    if (!rows) {
        m_errors.append(error);
        return false;
    }
    if (!headerIsGood(file, rows->value(0)))
        return false;

    const QStringList columns = BookFiles::columns(file);
    m_seen.clear();
    for (int i = 1; i < rows->size(); ++i) {
        const CsvRow &row = rows->at(i);
        if (row.cells.size() != columns.size()) {
            m_errors.append({file, row.line, QStringLiteral("(all)"), row.cells.join(QLatin1Char(',')),
                             QStringLiteral("%1 cells, found %2")
                                 .arg(QString::number(columns.size()), QString::number(row.cells.size()))});
            continue;
        }
        RowReader reader(file, columns, row, m_errors);
        read(reader);
    }
    return true;
}

bool BooksLoader::headerIsGood(const QString &file, const CsvRow &header)
{
    const QStringList columns = BookFiles::columns(file);
    if (header.cells == columns)
        return true;
    int at = 0;
    while (at < columns.size() && header.cells.value(at) == columns.at(at))
        ++at;
    m_errors.append({file, header.line, columns.value(at, QStringLiteral("(behind the last)")), header.cells.value(at),
                     QStringLiteral("the header row ") + columns.join(QLatin1Char(','))});
    return false;
}

void BooksLoader::checkUnique(RowReader &row, const char *column, const QString &key, const QString &what)
{
    if (m_seen.contains(key))
        row.fail(column, QStringLiteral("only one row ") + what);
    m_seen.insert(key);
}

void BooksLoader::readTick(RowReader &row)
{
    const QString table = row.id("table");
    TickBand band;
    band.from = row.atLeast("from", 0);
    band.to = row.text("to").isEmpty() ? 0 : row.above("to", 0);
    band.tick = row.above("tick", 0);
    const bool readable = row.ok({"to"});
    QVector<TickBand> &bands = m_books.tickTables[table];
    if (row.ok({"from", "to"}) && band.to > 0 && band.to <= band.from)
        row.fail("to", QStringLiteral("a price above the band's start, or nothing for no end"));
    if (row.ok({"table", "from"}) && bands.isEmpty() && band.from > 0)
        row.fail("from", QStringLiteral("0, where the first band of a table starts"));
    const bool endKnown = !bands.isEmpty() && !m_unknownEnds.contains(table);
    if (row.ok({"from"}) && endKnown && band.from != bands.constLast().to)
        row.fail("from", bands.constLast().to > 0
                             ? QStringLiteral("%1, where the former band of the table ends").arg(bands.constLast().to)
                             : QStringLiteral("no band behind the one without an end"));
    bands.append(band);
    if (readable)
        m_unknownEnds.remove(table);
    else
        m_unknownEnds.insert(table);
}

void BooksLoader::readSession(RowReader &row)
{
    static const QStringList phases{QStringLiteral("OpenAuction"), QStringLiteral("Continuous"),
                                    QStringLiteral("CloseAuction")};
    SessionPhase phase;
    phase.market = row.oneOf("market", BookTexts::exchanges());
    phase.phase = row.oneOf("phase", phases);
    phase.from = row.time("from");
    phase.to = row.time("to");
    phase.cancel = row.flag("cancel");
    const QString earlier = m_phaseEnds.value(phase.market);
    const bool endKnown = row.ok({"market", "to"});
    if (row.ok({"from", "to"}) && phase.to <= phase.from)
        row.fail("to", QStringLiteral("a time after the phase's start"));
    if (row.ok({"market", "from"}) && phase.from < earlier)
        row.fail("from", QStringLiteral("a time not before %1, where the market's former phase ends").arg(earlier));
    if (endKnown)
        m_phaseEnds.insert(phase.market, phase.to);
    m_books.sessions.append(phase);
}

void BooksLoader::readAccount(RowReader &row)
{
    Account account;
    account.productAccount = row.id("productAccount");
    account.productName = row.filledText("productName");
    account.tradingAccount = row.id("tradingAccount");
    account.accountText = row.filledText("accountText");
    account.assetProp = row.oneOf("assetProp", {Stand_Values::AssetProp::Cash, Master_Values::FundAccountType::Credit});
    account.exchanges = row.listOf("exchanges", BookTexts::exchanges());
    account.enabled = row.flag("enabled");
    account.profitOwner = row.text("profitOwner");
    account.buyFee = row.atLeast("buyFee", 0);
    account.sellFee = row.atLeast("sellFee", 0);
    if (account.buyFee >= 1)
        row.fail("buyFee", QStringLiteral("a fraction of the amount, below 1"));
    if (account.sellFee >= 1)
        row.fail("sellFee", QStringLiteral("a fraction of the amount, below 1"));

    const int earlier = m_accountAt.value(account.tradingAccount, -1);
    if (earlier >= 0)
        row.fail("tradingAccount", QStringLiteral("only one row a trading account, it is listed under product %1")
                                       .arg(m_books.accounts.at(earlier).productAccount));
    const QString name = m_productNames.value(account.productAccount, account.productName);
    if (name != account.productName)
        row.fail("productName", QStringLiteral("\"%1\", the name of the product in former rows").arg(name));
    m_productNames.insert(account.productAccount, name);
    m_accountAt.insert(account.tradingAccount, m_books.accounts.size());
    m_books.accounts.append(account);
}

void BooksLoader::readUser(RowReader &row)
{
    User user;
    user.userID = row.id("userID");
    user.userName = row.filledText("userName");
    user.organCode = row.filledText("organCode");
    user.roles =
        row.listOf("roles", {Master_Values::UserRoles::ManualT0Mangager, Master_Values::UserRoles::ManualT0Trader});
    user.accounts = row.list("accounts");
    if (user.userID == Books::publicTrader())
        row.fail("userID", QStringLiteral("another id: this one means the public pools"));
    checkUnique(row, "userID", user.userID, QStringLiteral("a user"));
    QSet<QString> listed;
    for (const QString &account : qAsConst(user.accounts)) {
        if (listed.contains(account))
            row.fail("accounts", QStringLiteral("%1 only once").arg(account));
        else if (m_haveAccounts && !m_accountAt.contains(account))
            row.fail("accounts", QStringLiteral("trading accounts of accounts.csv, not %1").arg(account));
        listed.insert(account);
    }
    m_books.users.append(user);
}

void BooksLoader::readQuote(RowReader &row)
{
    OpeningQuote quote{row.filledText("symbol"), row.atLeast("last", 0)};
    if (row.ok({"symbol"}) && m_haveInstruments && !m_symbols.contains(quote.symbol))
        row.fail("symbol", QStringLiteral("a symbol of instruments.csv"));
    checkUnique(row, "symbol", quote.symbol, QStringLiteral("a symbol"));
    m_books.quotes.append(quote);
}
