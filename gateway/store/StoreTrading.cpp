#include "StorePrivate.h"

namespace {

QString positionColumns()
{
    return QStringLiteral("SELECT id, account, security, exchange, quantity, tradeable, margin, when_flat "
                          "FROM positions ");
}

StoredPosition positionFrom(const QSqlQuery &query)
{
    const auto number = [&query](int column) { return query.value(column).toLongLong(); };
    return {StoreIds::id(StoreIds::positionKind, number(0)),
            {query.value(1).toString(), query.value(2).toString(), query.value(3).toString()},
            {number(4), number(5), number(6)},
            number(7)};
}

QString orderColumns()
{
    return QStringLiteral("o.id, o.user, o.account, o.security, o.exchange, o.symbol, o.side, o.buy, o.price, "
                          "o.quantity, o.open_pre, o.open_daily, o.filled, o.amount, o.status, o.business, o.remark, "
                          "o.request, o.text, o.placed_ms, o.changed_ms, o.received_ms");
}

StoredOrder orderFrom(const QSqlQuery &query)
{
    const auto text = [&query](int column) { return query.value(column).toString(); };
    const auto number = [&query](int column) { return query.value(column).toLongLong(); };
    StoredOrder order;
    order.id = StoreIds::id(StoreIds::orderKind, number(0));
    order.user = text(1);
    order.holding = {text(2), text(3), text(4)};
    order.symbol = text(5);
    order.sideUnion = text(6);
    order.buy = number(7) != 0;
    order.price = query.value(8).toDouble();
    order.quantity = number(9);
    order.open = {number(10), number(11)};
    order.filled = number(12);
    order.amount = query.value(13).toDouble();
    order.status = text(14);
    order.businessType = text(15);
    order.remark = text(16);
    order.request = text(17);
    order.text = text(18);
    order.placedMs = number(19);
    order.changedMs = number(20);
    order.receivedMs = number(21);
    return order;
}

QString selectOrders()
{
    return QStringLiteral("SELECT %1 FROM orders o ").arg(orderColumns());
}

QString live()
{
    return QStringLiteral("o.open_pre + o.open_daily > 0 ");
}

StoredFill fillFrom(const QSqlQuery &query)
{
    constexpr int behindOrder = 22;
    return {StoreIds::id(StoreIds::fillKind, query.value(behindOrder).toLongLong()), orderFrom(query),
            query.value(behindOrder + 1).toLongLong(), query.value(behindOrder + 2).toDouble(),
            query.value(behindOrder + 3).toLongLong()};
}

} // namespace

bool Store::isPositionId(const QString &text)
{
    return StoreIds::row(text, StoreIds::positionKind) > 0;
}

bool Store::isOrderId(const QString &text)
{
    return StoreIds::row(text, StoreIds::orderKind) > 0;
}

bool Store::isFillId(const QString &text)
{
    return StoreIds::row(text, StoreIds::fillKind) > 0;
}

QVector<StoredPosition> Store::positions(const QString &afterId, int limit)
{
    return d->rows<StoredPosition>(positionColumns() + QStringLiteral("WHERE id > ? ORDER BY id LIMIT ?"),
                                   {StoreIds::row(afterId, StoreIds::positionKind), limit}, positionFrom);
}

StoredPosition Store::positionOf(const Holding &holding)
{
    StoredPosition position = d->row<StoredPosition>(
        positionColumns() + QStringLiteral("WHERE account = ? AND security = ? AND exchange = ?"),
        {holding.account, holding.securityID, holding.exchange}, positionFrom);
    position.holding = holding;
    return position;
}

