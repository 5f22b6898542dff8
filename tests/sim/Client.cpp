#include "Client.h"

#include "PictureCheck.h"
#include "SharedDesk.h"

#include "EventBus.h"
#include "ManualT0LogicPresenterClass.h"
#include "ManualT0LogicPrivate.h"
#include "MasterDelayBuffer.h"

using Hub = ManualT0LogicPrivate;
using Presenter = ManualT0LogicPresenterClass;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

constexpr int requestTimeoutMs = 5000;
constexpr int comparedOneIn = 40; ///< timers of a hub that checks itself: most are a slice that finds nothing
constexpr int checkMs = 300; ///< of the hub's own data; what the gateway sends may be wrong, so it has things to find

bool isSuccess(const QString &code)
{
    return code == Rows::Success;
}

QStringList accountsOf(const RecordList &rows)
{
    QStringList accounts;
    for (const VariantRecord &row : rows)
        accounts.append(row.value(tradingAccount).toString());
    return accounts;
}

} // namespace

Client::Client(World &world, ModelGateway &gateway, Faults &faults)
    : m_world(world)
    , m_gateway(gateway)
    , m_faults(faults)
{
    auto channel = std::make_unique<SimChannel>(world, gateway, faults);
    m_channel = channel.get();
    gateway.push = [this](const VariantRecord &usage) { m_channel->push(usage); };
    QString errorText;
    m_session = HostSession::open({std::move(channel), Rows::user, {}, requestTimeoutMs}, errorText);
    if (!m_session)
        qFatal("the session does not open: %s", qUtf8Printable(errorText));
    HubTiming timing;
    m_checksItself = world.chance.oneIn(4);
    timing.integrityCheck = m_checksItself ? checkMs : 0;
    m_hub = std::make_unique<Hub>(nullptr, timing);
    m_presenter = new Presenter(QStringLiteral("sim"), nullptr);
    m_door = std::make_unique<QObject>();
    m_listener = std::make_unique<QObject>();
    world.addParty(m_presenter);
    world.addParty(m_door.get());
    m_hub->setParent(m_door.get()); // its timers run when the hub may run
    world.addParty(m_listener.get());
    connectHub();
    listen();
    model.gathersSymbols = true;
    m_channel->setFaults(true);
}

Client::~Client()
{
    m_hub->setParent(nullptr);
    m_hub->stop();
    ZrPresenterClass::release(m_presenter);
    m_gateway.push = nullptr;
    m_session.reset();
    m_hub.reset();
    m_world.forgetParties();
    m_world.partysTimer = nullptr;
}

void Client::listen()
{
    EventBus::listenToAll(m_listener.get(), [this](const QString &name, const QVariant &payload) {
        m_events.append(eventText(name, payload));
    });
    const auto note = [this](auto signal, auto textOf) {
        QObject::connect(
            m_hub.get(), signal, m_hub.get(),
            [this, textOf](const QVariantMap &query) { m_asked.append(textOf(query)); }, Qt::DirectConnection);
    };
    const auto ofAccount = [](const QString &what) {
        return [what](const QVariantMap &query) { return what + ' ' + query.value(tradingAccount).toString(); };
    };
    note(&Hub::signalQueryT0Products, [](const QVariantMap &) { return "products"; });
    note(&Hub::signalQueryT0AccountPriority, [](const QVariantMap &) { return "priority"; });
    note(&Hub::signalQueryResources, ofAccount("resources"));
    note(&Hub::signalQuerySecurityPool, ofAccount("pools"));
    note(&Hub::signalQueryPoolRealTimeData, [](const QVariantMap &query) {
        return "usage " + query.value(Master_Fields::ManualT0::T0TraderId).toString();
    });
    QObject::connect(
        m_hub.get(), &Hub::signalQueryT0Traders, m_hub.get(), [this] { m_asked.append("traders"); },
        Qt::DirectConnection);
    m_world.partysTimer = [this](const QObject *timer, const std::function<void()> &fire) {
        begins();
        fire();
        if (qobject_cast<const MasterDelayBuffer *>(timer->parent()))
            model.recomputeSymbols();
        // What a check of the hub's own finds unlisted is listed again.
        if (model.hasOrphans() && m_checksItself && HubProbe::indexFaults(*m_hub).isEmpty())
            model.listOrphans();
        if (!m_checksItself || m_world.chance.oneIn(comparedOneIn))
            compare(QStringLiteral("a timer"), true);
    };
}

