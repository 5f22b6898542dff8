#include "Model.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

#include <cmath>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Values::RequestExeStatus::fail;
using Orvane_Values::RequestExeStatus::success;

namespace {

constexpr qint64 mostQuantity = 1'000'000'000;

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

bool isPrivate(const QString &trader)
{
    return trader != Books::publicTrader();
}

qint64 whole(const QVariant &value)
{
    return qint64(value.toDouble());
}

/// As the server reads what the client sends, which is what the caller wrote unless it is a whole number.
bool readQuantity(const QVariant &value, qint64 factor, qint64 least, qint64 &quantity)
{
    const bool isWholeNumber = value.type() != QVariant::String && std::floor(value.toDouble()) == value.toDouble();
    quantity = whole(value) / factor * factor;
    return isWholeNumber && quantity >= least && quantity <= mostQuantity;
}

Ending refusedInRow(int index, const RecordList &rows, const QString &fault)
{
    return {fail, rows.size() == 1 ? fault
                                   : QStringLiteral("第%1行数据检查到错误：%2").arg(QString::number(index + 1), fault)};
}

/// The first bad row; no code when there is none.
template <typename Check> Ending firstFault(const RecordList &rows, Check check)
{
    for (int i = 0; i < rows.size(); ++i) {
        const QString fault = check(rows.at(i));
        if (!fault.isEmpty())
            return refusedInRow(i, rows, fault);
    }
    return {};
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

Model::Model(const Books &books)
    : m_books(books)
{
    for (const Account &account : books.accounts)
        m_enabled.insert(account.tradingAccount);
}

Ending Model::expect(const Change &change, Fate &fate)
{
    m_fate = &fate;
    Sent sent = Sent::Done;
    switch (change.operation) {
    case Change::AddResources:
        return addResources(change.rows, change.cover);
    case Change::AlterResource:
        return alterResource(change.rows.first());
    case Change::AllocatePublic:
        return allocatePublic(change.rows);
    case Change::AllocateToTraders:
        return allocateToTraders(change.rows);
    case Change::AddPools:
        return addPools(change.rows, change.cover);
    case Change::DeletePools:
        return deletePools(change.ids);
    case Change::DeleteResources:
        sent = send([&] { return serverDeletes(change.rows); });
        break;
    default:
        sent = send([&] { return alterProducts(change.products), true; });
    }
    return sent == Sent::Unanswered ? Ending{Master_Values::RequestExeStatus::timeout, {}, true}
                                    : endingOf(sent != Sent::Done, 1);
}

template <typename Apply> Model::Sent Model::send(Apply apply)
{
    const Fate fate = std::exchange(*m_fate, Fate::Answered);
    if (fate == Fate::NeverArrives)
        return Sent::Unanswered;
    const QMap<QString, Resource> before = m_resources;
    const bool isDone = apply();
    if (!isDone)
        m_resources = before;
    return fate == Fate::AnswerLost ? Sent::Unanswered : isDone ? Sent::Done : Sent::Refused;
}

template <typename Apply> int Model::failedOf(const QMap<QString, RecordList> &groups, Apply apply)
{
    int failed = 0;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        failed += send([&] { return apply(group.key(), *group); }) != Sent::Done;
    return failed;
}

// ---- The client: its checks, and what it sends

QString Model::accountFault(const VariantRecord &row) const
{
    const QString account = text(row, tradingAccount);
    const Account *known = m_books.account(account);
    if (account.isEmpty())
        return QStringLiteral("账号数据为空");
    if (!known)
        return QStringLiteral("账号数据不合法");
    if (!m_enabled.contains(account))
        return QStringLiteral("账号%1未选为T0产品").arg(known->accountText);
    return securityOf(row).symbol.isEmpty() ? QStringLiteral("证券代码不存在") : QString();
}

QString Model::multipleFault(const VariantRecord &row, const QString &field, const QString &what) const
{
    const Instrument security = securityOf(row);
    if (whole(row.value(field)) % security.dispFactor == 0)
        return {};
    return QStringLiteral("标的%1的%2必须是10的整数倍，请重新填写！").arg(security.symbol, what);
}

void Model::alterProducts(const QMap<QString, QStringList> &products)
{
    m_enabled.clear();
    for (const Account &account : m_books.accounts)
        if (products.value(account.productAccount).contains(account.assetProp))
            m_enabled.insert(account.tradingAccount);
}

Ending Model::addResources(const RecordList &rows, bool cover)
{
    const Ending refused = firstFault(rows, [this](const VariantRecord &row) {
        const QString fault = accountFault(row);
        return fault.isEmpty() ? multipleFault(row, ResourceQty, QStringLiteral("资源数量")) : fault;
    });
    if (!refused.code.isEmpty())
        return refused;
    RecordList sent;
    for (const VariantRecord &row : rows)
        if (row.value(ResourceQty).toDouble() > 0)
            sent.append(row);
    if (sent.isEmpty())
        return {fail, QStringLiteral("没有可添加的资源数据")};
    const auto groups = groupedBy(sent, tradingAccount);
    return endingOf(failedOf(groups, [&](auto &account, auto &group) { return serverAdds(account, group, cover); }),
                    groups.size());
}

Ending Model::alterResource(const VariantRecord &row)
{
    const Resource held = shownResource(text(row, ResourceId));
    const qint64 wanted = whole(row.value(ResourceQty));
    if (text(row, ResourceId).isEmpty())
        return {fail, QStringLiteral("修改资源数量必须传入资源ID")};
    if (held.id.isEmpty())
        return {fail, QStringLiteral("未找到对应资源")};
    if (held.allocated() > wanted)
        return {
            fail,
            QStringLiteral("修改后的数量不能小于已分配数量%1，请重新填写或修改券池后重新尝试").arg(held.allocated())};
    if (wanted % held.security.dispFactor != 0)
        return {fail, QStringLiteral("标的%1的资源数量必须是10的整数倍，请重新填写！").arg(held.security.symbol)};
    return endingOf(send([&] { return serverAlters(row); }) != Sent::Done, 1);
}

Ending Model::allocatePublic(const RecordList &rows)
{
    const Ending refused = firstFault(rows, [this](const VariantRecord &row) {
        const Resource held = shownResource(text(row, ResourceId));
        if (held.quantity < whole(row.value(PoolTotalQty)) + held.allocated(true))
            return QStringLiteral("资源存在超配，请重新配置！");
        return multipleFault(row, PoolTotalQty, QStringLiteral("券池数量"));
    });
    if (!refused.code.isEmpty())
        return refused;
    const auto groups = groupedBy(rows, ResourceId);
    return endingOf(failedOf(groups, [this](auto &id, auto &group) { return serverAllocates(id, group, false); }),
                    groups.size());
}

Ending Model::allocateToTraders(const RecordList &rows)
{
    const Ending refused = firstFault(rows, [this](const VariantRecord &row) {
        return multipleFault(row, PoolTotalQty, QStringLiteral("券池数量"));
    });
    if (!refused.code.isEmpty())
        return refused;
    const auto groups = groupedBy(rows, ResourceId);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        const Resource held = shownResource(group.key());
        qint64 wanted = held.allocated(false);
        for (const VariantRecord &row : *group)
            wanted += whole(row.value(PoolTotalQty));
        if (held.quantity < wanted)
            return {fail, QStringLiteral("账号%1标的%2下的资源存在超配，请重新配置！")
                              .arg(held.id.isEmpty() ? QString() : m_books.account(held.account)->accountText,
                                   held.security.symbol)};
    }
    return endingOf(failedOf(groups, [this](auto &id, auto &group) { return serverAllocates(id, group, true); }),
                    groups.size());
}

Ending Model::addPools(const RecordList &rows, bool cover)
{
    if (rows.isEmpty())
        return {fail, QStringLiteral("没有检查到券池信息")};
    const Ending refused = firstFault(rows, [this](const VariantRecord &row) {
        const QString fault = accountFault(row);
        const User *user = m_books.user(text(row, T0TraderId));
        if (fault.isEmpty() && isPrivate(text(row, T0TraderId)) && !(user && user->isTrader()))
            return QStringLiteral("交易员ID不存在");
        return fault.isEmpty() ? multipleFault(row, PoolTotalQty, QStringLiteral("券池数量")) : fault;
    });
    if (!refused.code.isEmpty())
        return refused;
    const auto groups = groupedBy(rows, tradingAccount);
    return endingOf(
        failedOf(groups, [&](auto &account, auto &group) { return serverAddsPools(account, group, cover); }),
        groups.size(), QStringLiteral("添加券池时错误："));
}

Ending Model::deletePools(const QStringList &ids)
{
    QSet<QString> shown;
    for (const VariantRecord &pool : poolRows())
        shown.insert(text(pool, PoolDetailId));
    for (const QString &id : ids)
        if (!shown.contains(id))
            return {fail, QStringLiteral("券池不存在，请刷新界面重试")};
    const Sent sent = send([&] { return serverDeletesPools(ids); });
    return sent == Sent::Unanswered ? Ending{Master_Values::RequestExeStatus::timeout, {}, true}
                                    : endingOf(sent != Sent::Done, 1);
}

// ---- The server; false: it refuses

bool Model::serverAdds(const QString &account, const RecordList &rows, bool cover)
{
    QSet<QString> seen;
    for (const VariantRecord &row : rows) {
        const Instrument security = securityOf(row);
        qint64 given = 0;
        if (!mayHold(account, security) || seen.contains(security.symbol) ||
            !readQuantity(row.value(ResourceQty), security.dispFactor, 1, given))
            return false;
        seen.insert(security.symbol);
        Resource &resource = resourceAt(account, security);
        resource.quantity = cover ? given : resource.quantity + given;
        if (resource.quantity > mostQuantity || resource.quantity < resource.allocated())
            return false;
    }
    return true;
}

bool Model::serverAlters(const VariantRecord &row)
{
    Resource *resource = resourceOf(text(row, ResourceId));
    return readQuantity(row.value(ResourceQty), resource->security.dispFactor, 0, resource->quantity) &&
           resource->quantity >= resource->allocated();
}

bool Model::serverDeletes(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        const Resource *resource = resourceOf(text(row, ResourceId));
        if (!resource)
            return false;
        m_resources.remove(resource->account + resource->security.symbol);
    }
    return true;
}

