#include "Users.h"

#include "ManualT0LogicPrivate.h"
#include "MasterConstants.h"
#include "MasterTradeLogic.h"
#include "SharedDesk.h"

using namespace Master_Fields::ManualT0;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

constexpr int mostCalls = 2; ///< of users at the same time
constexpr char timeout[] = "timeout";

/// Of those that callChange() knows.
QString nameOfChange(int which)
{
    const QStringList names{"AddT0Resource", "AlterT0Resource", "AllocatePublicResource", "AllocateResourceToTrader",
                            "AddSecurityPoolAndResource"};
    return names.value(which - 2, "DeleteSecurityPoolsByIdList");
}

} // namespace

Users::Users(World &world, ModelGateway &gateway, Faults &faults, Client &client)
    : m_world(world)
    , m_gateway(gateway)
    , m_faults(faults)
    , m_client(client)
    , m_claims(world, gateway, client.channel())
{}

void Users::actUntil(qint64 endUs)
{
    m_world.in(m_world.chance.oneIn(3) ? m_world.chance.upTo(1500) : m_world.chance.upTo(15), [this, endUs] {
        if (SimClock::now() >= endUs || m_world.hasFailed())
            return;
        actUntil(endUs);
        if (m_world.chance.oneIn(3))
            othersAct();
        else if (m_client.isReadable() && m_calls < mostCalls)
            userActs();
    });
}

void Users::othersAct()
{
    Chance &chance = m_world.chance;
    const int kind = chance.upTo(20);
    if (kind < 10) {
        m_world.note("somebody trades");
        m_gateway.someoneTrades();
    } else if (kind < 14) {
        strangePush();
    } else if (kind < 17) {
        m_world.note("another manager acts");
        m_gateway.anotherManagerActs();
    } else if (kind < 19) {
        m_world.note("another manager alters the products");
        m_gateway.alterProducts();
        m_client.productsChangedByOthers();
    } else {
        if (m_client.channel().cut() && m_client.loads())
            m_faults.struck(Fault::ReconnectDuringLoad);
    }
}

/// What no gateway should send.
void Users::strangePush()
{
    Chance &chance = m_world.chance;
    using Master_Fields::System::ModifyTime;
    VariantRecord row = m_gateway.someUsage();
    if (row.isEmpty())
        return;
    const int kind = chance.upTo(3);
    if (kind == 0)
        row.insert(Orvane_Fields::Security::securityID, QStringLiteral("999999"));
    else if (kind == 1)
        row.insert(DailyBoughtQty, chance.upTo(1000));
    else
        row.insert(ModifyTime, QStringLiteral("00000001"));
    const Fault faults[] = {Fault::UnknownSymbol, Fault::EqualTime, Fault::OlderTime};
    if (m_client.channel().push(row))
        m_faults.struck(faults[kind]);
}

void Users::userActs()
{
    ++m_calls;
    Chance &chance = m_world.chance;
    const int kind = chance.upTo(13);
    if (kind == 12) {
        sets();
    } else if (kind < 2) {
        m_client.begins();
        const QStringList accounts = chance.some({"A1", "A2", "A3", "A9"});
        m_world.note("a user chooses " + accounts.join(','));
        m_client.hub().SetCurrentTradeAccount(accounts);
        m_client.model.choose(accounts);
        m_client.compare("a choice");
    } else if (kind < 4) {
        refreshes();
    } else if (kind < 8) {
        changes();
    } else if (kind < 9) {
        alterProducts();
    } else if (kind < 11) {
        orders();
    } else {
        follows();
    }
    --m_calls;
}

void Users::refreshes()
{
    if (m_client.loads())
        m_faults.struck(Fault::RefreshDuringLoad);
    m_client.begins();
    ManualT0LogicPrivate &hub = m_client.hub();
    const int kind = m_world.chance.upTo(10);
    if (kind < 7) {
        m_world.note(QStringLiteral("a user calls RefreshDataByType(%1)").arg(kind));
        hub.RefreshDataByType(kind);
        m_client.model.refreshType(kind);
    } else if (kind < 9) {
        m_world.note("a user calls InitData()");
        hub.InitData();
        m_client.model.initData();
    } else {
        m_world.note("a user calls RefreshData()");
        hub.RefreshData();
        if (m_client.refreshAccepted())
            m_client.model.refreshAll();
    }
    m_client.compare("a refresh");
}

void Users::alterProducts()
{
    if (m_client.loads())
        m_faults.struck(Fault::ProductsDuringLoad);
    QMap<QString, QMap<QString, QStringList>> candidates; // by product and asset property
    for (const ScriptedReference::Account &account : sharedDesk().accounts)
        candidates[account.productAccount][account.assetProp].append(account.tradingAccount);
    QMap<QString, QStringList> wanted;
    RecordList accepted;
    for (auto product = candidates.cbegin(); product != candidates.cend(); ++product) {
        for (auto property = product->cbegin(); property != product->cend(); ++property) {
            if (m_world.chance.oneIn(3))
                continue;
            wanted[product.key()].append(property.key());
            for (const QString &account : *property)
                accepted.append(Rows::product(product.key(), account));
        }
    }
    QString errorText;
    const int others = m_client.productsOfOthers;
    const int alteration = ++m_alterations;
    const QString told =
        m_claims.hear("AlterT0ProductAccount", [&] { return m_client.hub().AlterT0ProductAccount(wanted, errorText); });
    if (told == Rows::Success) {
        m_client.model.productsAltered(accepted);
        // Of two alterations at the same time nobody knows which the server has carried out last.
        if (m_client.productsOfOthers == others && m_alterations == alteration)
            m_client.productsAccepted();
        else
            m_client.productsChangedByOthers();
    } else if (told == timeout) {
        m_client.model.productsUnknown();
    }
    m_client.compare("an alteration of the products", true);
}