QString Store::savePosition(const StoredPosition &position)
{
    const Ledger::Stock &stock = position.stock;
    const QVariantList values{stock.quantity, stock.tradeable, stock.margin};
    if (!position.id.isEmpty())
        return d->execute(QStringLiteral("UPDATE positions SET quantity = ?, tradeable = ?, margin = ? WHERE id = ?"),
                          values + QVariantList{StoreIds::row(position.id, StoreIds::positionKind)})
                   ? position.id
                   : QString();
    const Holding &holding = position.holding;
    const QSqlQuery *query =
        d->execute(QStringLiteral("INSERT INTO positions (quantity, tradeable, margin, account, security, exchange, "
                                  "when_flat) VALUES (?, ?, ?, ?, ?, ?, ?)"),
                   values + QVariantList{holding.account, holding.securityID, holding.exchange, position.whenFlat});
    return query ? StoreIds::id(StoreIds::positionKind, query->lastInsertId().toLongLong()) : QString();
}

StoredOrder Store::order(const QString &id)
{
    return d->row<StoredOrder>(selectOrders() + QStringLiteral("WHERE o.id = ?"),
                               {StoreIds::row(id, StoreIds::orderKind)}, orderFrom);
}

QVector<StoredOrder> Store::liveOrders()
{
    // Ordered by an expression: by the bare id the database would walk every order there ever was.
    return d->rows<StoredOrder>(selectOrders() + QStringLiteral("WHERE ") + live() + QStringLiteral("ORDER BY +o.id"),
                                {}, orderFrom);
}

QVector<StoredLive> Store::liveOf(const Holding &holding)
{
    const QString sql = QStringLiteral("SELECT o.user, o.buy, SUM(o.open_pre), SUM(o.open_daily) FROM orders o "
                                       "WHERE o.account = ? AND o.security = ? AND o.exchange = ? AND ") +
                        live() + QStringLiteral("GROUP BY o.user, o.buy");
    return d->rows<StoredLive>(sql, {holding.account, holding.securityID, holding.exchange}, [](const QSqlQuery &row) {
        return StoredLive{
            row.value(0).toString(), row.value(1).toBool(), {row.value(2).toLongLong(), row.value(3).toLongLong()}};
    });
}

QVector<StoredOrder> Store::liveOrdersOf(const Holding &holding)
{
    return d->rows<StoredOrder>(selectOrders() +
                                    QStringLiteral("WHERE o.account = ? AND o.security = ? AND o.exchange = ? AND ") +
                                    live() + QStringLiteral("ORDER BY o.id"),
                                {holding.account, holding.securityID, holding.exchange}, orderFrom);
}

QVector<StoredOrder> Store::liveOrdersOfAccount(const QString &account)
{
    return d->rows<StoredOrder>(selectOrders() + QStringLiteral("WHERE o.account = ? AND ") + live() +
                                    QStringLiteral("ORDER BY o.id"),
                                {account}, orderFrom);
}

QString Store::lastOrderId()
{
    const auto last = d->row<qint64>(QStringLiteral("SELECT MAX(id) FROM orders"), {},
                                     [](const QSqlQuery &row) { return row.value(0).toLongLong(); });
    return last > 0 ? StoreIds::id(StoreIds::orderKind, last) : QString();
}

StoredOrder Store::lastEqual(const StoredOrder &order, const QString &upToId)
{
    const Holding &holding = order.holding;
    const QString sql = selectOrders() + QStringLiteral("WHERE o.user = ? AND o.account = ? AND o.security = ? AND "
                                                        "o.exchange = ? AND o.side = ? AND o.price = ? AND "
                                                        "o.quantity = ? AND o.id <= ? ORDER BY o.id DESC LIMIT 1");
    return d->row<StoredOrder>(sql,
                               {order.user, holding.account, holding.securityID, holding.exchange, order.sideUnion,
                                order.price, order.quantity, StoreIds::row(upToId, StoreIds::orderKind)},
                               orderFrom);
}

StoredOrder Store::meeting(const StoredOrder &order, const QString &account)
{
    const QString reached = order.buy ? QStringLiteral("o.price <= ? ORDER BY o.price")
                                      : QStringLiteral("o.price >= ? ORDER BY o.price DESC");
    const QString sql = selectOrders() + QStringLiteral("WHERE o.account = ? AND o.symbol = ? AND o.buy = ? AND ") +
                        live() + QStringLiteral("AND ") + reached + QStringLiteral(" LIMIT 1");
    return d->row<StoredOrder>(sql, {account, order.symbol, int(!order.buy), order.price}, orderFrom);
}