template <typename Entry> void Client::enter(const QString &what, Entry entry)
{
    if (m_world.hasFailed())
        return;
    m_world.note("hub: " + what);
    begins();
    entry();
    compare(what);
}

void Client::connectHub()
{
    constexpr auto queued = Qt::QueuedConnection;
    QObject::connect(m_hub.get(), &Hub::signalQueryT0Traders, m_presenter, &Presenter::slotQueryT0Traders, queued);
    QObject::connect(m_hub.get(), &Hub::signalQueryResources, m_presenter, &Presenter::slotQueryResources, queued);
    QObject::connect(m_hub.get(), &Hub::signalQuerySecurityPool, m_presenter, &Presenter::slotQuerySecurityPool,
                     queued);
    QObject::connect(m_hub.get(), &Hub::signalQueryPoolRealTimeData, m_presenter, &Presenter::slotQueryPoolRealTime,
                     queued);
    QObject::connect(m_hub.get(), &Hub::signalQueryT0AccountPriority, m_presenter, &Presenter::slotQueryAccountPriority,
                     queued);
    QObject::connect(m_hub.get(), &Hub::signalQueryT0Products, m_presenter, &Presenter::slotQueryT0Products, queued);

    const auto door = [this](auto signal, auto slot) {
        QObject::connect(m_presenter, signal, m_door.get(), slot, queued);
    };
    door(&Presenter::signalQueryT0ProductsResponse, [this](const QString &code, const RecordList &rows) {
        enter("products " + code + ' ' + accountsOf(rows).join(','), [&] {
            m_hub->slotQueryT0ProductsResponse(code, rows);
            model.answerProducts(isSuccess(code), rows);
        });
    });
    door(&Presenter::signalQueryT0TradersResponse, [this](const QString &code, const RecordList &rows, bool isManager) {
        enter("traders " + code, [&] {
            m_hub->slotQueryT0TradersResponse(code, rows, isManager);
            model.answerTraders(isSuccess(code), rows, isManager);
        });
    });
    door(&Presenter::signalQueryResourceResponse,
         [this](const QString &code, const QVariantMap &query, const RecordList &rows, bool cover) {
             const QString account = query.value(tradingAccount).toString();
             answeredAccount(account);
             enter("resources " + account + ' ' + code, [&] {
                 m_hub->slotQueryResourceResponse(code, query, rows, cover);
                 model.answerResources(account, isSuccess(code), rows, cover);
             });
         });
    door(&Presenter::signalQuerySecurityPoolResponse,
         [this](const QString &code, const QVariantMap &query, const RecordList &rows) {
             const QString account = query.value(tradingAccount).toString();
             answeredAccount(account);
             enter("pools " + account + ' ' + code, [&] {
                 m_hub->slotQuerySecurityPoolResponse(code, query, rows);
                 model.answerPools(account, isSuccess(code), rows);
             });
         });
    door(&Presenter::signalQueryPoolRealTimeResponse,
         [this](const QString &code, const QVariantMap &query, const RecordList &rows) {
             enter("usage " + code, [&] {
                 m_hub->slotQueryPoolRealTimeResponse(code, query, rows);
                 model.answerUsage(isSuccess(code), rows);
             });
         });
    door(&Presenter::signalRecvPoolRealtimeChangedPush, [this](const QVariantMap &row) {
        enter("push", [&] {
            m_hub->slotRecvPoolRealtimeChangedPush(row);
            model.push(row);
        });
    });
    door(&Presenter::signalQueryAccountPriorityResponse,
         [this](const QString &code, const QVariantMap &query, const RecordList &rows) {
             enter("priority " + code, [&] {
                 m_hub->slotQueryT0AccountPriorityResponse(code, query, rows);
                 model.answerPriority(isSuccess(code), accountsOf(rows));
             });
         });
}

