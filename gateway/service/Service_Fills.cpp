#include "Service.h"

#include "GatewayTexts.h"
#include "MarketTime.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <limits>

void Service::applyFills(const QVector<Fill> &fills)
{
    for (const Fill &fill : fills)
        applyFill(fill);
}

void Service::applyFill(const Fill &fill)
{
    StoredOrder order = m_store->order(fill.id);
    if (order.open.total() < fill.quantity)
        return; // the store has failed: nothing of this will stay
    UsageGroup group = groupOf(order.holding);
    StoredPosition position = m_store->positionOf(order.holding);
    Ledger::fill(group.usageOf(order.user).use, position.stock, group.terms.t0, order.buy, order.open, fill.quantity,
                 fill.price);
    order.filled += fill.quantity;
    order.amount += double(fill.quantity) * fill.price;
    order.status = order.isLive() ? Stand_Values::OrderStatus::PartlyFilled : Stand_Values::OrderStatus::Filled;
    order.changedMs = m_memory.exchange.time();
    m_store->saveOrder(order);
    pushOrder(order);
    StoredFill stored{QString(), order, fill.quantity, fill.price, order.changedMs};
    stored.id = m_store->addFill(stored);
    pushFill(stored);
    saveGroup(group, order.user);
    m_store->savePosition(position);
    pushPosition(position);
}

void Service::endOrder(StoredOrder order, const QString &status, const QString &text)
{
    UsageGroup group = groupOf(order.holding);
    Ledger::release(group.usageOf(order.user).use, order.buy, order.open);
    order.open = {};
    order.status = status;
    order.text = text;
    order.changedMs = m_memory.exchange.time();
    m_store->saveOrder(order);
    pushOrder(order);
    saveGroup(group);
}

void Service::pushPosition(const StoredPosition &position, const ClientSession *only)
{
    push(Stand_MsgType::PositionPush, positionRow(position), position.holding.account, only);
}

void Service::nextDay()
{
    const QVector<StoredOrder> live = m_store->liveOrders();
    for (const StoredOrder &order : live)
        endOrder(order, Stand_Values::OrderStatus::Expired, GatewayTexts::dayIsOver());
    m_store->beginDay();
    m_memory.exchange.dayChange(MarketTime::nextMorning(m_memory.exchange.time()));
    m_store->moveClock(m_memory.exchange.time());

    UsageParts parts{m_store->allUsage(), m_store->allPools(), {}};
    for (StoredUsage &usage : parts.records) {
        const Account *account = m_books.account(usage.holding.account);
        Ledger::dayChange(usage.use, account ? Ledger::Fees{account->buyFee, account->sellFee} : Ledger::Fees());
        usage.modifyTime.clear(); // every record goes out
    }
    refreshUsage(parts);
    const QVector<StoredPosition> positions = m_store->positions(QString(), std::numeric_limits<int>::max());
    for (StoredPosition position : positions) {
        if (position.stock.tradeable == position.stock.quantity)
            continue;
        Ledger::dayChange(position.stock);
        m_store->savePosition(position);
        pushPosition(position);
    }
}

QString Service::faults()
{
    QStringList found;
    const QVector<StoredPosition> positions = m_store->positions(QString(), std::numeric_limits<int>::max());
    for (const StoredPosition &position : positions) {
        const UsageGroup group = groupOf(position.holding);
        Ledger::Picture picture{group.terms, group.uses(), {}, position.stock, position.whenFlat, {}};
        const QVector<StoredOrder> orders = m_store->liveOrdersOf(position.holding);
        for (const StoredOrder &order : orders)
            picture.orders.append({group.byTrader.keys().indexOf(order.user), order.buy, order.open});
        // What a lowered pool had in use already is not known any more.
        const Ledger::PublicUse used = Ledger::publicUse(picture.terms, picture.traders);
        picture.overuse = {qMax<qint64>(0, used.toBuy - picture.terms.publicQty),
                           qMax<qint64>(0, used.toSell - picture.terms.publicQty)};
        const QString wrong = Ledger::faults(picture);
        if (!wrong.isEmpty())
            found.append(QStringLiteral("%1 %2: %3").arg(position.holding.account, position.holding.securityID, wrong));
    }
    return found.join(QLatin1Char('\n'));
}
