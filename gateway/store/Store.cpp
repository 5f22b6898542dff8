#include "StorePrivate.h"

#include "MasterValues.h"

#include <QtCore/QAtomicInteger>
#include <QtCore/QDateTime>
#include <QtSql/QSqlError>

namespace {

QString id(char kind, qint64 row)
{
    return QLatin1Char(kind) + QString::number(row).rightJustified(9, QLatin1Char('0'));
}

Ledger::Side sideOf(const QString &text)
{
    if (text == Master_Values::OpenPositionSide::BuyOpen)
        return Ledger::Side::BuyOpen;
    return text == Master_Values::OpenPositionSide::SellOpen ? Ledger::Side::SellOpen : Ledger::Side::None;
}

QString poolColumns()
{
    return QStringLiteral("SELECT p.id, p.resource, p.trader, r.account, r.security, r.exchange, p.quantity, "
                          "p.max_exposure, p.max_pend_exposure FROM pools p JOIN resources r ON r.id = p.resource ");
}

StoredPool poolOf(const QSqlQuery &query)
{
    return {StoreIds::pool(query.value(0).toLongLong()),
            StoreIds::resource(query.value(1).toLongLong()),
            query.value(2).toString(),
            {query.value(3).toString(), query.value(4).toString(), query.value(5).toString()},
            query.value(6).toLongLong(),
            query.value(7).toLongLong(),
            query.value(8).toLongLong()};
}

QString usageColumns()
{
    return QStringLiteral(
        "SELECT trader, account, security, exchange, modify_time, bought, sold, bought_amount, "
        "sold_amount, pre_side, pre_bought, pre_sold, pre_bought_amount, pre_sold_amount, pool_total, buy_limit, "
        "sell_limit, close_buy_limit, close_sell_limit FROM usage ");
}

StoredUsage usageOf(const QSqlQuery &query)
{
    StoredUsage usage;
    usage.trader = query.value(0).toString();
    usage.holding = {query.value(1).toString(), query.value(2).toString(), query.value(3).toString()};
    usage.modifyTime = query.value(4).toString();
    Ledger::TraderUse &use = usage.use;
    use.dailyBought = query.value(5).toLongLong();
    use.dailySold = query.value(6).toLongLong();
    use.dailyBoughtAmount = query.value(7).toDouble();
    use.dailySoldAmount = query.value(8).toDouble();
    use.leg.side = sideOf(query.value(9).toString());
    use.leg.bought = query.value(10).toLongLong();
    use.leg.sold = query.value(11).toLongLong();
    use.leg.boughtAmount = query.value(12).toDouble();
    use.leg.soldAmount = query.value(13).toDouble();
    Ledger::Limits &limits = usage.limits;
    limits.poolTotal = query.value(14).toLongLong();
    limits.dailyBuy = query.value(15).toLongLong();
    limits.dailySell = query.value(16).toLongLong();
    limits.closeBuy = query.value(17).toLongLong();
    limits.closeSell = query.value(18).toLongLong();
    return usage;
}

} // namespace

QString legSideText(Ledger::Side side)
{
    switch (side) {
    case Ledger::Side::BuyOpen:
        return Master_Values::OpenPositionSide::BuyOpen;
    case Ledger::Side::SellOpen:
        return Master_Values::OpenPositionSide::SellOpen;
    case Ledger::Side::None:
        break;
    }
    return Master_Values::OpenPositionSide::NoOpenPos;
}

QString StoreIds::resource(qint64 row)
{
    return id(resourceKind, row);
}

QString StoreIds::pool(qint64 row)
{
    return id(poolKind, row);
}

qint64 StoreIds::row(const QString &id, QChar kind)
{
    if (id.isEmpty())
        return 0;
    bool valid = false;
    const qint64 row = id.mid(1).toLongLong(&valid);
    return valid && row > 0 && id == ::id(kind.toLatin1(), row) ? row : -1;
}

ModifyTime ModifyTime::next(qint64 now) const
{
    if (now > ms)
        return {now, 0};
    return counter < 999 ? ModifyTime{ms, counter + 1} : ModifyTime{ms + 1, 0};
}

QString ModifyTime::toText() const
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
    return time.toString(QStringLiteral("yyyyMMddHHmmsszzz")) +
           QString::number(counter).rightJustified(3, QLatin1Char('0'));
}

Store::Private::Private()
    : connection([] {
        static QAtomicInteger<quint64> number;
        return QStringLiteral("t0store%1").arg(number.fetchAndAddRelaxed(1));
    }())
    , database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection))
{}