bool Model::serverAllocates(const QString &id, const RecordList &rows, bool toTraders)
{
    Resource *resource = resourceOf(id);
    if (!resource)
        return false;
    const QMap<QString, Pool> before = resource->pools;
    for (const QString &trader : before.keys())
        if (isPrivate(trader) == toTraders)
            resource->pools.remove(trader);
    QSet<QString> named;
    for (const VariantRecord &row : rows) {
        const QString trader = toTraders ? text(row, T0TraderId) : Books::publicTrader();
        Pool pool = before.value(trader);
        if (isPrivate(trader) != toTraders || !mayTrade(trader, resource->account) || named.contains(trader) ||
            securityOf(row).symbol != resource->security.symbol ||
            !readQuantity(row.value(PoolTotalQty), resource->security.dispFactor, 0, pool.quantity))
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
        const Instrument security = securityOf(row);
        qint64 given = 0;
        if (!mayHold(account, security) || !mayTrade(trader, account) || named[security.symbol].contains(trader) ||
            !readQuantity(row.value(PoolTotalQty), security.dispFactor, 1, given))
            return false;
        Resource &resource = resourceAt(account, security);
        if (cover && named.value(security.symbol).isEmpty())
            resource.quantity = 0;
        named[security.symbol].insert(trader);
        resource.quantity += given;
        Pool &pool = resource.pools[trader];
        pool.quantity = cover ? given : pool.quantity + given;
        if (row.contains(MaxExposureQty))
            pool.maxExposure = qMax<qint64>(-1, whole(row.value(MaxExposureQty)) * security.dispFactor);
        if (resource.quantity > mostQuantity)
            return false;
    }
    for (auto traders = named.cbegin(); cover && traders != named.cend(); ++traders)
        for (const QString &trader : m_resources[account + traders.key()].pools.keys())
            if (!traders->contains(trader))
                m_resources[account + traders.key()].pools.remove(trader);
    return true;
}

