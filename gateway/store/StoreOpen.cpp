#include "StorePrivate.h"

#include "MasterValues.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QVariant>

#include <sys/file.h>

namespace {

constexpr int schemaVersion = 5;
constexpr int applicationId = 0x54304757; // marks the file as a gateway's

/// The state hangs on the accounts and on how their securities are counted; prices, users and new
/// securities may change from day to day.
QString fingerprint(const Books &books)
{
    QStringList accounts;
    for (const Account &account : books.accounts)
        accounts.append(account.productAccount + QLatin1Char('/') + account.tradingAccount);
    accounts.sort();
    const QByteArray text = accounts.join(QLatin1Char('\n')).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

QStringList schema()
{
    return {
        QStringLiteral(
            "CREATE TABLE clock (market_ms INTEGER NOT NULL, modify_ms INTEGER NOT NULL, "
            "modify_counter INTEGER NOT NULL, books TEXT NOT NULL, seed INTEGER NOT NULL, held INTEGER NOT NULL, "
            "exchange BLOB NOT NULL, day_order INTEGER NOT NULL, day_fill INTEGER NOT NULL)"),
        QStringLiteral("CREATE TABLE accounts (account TEXT PRIMARY KEY, enabled INTEGER NOT NULL) WITHOUT ROWID"),
        QStringLiteral("CREATE TABLE resources (id INTEGER PRIMARY KEY AUTOINCREMENT, account TEXT NOT NULL, "
                       "security TEXT NOT NULL, exchange TEXT NOT NULL, quantity INTEGER NOT NULL "
                       "CHECK (quantity >= 0), UNIQUE (account, security, exchange))"),
        QStringLiteral("CREATE INDEX resources_by_account ON resources (account, id)"),
        // The account is repeated so that one account's pools are found in the order of their ids.
        QStringLiteral("CREATE TABLE pools (id INTEGER PRIMARY KEY AUTOINCREMENT, resource INTEGER NOT NULL "
                       "REFERENCES resources (id) ON DELETE CASCADE, account TEXT NOT NULL, trader TEXT NOT NULL, "
                       "quantity INTEGER NOT NULL CHECK (quantity >= 0), max_exposure INTEGER NOT NULL, "
                       "max_pend_exposure INTEGER NOT NULL, UNIQUE (resource, trader))"),
        QStringLiteral("CREATE INDEX pools_by_account ON pools (account, id)"),
        QStringLiteral("CREATE TABLE usage (trader TEXT NOT NULL, account TEXT NOT NULL, security TEXT NOT NULL, "
                       "exchange TEXT NOT NULL, modify_time TEXT NOT NULL, "
                       "bought INTEGER NOT NULL, sold INTEGER NOT NULL, bought_amount REAL NOT NULL, "
                       "sold_amount REAL NOT NULL, pre_side TEXT NOT NULL, pre_bought INTEGER NOT NULL, "
                       "pre_sold INTEGER NOT NULL, pre_bought_amount REAL NOT NULL, pre_sold_amount REAL NOT NULL, "
                       "pool_total INTEGER NOT NULL, buy_limit INTEGER NOT NULL, sell_limit INTEGER NOT NULL, "
                       "close_buy_limit INTEGER NOT NULL, close_sell_limit INTEGER NOT NULL, "
                       "PRIMARY KEY (trader, account, security, exchange)) WITHOUT ROWID"),
        QStringLiteral("CREATE INDEX usage_by_holding ON usage (account, security, exchange, trader)"),
        QStringLiteral("CREATE TABLE positions (id INTEGER PRIMARY KEY AUTOINCREMENT, account TEXT NOT NULL, "
                       "security TEXT NOT NULL, exchange TEXT NOT NULL, quantity INTEGER NOT NULL, "
                       "tradeable INTEGER NOT NULL CHECK (tradeable >= 0), margin INTEGER NOT NULL "
                       "CHECK (margin >= 0), when_flat INTEGER NOT NULL, UNIQUE (account, security, exchange))"),
        QStringLiteral("CREATE TABLE orders (id INTEGER PRIMARY KEY AUTOINCREMENT, user TEXT NOT NULL, "
                       "account TEXT NOT NULL, security TEXT NOT NULL, exchange TEXT NOT NULL, symbol TEXT NOT NULL, "
                       "side TEXT NOT NULL, buy INTEGER NOT NULL, price REAL NOT NULL, quantity INTEGER NOT NULL, "
                       "open_pre INTEGER NOT NULL CHECK (open_pre >= 0), open_daily INTEGER NOT NULL "
                       "CHECK (open_daily >= 0), filled INTEGER NOT NULL, amount REAL NOT NULL, status TEXT NOT NULL, "
                       "business TEXT, remark TEXT, request TEXT, text TEXT, placed_ms INTEGER NOT NULL, "
                       "changed_ms INTEGER NOT NULL, received_ms INTEGER NOT NULL)"),
        QStringLiteral("CREATE INDEX live_orders ON orders (account, security, exchange) "
                       "WHERE open_pre + open_daily > 0"),
        // What an order would meet, best price first; and the last one that it repeats.
        QStringLiteral("CREATE INDEX live_prices ON orders (account, symbol, buy, price) "
                       "WHERE open_pre + open_daily > 0"),
        QStringLiteral("CREATE INDEX orders_by_content ON orders (user, account, security, exchange, side, price, "
                       "quantity)"),
        QStringLiteral("CREATE TABLE safety (trader TEXT PRIMARY KEY, trade_switch TEXT NOT NULL, "
                       "orders_per_second INTEGER NOT NULL, cancels_per_minute INTEGER NOT NULL, "
                       "duplicate_ms INTEGER NOT NULL, refuse_self_match INTEGER NOT NULL) WITHOUT ROWID"),
        QStringLiteral("CREATE TABLE fills (id INTEGER PRIMARY KEY AUTOINCREMENT, order_id INTEGER NOT NULL "
                       "REFERENCES orders (id), quantity INTEGER NOT NULL CHECK (quantity > 0), price REAL NOT NULL, "
                       "ms INTEGER NOT NULL)"),
        QStringLiteral("CREATE TABLE answers (user TEXT NOT NULL, request TEXT NOT NULL, valid_until INTEGER NOT NULL, "
                       "body BLOB NOT NULL, PRIMARY KEY (user, request)) WITHOUT ROWID"),
        QStringLiteral("CREATE INDEX answers_by_time ON answers (valid_until)"),
        QStringLiteral("CREATE TABLE audit (id INTEGER PRIMARY KEY AUTOINCREMENT, real_ms INTEGER NOT NULL, "
                       "market_ms INTEGER NOT NULL, user TEXT NOT NULL, type TEXT NOT NULL, request TEXT NOT NULL, "
                       "object TEXT, object_id TEXT, account TEXT, security TEXT, exchange TEXT, trader TEXT, "
                       "field TEXT, from_value TEXT, to_value TEXT, refusal TEXT)"),
        QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion),
        QStringLiteral("PRAGMA application_id = %1").arg(applicationId),
    };
}

} // namespace