Store::Private::~Private()
{
    // Statements and handles have to be gone before the connection can be removed.
    prepared.clear();
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

bool Store::Private::failed(const QSqlQuery &query)
{
    error = query.lastError().text();
    return false;
}

bool Store::Private::run(const QString &sql)
{
    QSqlQuery query(database);
    return query.exec(sql) || failed(query);
}

QSqlQuery *Store::Private::execute(const QString &sql, const QVariantList &values)
{
    auto at = prepared.find(sql);
    if (at == prepared.end()) {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        if (!query.prepare(sql)) {
            failed(query);
            return nullptr;
        }
        at = prepared.insert(sql, query);
    }
    for (int i = 0; i < values.size(); ++i)
        at->bindValue(i, values.at(i));
    if (at->exec())
        return &*at;
    failed(*at);
    return nullptr;
}

Store::Store()
    : d(new Private)
{}

Store::~Store() = default;

template <typename Row, typename Read>
QVector<Row> Store::Private::rows(const QString &sql, const QVariantList &values, Read read)
{
    QVector<Row> found;
    QSqlQuery *query = execute(sql, values);
    while (query && query->next())
        found.append(read(*query));
    if (query && query->lastError().isValid())
        failed(*query);
    if (query)
        query->finish();
    return found;
}

bool Store::isResourceId(const QString &text)
{
    return StoreIds::row(text, QLatin1Char(StoreIds::resourceKind)) > 0;
}

bool Store::isPoolId(const QString &text)
{
    return StoreIds::row(text, QLatin1Char(StoreIds::poolKind)) > 0;
}

QVector<StoredResource> Store::resources(const QString &account, const QString &afterId, int limit)
{
    const qint64 after = StoreIds::row(afterId, QLatin1Char(StoreIds::resourceKind));
    const QString sql = QStringLiteral("SELECT id, account, security, exchange, quantity FROM resources "
                                       "WHERE account = ? AND id > ? ORDER BY id LIMIT ?");
    return d->rows<StoredResource>(sql, {account, after, limit}, [](const QSqlQuery &row) {
        return StoredResource{StoreIds::resource(row.value(0).toLongLong()),
                              {row.value(1).toString(), row.value(2).toString(), row.value(3).toString()},
                              row.value(4).toLongLong()};
    });
}

QVector<StoredPool> Store::pools(const QString &account, const QString &afterId, int limit)
{
    const qint64 after = StoreIds::row(afterId, QLatin1Char(StoreIds::poolKind));
    const QString sql = poolColumns() + QStringLiteral("WHERE p.account = ? AND p.id > ? ORDER BY p.id LIMIT ?");
    return d->rows<StoredPool>(sql, {account, after, limit}, poolOf);
}

QVector<StoredPool> Store::allPools()
{
    return d->rows<StoredPool>(poolColumns() + QStringLiteral("ORDER BY p.id"), {}, poolOf);
}

int Store::Private::usageCount(const QString &trader)
{
    const QString sql = QStringLiteral("SELECT COUNT(*) FROM usage WHERE trader = ?");
    return rows<int>(sql, {trader}, [](const QSqlQuery &row) { return row.value(0).toInt(); }).value(0);
}

QVector<StoredUsage> Store::usage(const QStringList &traders, int skip, int limit)
{
    // One statement a trader, so that its text, and with it the prepared statement, stays the same.
    const QString sql = usageColumns() + QStringLiteral("WHERE trader = ? ORDER BY account, security, exchange "
                                                        "LIMIT ? OFFSET ?");
    QStringList sorted = traders;
    sorted.removeDuplicates();
    sorted.sort();
    QVector<StoredUsage> page;
    for (const QString &trader : qAsConst(sorted)) {
        if (page.size() == limit)
            break;
        const int held = skip > 0 ? d->usageCount(trader) : 0;
        if (skip > 0 && skip >= held) {
            skip -= held;
            continue;
        }
        page += d->rows<StoredUsage>(sql, {trader, limit - page.size(), skip}, usageOf);
        skip = 0;
    }
    return page;
}

QVector<StoredUsage> Store::allUsage()
{
    return d->rows<StoredUsage>(usageColumns() + QStringLiteral("ORDER BY account, security, exchange, trader"), {},
                                usageOf);
}

bool Store::saveUsage(const StoredUsage &usage)
{
    const Ledger::TraderUse &use = usage.use;
    const Ledger::Limits &limits = usage.limits;
    QSqlQuery *query = d->execute(
        QStringLiteral("INSERT OR REPLACE INTO usage (trader, account, security, exchange, modify_time, bought, sold, "
                       "bought_amount, sold_amount, pre_side, pre_bought, pre_sold, pre_bought_amount, "
                       "pre_sold_amount, pool_total, buy_limit, sell_limit, close_buy_limit, close_sell_limit) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
        {usage.trader, usage.holding.account, usage.holding.securityID, usage.holding.exchange,
         usage.modifyTime.isNull() ? QStringLiteral("") : usage.modifyTime, use.dailyBought, use.dailySold,
         use.dailyBoughtAmount, use.dailySoldAmount, legSideText(use.leg.side), use.leg.bought, use.leg.sold,
         use.leg.boughtAmount, use.leg.soldAmount, limits.poolTotal, limits.dailyBuy, limits.dailySell, limits.closeBuy,
         limits.closeSell});
    return query != nullptr;
}

QString Store::nextModifyTime()
{
    d->given = d->given.next(d->marketMs);
    return d->given.toText();
}

bool Store::begin()
{
    return d->run(QStringLiteral("BEGIN IMMEDIATE"));
}

bool Store::commit()
{
    const QString clock = QStringLiteral("UPDATE clock SET modify_ms = ?, modify_counter = ?");
    const bool unchanged = d->given == d->committed;
    if ((unchanged || d->execute(clock, {d->given.ms, d->given.counter})) && d->run(QStringLiteral("COMMIT"))) {
        d->committed = d->given;
        return true;
    }
    rollback();
    return false;
}

void Store::rollback()
{
    // The reason of the failure stays the one that is told. A time that was given away is never given again.
    const QString reason = d->error;
    d->run(QStringLiteral("ROLLBACK"));
    d->error = reason;
}

void Store::clearError()
{
    d->error.clear();
}

QString Store::errorText() const
{
    return d->error;
}