QVector<StoredOrder> Store::ordersOfDay(const QString &user, const QString &afterId, int limit)
{
    const QString sql = selectOrders() + QStringLiteral("WHERE o.id > MAX(?, (SELECT day_order FROM clock)) AND "
                                                        "(? = '' OR o.user = ?) ORDER BY o.id LIMIT ?");
    return d->rows<StoredOrder>(sql, {StoreIds::row(afterId, StoreIds::orderKind), bound(user), bound(user), limit},
                                orderFrom);
}

QVector<StoredFill> Store::fillsOfDay(const QString &user, const QString &afterId, int limit)
{
    const QString sql = QStringLiteral("SELECT %1, f.id, f.quantity, f.price, f.ms FROM fills f JOIN orders o "
                                       "ON o.id = f.order_id WHERE f.id > MAX(?, (SELECT day_fill FROM clock)) AND "
                                       "(? = '' OR o.user = ?) ORDER BY f.id LIMIT ?")
                            .arg(orderColumns());
    return d->rows<StoredFill>(sql, {StoreIds::row(afterId, StoreIds::fillKind), bound(user), bound(user), limit},
                               fillFrom);
}

QString Store::saveOrder(const StoredOrder &order)
{
    const QVariantList state{order.open.pre, order.open.daily, order.filled,   order.amount,
                             order.status,   order.text,       order.changedMs};
    if (!order.id.isEmpty())
        return d->execute(QStringLiteral("UPDATE orders SET open_pre = ?, open_daily = ?, filled = ?, amount = ?, "
                                         "status = ?, text = ?, changed_ms = ? WHERE id = ?"),
                          state + QVariantList{StoreIds::row(order.id, StoreIds::orderKind)})
                   ? order.id
                   : QString();
    const Holding &holding = order.holding;
    const QSqlQuery *query = d->execute(
        QStringLiteral(
            "INSERT INTO orders (open_pre, open_daily, filled, amount, status, text, changed_ms, user, "
            "account, security, exchange, symbol, side, buy, price, quantity, business, remark, request, "
            "placed_ms, received_ms) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
        state + QVariantList{order.user, holding.account, holding.securityID, holding.exchange, order.symbol,
                             order.sideUnion, int(order.buy), order.price, order.quantity, order.businessType,
                             order.remark, order.request, order.placedMs, order.receivedMs});
    return query ? StoreIds::id(StoreIds::orderKind, query->lastInsertId().toLongLong()) : QString();
}

QString Store::addFill(const StoredFill &fill)
{
    const QSqlQuery *query =
        d->execute(QStringLiteral("INSERT INTO fills (order_id, quantity, price, ms) VALUES (?, ?, ?, ?)"),
                   {StoreIds::row(fill.order.id, StoreIds::orderKind), fill.quantity, fill.price, fill.ms});
    return query ? StoreIds::id(StoreIds::fillKind, query->lastInsertId().toLongLong()) : QString();
}

StoredMarket Store::market()
{
    return d->row<StoredMarket>(
        QStringLiteral("SELECT market_ms, seed, held, exchange FROM clock"), {}, [](const QSqlQuery &query) {
            return StoredMarket{query.value(0).toLongLong(), quint64(query.value(1).toLongLong()),
                                query.value(2).toInt() != 0, query.value(3).toByteArray()};
        });
}

void Store::moveClock(qint64 marketMs)
{
    d->marketMs = marketMs;
}

bool Store::saveMarket(const StoredMarket &market)
{
    moveClock(market.ms);
    return d->execute(QStringLiteral("UPDATE clock SET market_ms = ?, seed = ?, held = ?, exchange = ?"),
                      {market.ms, qint64(market.seed), int(market.held), market.exchange});
}

bool Store::beginDay()
{
    return d->execute(QStringLiteral("UPDATE clock SET day_order = (SELECT COALESCE(MAX(id), 0) FROM orders), "
                                     "day_fill = (SELECT COALESCE(MAX(id), 0) FROM fills)"),
                      {});
}
