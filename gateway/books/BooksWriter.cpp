#include "BooksWriter.h"

#include "BookFiles.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

namespace {

QString number(double value)
{
    return QString::number(value, 'g', 14);
}

QString number(qint64 value)
{
    return QString::number(value);
}

QString flag(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

QString joined(const QStringList &items)
{
    return items.join(QLatin1Char(BookFiles::listSeparator));
}

QString quoted(const QString &cell)
{
    static const QString special = QStringLiteral(",\"\r\n#");
    for (const QChar c : cell)
        if (special.contains(c))
            return QLatin1Char('"') + QString(cell).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
                   QLatin1Char('"');
    return cell;
}

class CsvText
{
public:
    CsvText(const QString &file, const char *comments)
        : m_file(file)
        , m_text(comments)
    {
        add(BookFiles::columns(file));
    }

    void add(const QStringList &cells)
    {
        QStringList line;
        for (const QString &cell : cells)
            line.append(quoted(cell));
        m_text += line.join(QLatin1Char(',')).toUtf8() + '\n';
    }

    void into(QMap<QString, QByteArray> &files) const { files.insert(m_file, m_text); }

private:
    const QString m_file;
    QByteArray m_text;
};

void writeInstruments(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::instruments(),
                "# One row a security and exchange. upLimit and downLimit 0: no price limits.\n"
                "# tickTable is a tick or the name of a table of ticks.csv; qtyStep is the step of a buy,\n"
                "# lotSize what the desk calls one lot, dispFactor how many shares or bonds one server unit\n"
                "# is; t0 1: may be bought and sold on one day.\n");
    for (const Instrument &i : books.instruments)
        csv.add({i.exchange,
                 i.securityID,
                 i.symbol,
                 i.chineseName,
                 i.spellCode,
                 i.type,
                 i.subType,
                 i.marketSuffix,
                 number(i.preClose),
                 number(i.upLimit),
                 number(i.downLimit),
                 i.tickTable,
                 number(qint64(i.pricePrecision)),
                 number(i.qtyStep),
                 number(i.minQty),
                 number(i.maxQty),
                 number(i.lotSize),
                 number(i.dispFactor),
                 flag(i.t0),
                 joined(i.marks)});
    csv.into(files);
}

void writeTicks(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::ticks(), "# Ticks by price: each band starts where the former one ends, the first at 0.\n"
                                    "# No \"to\": the band has no end.\n");
    for (auto table = books.tickTables.cbegin(); table != books.tickTables.cend(); ++table)
        for (const TickBand &band : *table)
            csv.add({table.key(), number(band.from), band.to > 0 ? number(band.to) : QString(), number(band.tick)});
    csv.into(files);
}

void writeSessions(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::sessions(), "# Trading hours of an exchange, hh:mm:ss, in order. Phases: OpenAuction,\n"
                                       "# Continuous, CloseAuction. cancel 0: orders cannot be cancelled.\n");
    for (const SessionPhase &s : books.sessions)
        csv.add({s.market, s.phase, s.from, s.to, flag(s.cancel)});
    csv.into(files);
}

void writeAccounts(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::accounts(),
                "# One row a trading account. assetProp: Cash or Credit. enabled: for T0. profitOwner:\n"
                "# ProfitToOrg when the profit of carried-over positions is the organisation's, else nothing.\n"
                "# Fees are fractions of the amount.\n");
    for (const Account &a : books.accounts)
        csv.add({a.productAccount, a.productName, a.tradingAccount, a.accountText, a.assetProp, joined(a.exchanges),
                 flag(a.enabled), a.profitOwner, number(a.buyFee), number(a.sellFee)});
    csv.into(files);
}

void writeUsers(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::users(), "# roles: ManualT0Mangager, ManualT0Trader or both. accounts: those the user may\n"
                                    "# trade, best first.\n");
    for (const User &u : books.users)
        csv.add({u.userID, u.userName, u.organCode, joined(u.roles), joined(u.accounts)});
    csv.into(files);
}

