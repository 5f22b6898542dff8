#include "ModelGateway.h"

#include "GatewayRows.h"
#include "MasterMsgType.h"
#include "SharedDesk.h"
#include "StandMsgType.h"

#include <QtCore/QDateTime>

using namespace Master_MsgType;
using namespace GatewayRows;
using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::securityID;
using Orvane_Fields::UserAccount::productAccount;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

enum PoolKind { PublicPool = 0, PrivatePool = 1 };

bool sameHolding(const VariantRecord &a, const VariantRecord &b)
{
    return str(a, tradingAccount) == str(b, tradingAccount) && str(a, securityID) == str(b, securityID) &&
           str(a, securityExchange) == str(b, securityExchange);
}

} // namespace

MessageBody ModelGateway::change(const QString &type, const MessageBody &body)
{
    const auto resources = m_resources;
    const auto pools = m_pools;
    const auto enabled = m_enabled;
    const QString refusal = tryChange(type, body.rows.value(0), body.rows.mid(1));
    if (refusal.isEmpty())
        return ScriptedChannel::success();
    m_resources = resources;
    m_pools = pools;
    m_enabled = enabled;
    return ScriptedChannel::refusal(refusal);
}

QString ModelGateway::tryChange(const QString &type, const VariantRecord &header, const RecordList &rows)
{
    if (type == AddManualT0ResourceRequest || type == AddManualT0ResourceAndPoolRequest)
        return addResources(header, rows, type == AddManualT0ResourceAndPoolRequest);
    if (type == AlterManualT0ResourceRequest)
        return alterResource(rows.value(0));
    if (type == DeleteManualT0ResourceRequest)
        return deleteResources(rows);
    if (type == AllocateManualT0SecurityPoolRequest)
        return allocate(header, rows);
    if (type == DeleteManualT0SecurityPoolRequest)
        return deletePools(rows);
    if (type != AlterManualT0ProductsRequest)
        return QStringLiteral("unknown request ") + type;
    for (const VariantRecord &row : rows) {
        if (str(row, Master_Fields::System::alterType) == Master_Values::AlterType::Add)
            m_enabled.insert(str(row, tradingAccount));
        else
            m_enabled.remove(str(row, tradingAccount));
    }
    return {};
}

QString ModelGateway::addResources(const VariantRecord &header, const RecordList &rows, bool withPools)
{
    const bool cover = str(header, Master_Fields::System::addType) == Master_Values::AddType::Cover;
    for (VariantRecord row : rows) {
        if (!row.contains(tradingAccount))
            row.insert(tradingAccount, header.value(tradingAccount));
        const qint64 quantity = num(row, withPools ? PoolTotalQty : ResourceQty);
        QString id = resourceAt(row);
        if (id.isEmpty()) {
            id = QStringLiteral("r%1").arg(++m_lastId);
            m_resources.insert(id, Rows::resource(id, str(row, tradingAccount),
                                                  str(row, securityID) + ' ' + str(row, securityExchange), 0));
        }
        const qint64 held = cover ? 0 : num(m_resources.value(id), ResourceQty);
        m_resources[id].insert(ResourceQty, held + quantity);
        if (withPools)
            putPool(m_resources.value(id), str(row, T0TraderId), quantity);
    }
    return {};
}

QString ModelGateway::alterResource(const VariantRecord &row)
{
    const QString id = str(row, ResourceId);
    if (!m_resources.contains(id))
        return QStringLiteral("no such resource");
    if (num(row, ResourceQty) < allocated(id, PublicPool) + allocated(id, PrivatePool))
        return QStringLiteral("below what is allocated");
    m_resources[id].insert(ResourceQty, num(row, ResourceQty));
    return {};
}

QString ModelGateway::deleteResources(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        const QString id = str(row, ResourceId);
        if (m_resources.remove(id) == 0)
            return QStringLiteral("no such resource");
        const RecordList pools = of(m_pools, ResourceId, {id});
        for (const VariantRecord &pool : pools)
            m_pools.remove(str(pool, PoolDetailId));
    }
    return {};
}

QString ModelGateway::allocate(const VariantRecord &header, const RecordList &rows)
{
    const VariantRecord resource = m_resources.value(str(header, ResourceId));
    const auto kind = num(header, PoolType);
    if (resource.isEmpty())
        return QStringLiteral("no such resource");
    const RecordList held = of(m_pools, ResourceId, {str(resource, ResourceId)});
    for (const VariantRecord &pool : held) {
        if (num(pool, PoolType) == kind)
            m_pools.remove(str(pool, PoolDetailId));
    }
    for (const VariantRecord &row : rows)
        putPool(resource, str(row, T0TraderId), num(row, PoolTotalQty));
    const qint64 total =
        allocated(str(resource, ResourceId), PublicPool) + allocated(str(resource, ResourceId), PrivatePool);
    return total > num(resource, ResourceQty) ? QStringLiteral("more than there is") : QString();
}

