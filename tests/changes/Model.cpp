#include "Model.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "World.h"

#include <cmath>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::securityID;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Values::RequestExeStatus::fail;
using Orvane_Values::RequestExeStatus::success;

namespace {

constexpr qint64 mostQuantity = 1'000'000'000;

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

QString publicTrader()
{
    return QStringLiteral("public");
}

/// Of display units, as the client reads it.
qint64 whole(const QVariant &value)
{
    return qint64(value.toDouble());
}

/// As the server reads what the client sends of it: as it is where one unit is one, else in units of the server.
bool readQuantity(const QVariant &value, int factor, qint64 least, qint64 &quantity)
{
    const bool isWholeNumber = value.isValid() && value.type() != QVariant::String &&
                               std::floor(value.toDouble()) == value.toDouble();
    quantity = whole(value) / factor * factor;
    return (factor > 1 || isWholeNumber) && quantity >= least && quantity <= mostQuantity;
}

QString multipleFault(const VariantRecord &row, const QString &field, const QString &what)
{
    const World::Security security = World::securityOf(row);
    if (whole(row.value(field)) % security.factor == 0)
        return {};
    return QStringLiteral("标的%1的%2必须是10的整数倍，请重新填写！").arg(security.symbol, what);
}

Ending refusedInRow(int index, const RecordList &rows, const QString &fault)
{
    if (rows.size() == 1)
        return {fail, fault};
    return {fail, QStringLiteral("第%1行数据检查到错误：%2").arg(QString::number(index + 1), fault)};
}

QMap<QString, RecordList> groupedBy(const RecordList &rows, const QString &field)
{
    QMap<QString, RecordList> groups;
    for (const VariantRecord &row : rows)
        groups[text(row, field)].append(row);
    return groups;
}

Ending endingOf(int failed, int all, const QString &beginning = {})
{
    if (failed == 0)
        return {success, QString()};
    return {failed == all ? fail : Master_Values::RequestExeStatus::ParticalFail, beginning, true};
}

} // namespace

qint64 Model::Resource::allocated(bool toTheirOwn) const
{
    qint64 sum = 0;
    for (auto pool = pools.cbegin(); pool != pools.cend(); ++pool)
        if ((pool.key() != publicTrader()) == toTheirOwn)
            sum += pool->quantity;
    return sum;
}

template <typename Apply> Model::Sent Model::send(Apply apply)
{
    const Fate fate = std::exchange(m_fate, Fate::Answered);
    if (fate == Fate::NeverArrives)
        return Sent::Unanswered;
    const QMap<QString, Resource> before = m_resources;
    const bool isDone = apply();
    if (!isDone)
        m_resources = before;
    return fate == Fate::AnswerLost ? Sent::Unanswered : isDone ? Sent::Done : Sent::Refused;
}

Ending Model::expect(const Change &change, Fate fate)
{
    m_fate = fate;
    switch (change.operation) {
    case Change::AlterProducts:
        return alterProducts(change.products);
    case Change::AddResources:
        return addResources(change.rows, change.cover);
    case Change::AlterResource:
        return alterResource(change.rows.value(0));
    case Change::DeleteResources:
        return deleteResources(change.rows);
    case Change::AllocatePublic:
        return allocatePublic(change.rows);
    case Change::AllocateToTraders:
        return allocateToTraders(change.rows);
    case Change::AddPools:
        return addPools(change.rows, change.cover);
    case Change::DeletePools:
        return deletePools(change.ids);
    }
    return {};
}

// ---- What the client does: checks and requests

Ending Model::alterProducts(const QMap<QString, QStringList> &products)
{
    const Sent sent = send([&] {
        m_enabled.clear();
        const Books books = World::books();
        for (const Account &account : books.accounts)
            if (products.value(account.productAccount).contains(account.assetProp))
                m_enabled.insert(account.tradingAccount);
        return true;
    });
    return sent == Sent::Done ? Ending{success, {}} : Ending{Master_Values::RequestExeStatus::timeout, {}, true};
}

QString Model::accountFault(const VariantRecord &row) const
{
    const QString account = text(row, tradingAccount);
    if (account.isEmpty())
        return QStringLiteral("账号数据为空");
    if (World::accountText(account).isEmpty())
        return QStringLiteral("账号数据不合法");
    if (!m_enabled.contains(account))
        return QStringLiteral("账号%1未选为T0产品").arg(World::accountText(account));
    return World::securityOf(row).symbol.isEmpty() ? QStringLiteral("证券代码不存在") : QString();
}

