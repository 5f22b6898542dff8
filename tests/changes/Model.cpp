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
    case Change::AddPools:
        return add(change);
    case Change::AlterResource:
        return alterResource(change.rows.first());
    case Change::AllocatePublic:
    case Change::AllocateToTraders:
        return allocate(change.rows, change.operation == Change::AllocateToTraders);
    case Change::DeletePools:
        for (const QString &id : change.ids)
            if (!showsPool(id))
                return {fail, QStringLiteral("券池不存在，请刷新界面重试")};
        sent = send([&] { return serverDeletesPools(change.ids); });
        break;
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

template <typename Apply> Ending Model::sendGroups(const RecordList &rows, const QString &field, Apply apply)
{
    int failed = 0;
    const QMap<QString, RecordList> groups = groupedBy(rows, field);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        failed += send([&] { return apply(group.key(), *group); }) != Sent::Done;
    return endingOf(failed, groups.size());
}

// ---- The client: its checks, and what it sends

QString Model::addingFault(const VariantRecord &row, bool withPool) const
{
    const QString account = text(row, tradingAccount);
    const Account *known = m_books.account(account);
    const User *trader = m_books.user(text(row, T0TraderId));
    if (account.isEmpty())
        return QStringLiteral("账号数据为空");
    if (!known)
        return QStringLiteral("账号数据不合法");
    if (!m_enabled.contains(account))
        return QStringLiteral("账号%1未选为T0产品").arg(known->accountText);
    if (securityOf(row).symbol.isEmpty())
        return QStringLiteral("证券代码不存在");
    if (withPool && isPrivate(text(row, T0TraderId)) && !(trader && trader->isTrader()))
        return QStringLiteral("交易员ID不存在");
    return multipleFault(row, withPool ? PoolTotalQty : ResourceQty);
}

QString Model::multipleFault(const VariantRecord &row, const QString &field) const
{
    const Instrument security = securityOf(row);
    if (whole(row.value(field)) % security.dispFactor == 0)
        return {};
    const QString what = field == ResourceQty ? QStringLiteral("资源数量") : QStringLiteral("券池数量");
    return QStringLiteral("标的%1的%2必须是10的整数倍，请重新填写！").arg(security.symbol, what);
}

Ending Model::add(const Change &change)
{
    const bool withPools = change.operation == Change::AddPools;
    const Ending refused =
        firstFault(change.rows, [&](const VariantRecord &row) { return addingFault(row, withPools); });
    if (!refused.code.isEmpty())
        return refused;
    RecordList sent;
    for (const VariantRecord &row : change.rows)
        if (withPools || row.value(ResourceQty).toDouble() > 0)
            sent.append(row);
    if (sent.isEmpty())
        return {fail, withPools ? QStringLiteral("没有检查到券池信息") : QStringLiteral("没有可添加的资源数据")};
    Ending ending = sendGroups(sent, tradingAccount, [&](const QString &account, const RecordList &group) {
        return serverAdds(account, group, change.cover, withPools);
    });
    if (withPools && ending.serverSpoke)
        ending.text = QStringLiteral("添加券池时错误：");
    return ending;
}

Ending Model::alterResource(const VariantRecord &row)
{
    if (text(row, ResourceId).isEmpty())
        return {fail, QStringLiteral("修改资源数量必须传入资源ID")};
    const Resource held = shownResource(text(row, ResourceId));
    const qint64 wanted = whole(row.value(ResourceQty));
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

Ending Model::allocate(const RecordList &rows, bool toTraders)
{
    const Ending refused = firstFault(rows, [&](const VariantRecord &row) {
        const Resource held = shownResource(text(row, ResourceId));
        if (!toTraders && held.quantity < whole(row.value(PoolTotalQty)) + held.allocated(true))
            return QStringLiteral("资源存在超配，请重新配置！");
        return multipleFault(row, PoolTotalQty);
    });
    if (!refused.code.isEmpty())
        return refused;
    QMap<QString, qint64> wanted;
    for (const VariantRecord &row : rows)
        wanted[text(row, ResourceId)] += whole(row.value(PoolTotalQty));
    for (auto resource = wanted.cbegin(); toTraders && resource != wanted.cend(); ++resource) {
        const Resource held = shownResource(resource.key());
        const Account *account = m_books.account(held.account);
        if (held.quantity < *resource + held.allocated(false))
            return {fail, QStringLiteral("账号%1标的%2下的资源存在超配，请重新配置！")
                              .arg(account ? account->accountText : QString(), held.security.symbol)};
    }
    return sendGroups(rows, ResourceId, [&](const QString &id, const RecordList &group) {
        return serverAllocates(id, group, toTraders);
    });
}

// ---- The server; false: it refuses

void Model::alterProducts(const QMap<QString, QStringList> &products)
{
    m_enabled.clear();
    for (const Account &account : m_books.accounts)
        if (products.value(account.productAccount).contains(account.assetProp))
            m_enabled.insert(account.tradingAccount);
}

bool Model::serverAdds(const QString &account, const RecordList &rows, bool cover, bool withPools)
{
    QMap<QString, QSet<QString>> named; // traders by symbol
    for (const VariantRecord &row : rows) {
        const Instrument security = securityOf(row);
        const QString trader = withPools ? text(row, T0TraderId) : QString();
        qint64 given = 0;
        if (!mayHold(account, security) || named[security.symbol].contains(trader) ||
            (withPools && !mayTrade(trader, account)) ||
            !readQuantity(row.value(withPools ? PoolTotalQty : ResourceQty), security.dispFactor, 1, given))
            return false;
        Resource &resource = m_resources[account + security.symbol];
        const bool isReplaced = cover && named.value(security.symbol).isEmpty();
        resource.account = account;
        resource.security = security;
        resource.quantity = isReplaced ? given : resource.quantity + given;
        named[security.symbol].insert(trader);
        if (withPools) {
            Pool &pool = resource.pools[trader];
            pool.quantity = cover ? given : pool.quantity + given;
            if (row.contains(MaxExposureQty))
                pool.maxExposure = qMax<qint64>(-1, whole(row.value(MaxExposureQty)) * security.dispFactor);
        }
        if (resource.quantity > mostQuantity || (!withPools && resource.quantity < resource.allocated()))
            return false;
    }
    for (auto traders = named.cbegin(); cover && withPools && traders != named.cend(); ++traders) {
        QMap<QString, Pool> &pools = m_resources[account + traders.key()].pools;
        for (const QString &trader : pools.keys())
            if (!traders->contains(trader))
                pools.remove(trader);
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

Model::Resource Model::shownResource(const QString &id)
{
    const Resource *held = resourceOf(id);
    return held && isEnabled(held->account) ? *held : Resource();
}

bool Model::showsPool(const QString &id) const
{
    for (const Resource &resource : m_resources)
        for (const Pool &pool : resource.pools)
            if (pool.id == id && isEnabled(resource.account))
                return true;
    return false;
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