bool Model::serverDeletesPools(const QStringList &ids)
{
    for (Resource &resource : m_resources)
        for (const QString &trader : resource.pools.keys())
            if (ids.contains(resource.pools.value(trader).id))
                resource.pools.remove(trader);
    return QStringList(ids).removeDuplicates() == 0; // the client has checked that they are there
}

// ---- What is held

qint64 Model::Resource::allocated(bool ofPrivate) const
{
    qint64 sum = 0;
    for (auto pool = pools.cbegin(); pool != pools.cend(); ++pool)
        sum += isPrivate(pool.key()) == ofPrivate ? pool->quantity : 0;
    return sum;
}

Instrument Model::securityOf(const VariantRecord &row) const
{
    const Instrument *known = m_books.instrument(text(row, Orvane_Fields::Security::securityID),
                                                 text(row, Orvane_Fields::UserAccount::securityExchange));
    return known ? *known : Instrument();
}

bool Model::mayHold(const QString &account, const Instrument &security) const
{
    return !security.symbol.isEmpty() && m_books.account(account)->exchanges.contains(security.exchange);
}

bool Model::mayTrade(const QString &trader, const QString &account) const
{
    return !isPrivate(trader) || m_books.tradersOf(account).contains(trader);
}

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

Model::Resource &Model::resourceAt(const QString &account, const Instrument &security)
{
    Resource &resource = m_resources[account + security.symbol];
    resource.account = account;
    resource.security = security;
    return resource;
}