std::unique_ptr<Store> Store::open(const QString &file, const Books &books, QString &errorText)
{
    std::unique_ptr<Store> store(new Store);
    if (store->prepare(file) && store->begin()) {
        QSqlQuery *tables = store->d->execute(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"), {});
        const bool fresh = tables && tables->next() && tables->value(0).toInt() == 0;
        if (tables)
            tables->finish();
        const bool good = fresh ? store->createSchema() && store->import(books)
                                : store->d->checkSchema() && store->readClock() && store->checkBooks(books);
        if (good && store->commit())
            return store;
        store->rollback();
    }
    errorText =
        QStringLiteral("%1: %2").arg(file.isEmpty() ? QStringLiteral("state in memory") : file, store->errorText());
    return nullptr;
}

bool Store::lock(const QString &file)
{
    // One file under two names is still one file.
    const QFileInfo info(file);
    const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    d->lock.setFileName(path + QStringLiteral(".lock"));
    if (!d->lock.open(QIODevice::ReadWrite)) {
        d->error = QStringLiteral("its lock file cannot be made");
        return false;
    }
    // The system takes the lock back with the process, however that ends.
    if (::flock(d->lock.handle(), LOCK_EX | LOCK_NB) == 0)
        return true;
    d->error = QStringLiteral("another gateway uses it");
    return false;
}

bool Store::prepare(const QString &file)
{
    if (!file.isEmpty() && !lock(file))
        return false;
    d->database.setDatabaseName(file.isEmpty() ? QStringLiteral(":memory:") : file);
    d->database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000"));
    if (!d->database.open()) {
        d->error = QStringLiteral("the state file cannot be opened");
        return false;
    }
    // Full: what was answered has to outlive the machine's power, too.
    return d->run(QStringLiteral("PRAGMA foreign_keys = ON")) && d->run(QStringLiteral("PRAGMA journal_mode = WAL")) &&
           d->run(QStringLiteral("PRAGMA synchronous = FULL"));
}

bool Store::createSchema()
{
    const QStringList statements = schema();
    for (const QString &statement : statements)
        if (!d->run(statement))
            return false;
    return true;
}

bool Store::Private::readPragma(const QString &name, int &value)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("PRAGMA ") + name) || !query.next())
        return failed(query);
    value = query.value(0).toInt();
    return true;
}

bool Store::Private::checkSchema()
{
    int application = 0;
    int version = 0;
    if (!readPragma(QStringLiteral("application_id"), application) ||
        !readPragma(QStringLiteral("user_version"), version))
        return false;
    if (application != applicationId) {
        error = QStringLiteral("is a database, but not the state of a gateway");
        return false;
    }
    if (version == schemaVersion)
        return true;
    error = QStringLiteral("was written by %1 gateway: its version is %2, this gateway reads %3")
                .arg(version > schemaVersion ? QStringLiteral("a newer") : QStringLiteral("an older"),
                     QString::number(version), QString::number(schemaVersion));
    return false;
}