Ending Model::addResources(const RecordList &rows, bool cover)
{
    RecordList sendable;
    for (int i = 0; i < rows.size(); ++i) {
        QString fault = accountFault(rows.at(i));
        if (fault.isEmpty())
            fault = multipleFault(rows.at(i), ResourceQty, QStringLiteral("资源数量"));
        if (!fault.isEmpty())
            return refusedInRow(i, rows, fault);
        if (rows.at(i).value(ResourceQty).toDouble() > 0)
            sendable.append(rows.at(i));
    }
    if (sendable.isEmpty())
        return {fail, QStringLiteral("没有可添加的资源数据")};

    int failed = 0;
    const QMap<QString, RecordList> groups = groupedBy(sendable, tradingAccount);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        failed += send([&] { return serverAdds(group.key(), *group, cover); }) != Sent::Done;
    return endingOf(failed, groups.size());
}

Ending Model::alterResource(const VariantRecord &row)
{
    if (text(row, ResourceId).isEmpty())
        return {fail, QStringLiteral("修改资源数量必须传入资源ID")};
    const Resource held = shownResource(text(row, ResourceId));
    if (held.id.isEmpty())
        return {fail, QStringLiteral("未找到对应资源")};
    if (held.allocated() > whole(row.value(ResourceQty)))
        return {fail, QStringLiteral("修改后的数量不能小于已分配数量%1，请重新填写或修改券池后重新尝试")
                          .arg(held.allocated())};
    VariantRecord complete = held.security;
    complete.insert(ResourceQty, row.value(ResourceQty));
    const QString fault = multipleFault(complete, ResourceQty, QStringLiteral("资源数量"));
    if (!fault.isEmpty())
        return {fail, fault};
    return endingOf(send([&] { return serverAlters(row); }) != Sent::Done, 1);
}

Ending Model::deleteResources(const RecordList &rows)
{
    const Sent sent = send([&] { return serverDeletes(rows); });
    if (sent == Sent::Unanswered)
        return {Master_Values::RequestExeStatus::timeout, {}, true};
    return endingOf(sent != Sent::Done, 1);
}

Ending Model::allocatePublic(const RecordList &rows)
{
    for (int i = 0; i < rows.size(); ++i) {
        const Resource held = shownResource(text(rows.at(i), ResourceId));
        const qint64 wanted = whole(rows.at(i).value(PoolTotalQty));
        const QString fault = held.quantity < wanted + held.allocated(true)
                                  ? QStringLiteral("资源存在超配，请重新配置！")
                                  : multipleFault(rows.at(i), PoolTotalQty, QStringLiteral("券池数量"));
        if (!fault.isEmpty())
            return refusedInRow(i, rows, fault);
    }
    return allocate(rows, false);
}

Ending Model::allocateToTraders(const RecordList &rows)
{
    QMap<QString, qint64> wanted;
    for (int i = 0; i < rows.size(); ++i) {
        const QString fault = multipleFault(rows.at(i), PoolTotalQty, QStringLiteral("券池数量"));
        if (!fault.isEmpty())
            return refusedInRow(i, rows, fault);
        wanted[text(rows.at(i), ResourceId)] += whole(rows.at(i).value(PoolTotalQty));
    }
    for (auto resource = wanted.cbegin(); resource != wanted.cend(); ++resource) {
        const Resource held = shownResource(resource.key());
        if (held.quantity < *resource + held.allocated(false))
            return {fail, QStringLiteral("账号%1标的%2下的资源存在超配，请重新配置！")
                              .arg(World::accountText(held.account), World::securityOf(held.security).symbol)};
    }
    return allocate(rows, true);
}

Ending Model::allocate(const RecordList &rows, bool toTheirOwn)
{
    int failed = 0;
    const QMap<QString, RecordList> groups = groupedBy(rows, ResourceId);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        failed += send([&] { return serverAllocates(group.key(), *group, toTheirOwn); }) != Sent::Done;
    return endingOf(failed, groups.size());
}