void Client::answeredAccount(const QString &account)
{
    if (!model.accounts.contains(account))
        m_faults.struck(Fault::DisabledAccount);
}

void Client::compare(const QString &after, bool anyQueries)
{
    PictureCheck check(*m_hub, model);
    m_asked.sort();
    model.asked.sort();
    if (!anyQueries)
        check.differ("asked", m_asked, model.asked);
    m_asked.clear();
    model.asked.clear();
    check.compareHeld();
    check.compareLookups(m_world.chance);
    for (const QString &difference : check.differences())
        m_world.fail("after " + after + ": " + difference);
}

void Client::compareEvents()
{
    const QStringList announced = std::exchange(m_events, {});
    const QStringList expected = std::exchange(model.events, {});
    if (announced != expected)
        m_world.fail("announced " + announced.join(" | ") + "\n  expected  " + expected.join(" | "));
}

void Client::compareWithGateway()
{
    Model expected;
    expected.initData();
    expected.answerProducts(true, m_gateway.products());
    for (const QString &account : QStringList(expected.accounts)) {
        expected.answerResources(account, true, m_gateway.resourcesOf(account), true);
        expected.answerPools(account, true, m_gateway.poolsOf(account));
    }
    expected.answerTraders(true, m_gateway.traders(), m_gateway.isManager());
    expected.answerUsage(true, m_gateway.usageOf(shownTraders()));
    expected.answerPriority(true, accountsOf(m_gateway.priority()));
    expected.chosen = model.chosen;
    expected.settings = model.settings;
    expected.tradableSymbols = model.tradableSymbols; // follow choices and pushes, not loads
    PictureCheck check(*m_hub, expected);
    // What a hub asks that checks itself brings later answers: limits and traders of pools are taken otherwise then.
    if (m_checksItself) {
        check.compareRows();
    } else {
        check.compareHeld();
        for (int i = 0; i < 8; ++i)
            check.compareLookups(m_world.chance);
    }
    for (const QString &difference : check.differences())
        m_world.fail("the healed picture is not the gateway's: " + difference);
}

QStringList Client::shownTraders() const
{
    QStringList traders;
    for (const VariantRecord &trader : m_gateway.traders())
        traders.append(trader.value(Orvane_Fields::UserAccount::userID).toString());
    return m_gateway.isManager() ? traders : QStringList(Rows::user);
}

bool Client::loads() const
{
    return std::find(std::begin(model.states), std::end(model.states), Model::Loading) != std::end(model.states);
}

bool Client::refreshAccepted()
{
    return m_throttle.accept(QDateTime::currentDateTimeUtc());
}

void Client::productsAccepted()
{
    m_channel->spoiltProducts = false;
    m_productsOwn = true;
}

void Client::productsChangedByOthers()
{
    m_productsOwn = false;
    ++productsOfOthers;
}

void Client::resourcesDeleted(const QStringList &ids)
{
    for (const QString &id : ids)
        m_deleted.insert(id);
}

void Client::checkOwnChanges()
{
    for (const QString &id : qAsConst(m_deleted)) {
        if (!m_hub->GetResourceDetailById(id).isEmpty() && !m_gateway.hasResource(id))
            m_world.fail("a deleted resource came back: " + id);
    }
    if (m_productsOwn && !m_channel->spoiltProducts && model.states[Model::Products] == Model::Done &&
        m_hub->GetAllT0TradingAccountList() != accountsOf(m_gateway.products()))
        m_world.fail("an accepted change of the products is undone");
}