QString ModelGateway::deletePools(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        if (m_pools.remove(str(row, PoolDetailId)) == 0)
            return QStringLiteral("no such pool");
    }
    return {};
}

MessageBody ModelGateway::order(const RecordList &rows)
{
    RecordList results;
    for (const VariantRecord &row : rows.mid(1)) {
        VariantRecord of = row;
        of.insert(tradingAccount, rows.first().value(tradingAccount));
        of.insert(securityID, str(row, Orvane_Fields::Security::symbol).section('.', 0, 0));
        of.insert(T0TraderId, Rows::user);
        const bool buys = str(row, Master_Fields::Security::SideUnion).contains(QLatin1String("Buy"));
        trade(of, buys, num(row, Orvane_Fields::Security::orderQty),
              row.value(Orvane_Fields::Security::price).toDouble());
        results.append({{Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::success},
                        {Orvane_Fields::Security::orderID, QStringLiteral("o%1").arg(++m_lastId)}});
    }
    return ScriptedChannel::success(results);
}

// ---- What others do ---------------------------------------------------------------------------------------

void ModelGateway::someoneTrades()
{
    VariantRecord row = usage();
    if (m_chance.oneIn(3)) {
        row.insert(Master_Fields::System::ModifyTime, nextTime());
        m_usage.insert(usageKey(row), row);
        tell(row);
        return;
    }
    trade(row, m_chance.oneIn(2), m_chance.upTo(50), 10);
}

void ModelGateway::trade(const VariantRecord &of, bool buys, qint64 quantity, double price)
{
    VariantRecord &row = m_usage[usageKey(of)];
    for (const QString &field : {T0TraderId, tradingAccount, securityID, securityExchange})
        row.insert(field, of.value(field));
    const QString &traded = buys ? DailyBoughtQty : DailySoldQty;
    const QString &amount = buys ? DailyBoughtAmount : DailySoldAmount;
    row.insert(traded, row.value(traded).toDouble() + double(quantity));
    row.insert(amount, row.value(amount).toDouble() + double(quantity) * price);
    row.insert(Master_Fields::System::ModifyTime, nextTime());
    tell(row);
}

void ModelGateway::tell(const VariantRecord &usage)
{
    if (push && m_subscribed.contains(str(usage, T0TraderId)))
        push(usage);
}

void ModelGateway::anotherManagerActs()
{
    const VariantRecord row = m_chance.resource(m_chance.account());
    const QString held = resourceAt(row);
    if (held.isEmpty()) {
        addResources({}, {row}, false);
    } else if (m_chance.oneIn(3)) {
        deleteResources({{{ResourceId, held}}});
    } else {
        m_resources[held].insert(ResourceQty, m_chance.quantity());
        putPool(m_resources.value(held), m_chance.of({"u1", "t2", "t3", "public"}), m_chance.upTo(60));
    }
}

void ModelGateway::alterProducts()
{
    const QString account = m_chance.account();
    if (!m_enabled.remove(account))
        m_enabled.insert(account);
}

QString ModelGateway::resourceAt(const VariantRecord &row) const
{
    for (const VariantRecord &held : m_resources) {
        if (sameHolding(held, row))
            return str(held, ResourceId);
    }
    return {};
}

void ModelGateway::putPool(const VariantRecord &resource, const QString &trader, qint64 quantity)
{
    QString id;
    for (const VariantRecord &held : qAsConst(m_pools)) {
        if (str(held, ResourceId) == str(resource, ResourceId) && str(held, T0TraderId) == trader)
            id = str(held, PoolDetailId);
    }
    if (id.isEmpty())
        id = QStringLiteral("p%1").arg(++m_lastId);
    m_pools.insert(id, Rows::pool(id, str(resource, tradingAccount),
                                  str(resource, securityID) + ' ' + str(resource, securityExchange), trader, quantity,
                                  str(resource, ResourceId)));
}

qint64 ModelGateway::allocated(const QString &resourceId, int poolType) const
{
    qint64 sum = 0;
    for (const VariantRecord &pool : m_pools) {
        if (str(pool, ResourceId) == resourceId && num(pool, PoolType) == poolType)
            sum += num(pool, PoolTotalQty);
    }
    return sum;
}