Ending Model::addPools(const RecordList &rows, bool cover)
{
    if (rows.isEmpty())
        return {fail, QStringLiteral("没有检查到券池信息")};
    for (int i = 0; i < rows.size(); ++i) {
        QString fault = accountFault(rows.at(i));
        if (fault.isEmpty() && !QStringList{"public", "t1", "t2", "t3"}.contains(text(rows.at(i), T0TraderId)))
            fault = QStringLiteral("交易员ID不存在");
        if (fault.isEmpty())
            fault = multipleFault(rows.at(i), PoolTotalQty, QStringLiteral("券池数量"));
        if (!fault.isEmpty())
            return refusedInRow(i, rows, fault);
    }
    int failed = 0;
    const QMap<QString, RecordList> groups = groupedBy(rows, tradingAccount);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        failed += send([&] { return serverAddsPools(group.key(), *group, cover); }) != Sent::Done;
    return endingOf(failed, groups.size(), QStringLiteral("添加券池时错误："));
}

Ending Model::deletePools(const QStringList &ids)
{
    const QStringList shown = [this] {
        QStringList list;
        for (const VariantRecord &pool : poolRows())
            list.append(text(pool, PoolDetailId));
        return list;
    }();
    for (const QString &id : ids)
        if (!shown.contains(id))
            return {fail, QStringLiteral("券池不存在，请刷新界面重试")};
    const Sent sent = send([&] { return serverDeletesPools(ids); });
    if (sent == Sent::Unanswered)
        return {Master_Values::RequestExeStatus::timeout, {}, true};
    return endingOf(sent != Sent::Done, 1);
}

// ---- What the server does; false: it refuses

bool Model::serverAdds(const QString &account, const RecordList &rows, bool cover)
{
    QSet<QString> seen;
    for (const VariantRecord &row : rows) {
        const World::Security security = World::securityOf(row);
        qint64 given = 0;
        if (!World::mayHold(account, security) || seen.contains(security.symbol) ||
            !readQuantity(row.value(ResourceQty), security.factor, 1, given))
            return false;
        seen.insert(security.symbol);
        Resource &resource = resourceAt(account, row);
        resource.quantity = cover ? given : resource.quantity + given;
        if (resource.quantity > mostQuantity || resource.quantity < resource.allocated())
            return false;
    }
    return true;
}

bool Model::serverAlters(const VariantRecord &row)
{
    Resource *resource = resourceOf(text(row, ResourceId));
    return resource &&
           readQuantity(row.value(ResourceQty), World::securityOf(resource->security).factor, 0, resource->quantity) &&
           resource->quantity >= resource->allocated();
}

bool Model::serverDeletes(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        const Resource *resource = resourceOf(text(row, ResourceId));
        if (!resource)
            return false;
        m_resources.remove(resource->account + World::securityOf(resource->security).symbol);
    }
    return true;
}

bool Model::serverAllocates(const QString &id, const RecordList &rows, bool toTheirOwn)
{
    Resource *resource = resourceOf(id);
    if (!resource)
        return false;
    const QMap<QString, Pool> before = resource->pools;
    const World::Security security = World::securityOf(resource->security);
    for (const QString &trader : before.keys())
        if ((trader != publicTrader()) == toTheirOwn)
            resource->pools.remove(trader);
    QSet<QString> named;
    for (const VariantRecord &row : rows) {
        const QString trader = toTheirOwn ? text(row, T0TraderId) : publicTrader();
        Pool pool = before.value(trader);
        if ((trader != publicTrader()) != toTheirOwn || !World::mayTrade(trader, resource->account) ||
            named.contains(trader) || World::securityOf(row).symbol != security.symbol ||
            !readQuantity(row.value(PoolTotalQty), security.factor, 0, pool.quantity))
            return false;
        named.insert(trader);
        if (pool.quantity > 0)
            resource->pools.insert(trader, pool);
    }
    return resource->allocated() <= resource->quantity;
}