bool Store::import(const Books &books)
{
    // Market time begins on a fixed Monday, so that a first start is the same on every day.
    d->marketMs = QDateTime({2026, 1, 5}, {9, 15}, Qt::UTC).toMSecsSinceEpoch();
    if (!d->execute(QStringLiteral("INSERT INTO clock VALUES (?, 0, 0, ?, 0, 0, x'', 0, 0)"),
                    {d->marketMs, fingerprint(books)}))
        return false;
    return importAccounts(books) && importPools(books) && importCarried(books) && importPositions(books) &&
           importSafety(books);
}

bool Store::importAccounts(const Books &books)
{
    for (const Account &account : books.accounts)
        if (!setEnabled(account.tradingAccount, account.enabled))
            return false;
    return true;
}

bool Store::importPools(const Books &books)
{
    QHash<Holding, QString> ids;
    for (const OpeningResource &resource : books.resources) {
        const QString id = saveResource({QString(), resource.holding, resource.quantity});
        if (id.isEmpty())
            return false;
        ids.insert(resource.holding, id);
    }
    for (const OpeningPool &pool : books.pools)
        if (savePool({QString(), ids.value(pool.holding), pool.trader, pool.holding, pool.quantity, pool.maxExposure,
                      pool.maxPendExposure})
                .isEmpty())
            return false;
    return true;
}

bool Store::importCarried(const Books &books)
{
    for (const CarriedLeg &carried : books.carried) {
        StoredUsage usage;
        usage.trader = carried.trader;
        usage.holding = carried.holding;
        Ledger::Leg &leg = usage.use.leg;
        if (carried.side == Master_Values::OpenPositionSide::BuyOpen)
            leg = {Ledger::Side::BuyOpen, carried.quantity, 0, carried.amount, 0};
        else
            leg = {Ledger::Side::SellOpen, 0, carried.quantity, 0, carried.amount};
        if (!saveUsage(usage))
            return false;
    }
    return true;
}

bool Store::importPositions(const Books &books)
{
    QVector<StoredPosition> positions;
    QHash<Holding, int> places;
    const auto at = [&](const Holding &holding) -> StoredPosition & {
        const int place = places.value(holding, positions.size());
        if (place == positions.size())
            positions.append({QString(), holding, {}, 0});
        places.insert(holding, place);
        return positions[place];
    };
    for (const Position &position : books.positions)
        at(position.holding).stock = {position.quantity, position.tradeable, 0};
    for (const MarginSecurity &margin : books.margin)
        if (margin.loanState == Master_Values::LoanState::InUse)
            at(margin.holding).stock.margin += margin.quantity;
    for (const CarriedLeg &carried : books.carried) {
        const bool isLong = carried.side == Master_Values::OpenPositionSide::BuyOpen;
        at(carried.holding).whenFlat -= isLong ? carried.quantity : -carried.quantity;
    }
    for (StoredPosition &position : positions) {
        position.whenFlat += position.stock.quantity + position.stock.margin;
        if (savePosition(position).isEmpty())
            return false;
    }
    return true;
}

bool Store::readClock()
{
    QSqlQuery query(d->database);
    if (!query.exec(QStringLiteral("SELECT market_ms, modify_ms, modify_counter FROM clock")) || !query.next())
        return d->failed(query);
    d->marketMs = d->committedMs = query.value(0).toLongLong();
    d->given = d->committed = {query.value(1).toLongLong(), query.value(2).toInt()};
    return true;
}

bool Store::checkBooks(const Books &books)
{
    QSqlQuery query(d->database);
    if (!query.exec(QStringLiteral("SELECT books FROM clock")) || !query.next())
        return d->failed(query);
    if (query.value(0).toString() != fingerprint(books)) {
        d->error = QStringLiteral("belongs to other books: it was begun with other accounts");
        return false;
    }
    if (!query.exec(QStringLiteral("SELECT account, security, exchange, quantity FROM resources UNION ALL "
                                   "SELECT account, security, exchange, 0 FROM usage UNION ALL "
                                   "SELECT r.account, r.security, r.exchange, q.quantity FROM resources r JOIN "
                                   "(SELECT resource, quantity FROM pools UNION ALL "
                                   "SELECT resource, max_exposure FROM pools WHERE max_exposure > 0 UNION ALL "
                                   "SELECT resource, max_pend_exposure FROM pools WHERE max_pend_exposure > 0) q "
                                   "ON q.resource = r.id")))
        return d->failed(query);
    while (query.next()) {
        const Instrument *instrument = books.instrument(query.value(1).toString(), query.value(2).toString());
        if (instrument && query.value(3).toLongLong() % instrument->dispFactor == 0)
            continue;
        d->error = QStringLiteral("belongs to other books: its security %1 on %2 is not in the books, or is counted "
                                  "in other units")
                       .arg(query.value(1).toString(), query.value(2).toString());
        return false;
    }
    return true;
}