void Users::changes()
{
    QString errorText;
    const int which = m_world.chance.upTo(8);
    const VariantRecord doomed = someResource();
    if (which > 1) {
        m_claims.hear(nameOfChange(which), [&] { return callChange(which, errorText); });
    } else if (!doomed.isEmpty()) {
        const QString told =
            m_claims.hear("DeleteT0Resource", [&] { return m_client.hub().DeleteT0Resource({doomed}, errorText); });
        if (told == Rows::Success) {
            const QStringList ids{doomed.value(ResourceId).toString()};
            m_client.model.deleteResources(ids);
            m_client.resourcesDeleted(ids);
        }
    }
    m_client.compare("a change", true);
}

QString Users::callChange(int which, QString &errorText)
{
    ManualT0LogicPrivate &hub = m_client.hub();
    Chance &chance = m_world.chance;
    switch (which) {
    case 2: {
        VariantRecord row = chance.resource(chance.account());
        row.insert(ResourceQty, 1000 * (1 + chance.upTo(5)));
        return hub.AddT0Resource({row}, chance.oneIn(2), errorText);
    }
    case 3: {
        VariantRecord row = someResource();
        row.insert(ResourceQty, 100 * chance.upTo(50));
        return hub.AlterT0Resource(row, errorText);
    }
    case 4:
        return hub.AllocatePublicResource(poolRows(true), errorText);
    case 5:
        return hub.AllocateResourceToTrader(poolRows(false), errorText);
    case 6:
        return hub.AddSecurityPoolAndResource({newPool(), newPool()}, chance.oneIn(2), errorText);
    default: {
        const RecordList pools = hub.GetAllSecurityPoolList();
        if (pools.isEmpty())
            return {};
        return hub.DeleteSecurityPoolsByIdList({pools.at(chance.upTo(pools.size())).value(PoolDetailId).toString()},
                                               errorText);
    }
    }
}

VariantRecord Users::someResource()
{
    RecordList resources = m_client.hub().GetAllResourceList();
    std::sort(resources.begin(), resources.end(), [](const VariantRecord &a, const VariantRecord &b) {
        return a.value(ResourceId).toString() < b.value(ResourceId).toString();
    });
    return resources.isEmpty() ? VariantRecord() : resources.at(m_world.chance.upTo(resources.size()));
}

VariantRecord Users::newPool()
{
    Chance &chance = m_world.chance;
    VariantRecord row = Rows::ofSecurity(chance.account(), chance.security());
    row.insert(T0TraderId, chance.of({"u1", "t2", "t3", "public"}));
    row.insert(PoolTotalQty, 100 * (1 + chance.upTo(9)));
    return row;
}

RecordList Users::poolRows(bool isPublic)
{
    Chance &chance = m_world.chance;
    VariantRecord row = someResource();
    row.insert(T0TraderId, isPublic ? QStringLiteral("public") : chance.of({"u1", "t2", "t3"}));
    row.insert(PoolTotalQty, 100 * chance.upTo(9));
    return {row};
}

void Users::orders()
{
    Chance &chance = m_world.chance;
    RecordList rows;
    QStringList called{"Order"};
    for (int i = 1 + chance.upTo(2); i > 0; --i) {
        called.append(chance.of({"A1", "A2", "A3"}) + ' ' +
                      chance.of({"600000.SH SH", "300001.SZ SZ", "110001.SH SH"}) + ' ' +
                      chance.of({"normalBuy", "normalSell"}) + ' ' + QString::number(100 + chance.upTo(900)) + " 10.5");
        rows.append(Rows::order(called.constLast()));
        rows.last().insert(tradingAccount, called.constLast().section(' ', 0, 0));
    }
    RecordList results;
    m_claims.hear(called.join("; "), [&] { return m_client.hub().Order(rows, results, {}); });
    for (const VariantRecord &result : qAsConst(results)) {
        const QString request = result.value(Stand_Fields::Order::requestId).toString();
        if (!request.isEmpty() && !m_unknownOrders.contains(request))
            m_unknownOrders.append(request);
    }
    m_client.compare("an order", true);
}

/// Asks what became of an order whose answer did not come.
void Users::follows()
{
    if (m_unknownOrders.isEmpty())
        return;
    const QString request = m_unknownOrders.takeFirst();
    m_world.note("a user asks what became of " + request);
    QVariant answer;
    const bool processed = MasterTradeLogic::instance()->fateOfRequest(request, answer) == 0;
    const RecordList fate = MasterTradeLogic::transFate(answer);
    const QString status = fate.value(0).value(Orvane_Fields::System::requestExeStatus).toString();
    if (!processed && status == timeout)
        m_unknownOrders.append(request);
    else
        m_claims.hearLater(QStringLiteral("an order"), processed, request);
    m_client.compare("a question", true);
}

/// How an order of a symbol is cut into parts.
void Users::sets()
{
    using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;
    m_client.begins();
    const QString symbol = m_world.chance.of({"600000.SH", "300001.SZ", "110001.SH"});
    if (m_world.chance.oneIn(4)) {
        m_world.note("a user deletes his settings of " + symbol);
        m_client.hub().DeleteSymbolTradeSettings(symbol);
        m_client.model.settings.remove(symbol);
    } else {
        const VariantRecord settings{{TradeCustQty, m_world.chance.upTo(300)}};
        m_world.note("a user sets his settings of " + symbol);
        m_client.hub().SetSymbolTradeSettings(symbol, settings);
        m_client.model.settings.insert(symbol, settings);
    }
    m_client.compare("settings");
}