bool Model::serverAddsPools(const QString &account, const RecordList &rows, bool cover)
{
    QMap<QString, QSet<QString>> named; // by symbol
    for (const VariantRecord &row : rows) {
        const QString trader = text(row, T0TraderId);
        const World::Security security = World::securityOf(row);
        qint64 given = 0;
        if (!World::mayHold(account, security) || !World::mayTrade(trader, account) ||
            named.value(security.symbol).contains(trader) ||
            !readQuantity(row.value(PoolTotalQty), security.factor, 1, given))
            return false;
        Resource &resource = resourceAt(account, row);
        if (cover && !named.contains(security.symbol))
            resource.quantity = 0;
        named[security.symbol].insert(trader);
        resource.quantity += given;
        Pool &pool = resource.pools[trader];
        pool.quantity = cover ? given : pool.quantity + given;
        if (row.contains(MaxExposureQty))
            pool.maxExposure = qMax<qint64>(-1, whole(row.value(MaxExposureQty)) * security.factor);
        if (resource.quantity > mostQuantity)
            return false;
    }
    for (const VariantRecord &row : rows) {
        QMap<QString, Pool> &pools = resourceAt(account, row).pools;
        for (const QString &trader : pools.keys())
            if (cover && !named.value(World::securityOf(row).symbol).contains(trader))
                pools.remove(trader);
    }
    return true;
}

bool Model::serverDeletesPools(const QStringList &ids)
{
    for (const QString &id : ids) {
        bool isFound = false;
        for (Resource &resource : m_resources)
            for (const QString &trader : resource.pools.keys())
                if (resource.pools.value(trader).id == id)
                    isFound = resource.pools.remove(trader) > 0;
        if (!isFound)
            return false;
    }
    return true;
}

// ---- What is held

Model::Resource *Model::resourceOf(const QString &id)
{
    for (Resource &resource : m_resources)
        if (!id.isEmpty() && resource.id == id)
            return &resource;
    return nullptr;
}

Model::Resource Model::shownResource(const QString &id) const
{
    for (const Resource &resource : m_resources)
        if (resource.id == id && m_enabled.contains(resource.account))
            return resource;
    return {};
}

Model::Resource &Model::resourceAt(const QString &account, const VariantRecord &row)
{
    Resource &resource = m_resources[account + World::securityOf(row).symbol];
    resource.account = account;
    resource.security = {{securityID, row.value(securityID)}, {securityExchange, row.value(securityExchange)}};
    return resource;
}

QString Model::learnIds(const RecordList &resources, const RecordList &pools)
{
    QString fault;
    const auto learn = [&](QString &id, const QString &given) {
        if (!id.isEmpty())
            return;
        if (m_usedIds.contains(given))
            fault = QStringLiteral("%1 was given twice").arg(given);
        m_usedIds.insert(id = given);
    };
    const auto place = [](const VariantRecord &row) { return text(row, tradingAccount) + text(row, symbol); };
    for (const VariantRecord &row : resources)
        if (m_resources.contains(place(row)))
            learn(m_resources[place(row)].id, text(row, ResourceId));
    for (const VariantRecord &row : pools)
        if (m_resources.value(place(row)).pools.contains(text(row, T0TraderId)))
            learn(m_resources[place(row)].pools[text(row, T0TraderId)].id, text(row, PoolDetailId));
    return fault;
}

RecordList Model::resourceRows() const
{
    RecordList rows;
    for (const Resource &resource : m_resources) {
        if (!m_enabled.contains(resource.account))
            continue;
        rows.append({{ResourceId, resource.id},
                     {tradingAccount, resource.account},
                     {symbol, World::securityOf(resource.security).symbol},
                     {ResourceQty, resource.quantity},
                     {PublicPoolQty, resource.allocated(false)},
                     {PrivatePoolQty, resource.allocated(true)}});
    }
    return rows;
}

RecordList Model::poolRows() const
{
    RecordList rows;
    for (const Resource &resource : m_resources)
        for (auto pool = resource.pools.cbegin(); pool != resource.pools.cend(); ++pool)
            if (m_enabled.contains(resource.account))
                rows.append({{PoolDetailId, pool->id},
                             {tradingAccount, resource.account},
                             {symbol, World::securityOf(resource.security).symbol},
                             {T0TraderId, pool.key()},
                             {PoolTotalQty, pool->quantity},
                             {MaxExposureQty, pool->maxExposure},
                             {MaxPendExposureQty, pool->maxPendExposure}});
    return rows;
}

QStringList Model::poolIds() const
{
    QStringList ids;
    for (const Resource &resource : m_resources)
        for (const Pool &pool : resource.pools)
            ids.append(pool.id);
    return ids;
}