void writePositions(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText positions(BookFiles::positions(), "# What the accounts hold, and how much of it can be sold today.\n");
    for (const Position &p : books.positions)
        positions.add(
            {p.holding.account, p.holding.securityID, p.holding.exchange, number(p.quantity), number(p.tradeable)});
    positions.into(files);

    CsvText margin(BookFiles::margin(), "# Securities that credit accounts may borrow; loanState InUse: usable now.\n");
    for (const MarginSecurity &m : books.margin)
        margin.add({m.holding.account, m.holding.securityID, m.holding.exchange, number(m.quantity), m.loanState});
    margin.into(files);
}

void writeOpeningState(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText resources(BookFiles::resources(), "# Stock set aside for T0 when the gateway starts for the first time.\n"
                                              "# Quantities are shares or bonds, multiples of dispFactor.\n");
    for (const OpeningResource &r : books.resources)
        resources.add({r.holding.account, r.holding.securityID, r.holding.exchange, number(r.quantity)});
    resources.into(files);

    CsvText pools(BookFiles::pools(), "# Parts of the resources; trader \"public\": for all traders of the account.\n"
                                      "# maxExposure and maxPendExposure -1: no limit.\n");
    for (const OpeningPool &p : books.pools)
        pools.add({p.trader, p.holding.account, p.holding.securityID, p.holding.exchange, number(p.quantity),
                   number(p.maxExposure), number(p.maxPendExposure)});
    pools.into(files);

    CsvText carried(BookFiles::carried(), "# Positions traders carry over from the day before; side BuyOpen or\n"
                                          "# SellOpen, amount in money.\n");
    for (const CarriedLeg &c : books.carried)
        carried.add({c.trader, c.holding.account, c.holding.securityID, c.holding.exchange, c.side, number(c.quantity),
                     number(c.amount)});
    carried.into(files);
}

void writeSafety(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::safety(),
                "# What traders are held to when the gateway starts for the first time; managers\n"
                "# change it. tradeSwitch: Active, ReduceOnly or Halted. duplicateMs: for how long\n"
                "# an order is not taken again. 0: no such rule.\n");
    for (const OpeningSafety &s : books.safety)
        csv.add({s.trader, s.rules.tradeSwitch, number(qint64(s.rules.ordersPerSecond)),
                 number(qint64(s.rules.cancelsPerMinute)), number(qint64(s.rules.duplicateMs)),
                 flag(s.rules.refuseSelfMatch)});
    csv.into(files);
}

void writeQuotes(const Books &books, QMap<QString, QByteArray> &files)
{
    CsvText csv(BookFiles::quotes(), "# Last prices when the gateway starts; 0: none yet.\n");
    for (const OpeningQuote &q : books.quotes)
        csv.add({q.symbol, number(q.last)});
    csv.into(files);
}

} // namespace

QMap<QString, QByteArray> BooksWriter::files(const Books &books)
{
    QMap<QString, QByteArray> files;
    writeInstruments(books, files);
    writeTicks(books, files);
    writeSessions(books, files);
    writeAccounts(books, files);
    writeUsers(books, files);
    writePositions(books, files);
    writeOpeningState(books, files);
    writeSafety(books, files);
    writeQuotes(books, files);
    return files;
}

QString BooksWriter::write(const Books &books, const QString &dir)
{
    const QDir target(dir);
    if (!target.mkpath(QStringLiteral(".")))
        return QStringLiteral("%1: the folder cannot be made").arg(dir);
    const QMap<QString, QByteArray> contents = files(books);
    for (auto file = contents.cbegin(); file != contents.cend(); ++file)
        if (target.exists(file.key()))
            return QStringLiteral("%1: exists already, nothing was written").arg(target.filePath(file.key()));

    for (auto file = contents.cbegin(); file != contents.cend(); ++file) {
        QFile output(target.filePath(file.key()));
        if (!output.open(QIODevice::WriteOnly) || output.write(*file) != file->size() || !output.flush())
            return QStringLiteral("%1: %2").arg(output.fileName(), output.errorString());
    }
    return {};
}