QVector<Model::Resource> Model::resources() const
{
    return m_resources.values().toVector();
}

QString Model::learnIds(const RecordList &resources, const RecordList &pools)
{
    QString fault;
    const auto learn = [&](QString &id, const QString &given) {
        if (id.isEmpty() && m_usedIds.contains(given))
            fault = QStringLiteral("%1 was given before").arg(given);
        if (id.isEmpty())
            m_usedIds.insert(id = given);
    };
    const auto at = [this](const VariantRecord &row) {
        return m_resources.find(text(row, tradingAccount) + text(row, symbol));
    };
    for (const VariantRecord &row : resources)
        if (at(row) != m_resources.end())
            learn(at(row)->id, text(row, ResourceId));
    for (const VariantRecord &row : pools)
        if (at(row) != m_resources.end() && at(row)->pools.contains(text(row, T0TraderId)))
            learn(at(row)->pools[text(row, T0TraderId)].id, text(row, PoolDetailId));
    return fault;
}

RecordList Model::resourceRows() const
{
    RecordList rows;
    for (const Resource &resource : m_resources)
        if (m_enabled.contains(resource.account))
            rows.append({{ResourceId, resource.id},
                         {tradingAccount, resource.account},
                         {symbol, resource.security.symbol},
                         {ResourceQty, resource.quantity},
                         {PublicPoolQty, resource.allocated(false)},
                         {PrivatePoolQty, resource.allocated(true)}});
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
                             {symbol, resource.security.symbol},
                             {T0TraderId, pool.key()},
                             {PoolTotalQty, pool->quantity},
                             {MaxExposureQty, pool->maxExposure}});
    return rows;
}
