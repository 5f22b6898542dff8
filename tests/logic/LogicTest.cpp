#include "LogicTest.h"

#include "EventBus.h"
#include "HCore.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "MasterConstants.h"

using Orvane_Fields::UserAccount::tradingAccount;

namespace {

QtMessageHandler former = nullptr;
std::mutex &warningsMutex()
{
    static std::mutex mutex;
    return mutex;
}

QStringList &warnings()
{
    static QStringList list;
    return list;
}

void watchWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    for (const char *kind : {"QObject::", "Cannot queue arguments", "QTimer", "QThread"}) {
        if (message.contains(QLatin1String(kind))) {
            const std::lock_guard lock(warningsMutex());
            warnings().append(message);
        }
    }
    former(type, context, message);
}

QString accountOf(const QVariantMap &query)
{
    return query.value(tradingAccount).toString();
}

} // namespace

void LogicTest::init()
{
    former = qInstallMessageHandler(watchWarnings);
    desk = sharedDesk();
    open(Mode::ByHand);
}

void LogicTest::cleanup()
{
    const QStringList leftAsked = hub ? takeAsked() : QStringList();
    const QStringList unscripted = hub ? server->channel->unexpected() : QStringList();
    const QStringList changes = hub ? server->takeChanges() : QStringList();
    const QStringList faults = hub ? HubProbe::indexFaults(*hub) : QStringList();
    close();
    qInstallMessageHandler(former);
    const QStringList warned = std::exchange(warnings(), {});
    QCOMPARE(leftAsked, QStringList());
    QCOMPARE(unscripted, QStringList());
    QCOMPARE(changes, QStringList());
    QCOMPARE(faults, QStringList());
    QCOMPARE(warned, QStringList());
}

void LogicTest::open(Mode newMode, HubTiming timing, const QString &userId, const QString &storedSettings)
{
    mode = newMode;
    serverOwner = std::make_unique<TestServer>();
    server = serverOwner.get();
    ScriptedChannel *channel = nullptr;
    desk.user = userId;
    session = desk.open(channel, 5000);
    server->script(*channel);
    if (!storedSettings.isNull())
        HCore::instance()->saveSetting(MasterConstants::SettingFieldName::ManualT0Settings::TradeSymbolSetting,
                                       storedSettings, QString(), QString(), QSettings::UserScope);
    listener = std::make_unique<QObject>();
    EventBus::listenToAll(listener.get(), [this](const QString &name, const QVariant &payload) {
        rawEvents.append({name, payload});
    });
    hub = std::make_unique<ManualT0LogicPrivate>(nullptr, timing);
    if (mode == Mode::ByHand) {
        recordQueries();
    } else {
        presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
        ManualT0LogicPlugin::connectHub(hub.get(), presenter, Qt::AutoConnection);
    }
}

void LogicTest::close()
{
    if (hub)
        hub->stop();
    if (presenter)
        ZrPresenterClass::release(std::exchange(presenter, nullptr));
    hub.reset();
    listener.reset();
    session.reset();
    serverOwner.reset();
    server = nullptr;
    rawEvents.clear();
    const std::lock_guard lock(askedMutex);
    asked.clear();
}

void LogicTest::record(const QString &query)
{
    const std::lock_guard lock(askedMutex);
    asked.append(query);
}

void LogicTest::recordQueries()
{
    using Hub = ManualT0LogicPrivate;
    const auto note = [this](auto signal, auto textOf) { // on whatever thread asks
        connect(
            hub.get(), signal, this, [this, textOf](const QVariantMap &query) { record(textOf(query)); },
            Qt::DirectConnection);
    };
    note(&Hub::signalQueryT0Products, [](const QVariantMap &) { return "products"; });
    connect(
        hub.get(), &Hub::signalQueryT0Traders, this, [this] { record("traders"); }, Qt::DirectConnection);
    note(&Hub::signalQueryT0AccountPriority, [](const QVariantMap &) { return "priority"; });
    note(&Hub::signalQueryResources, [](const QVariantMap &query) { return "resources " + accountOf(query); });
    note(&Hub::signalQuerySecurityPool, [](const QVariantMap &query) { return "pools " + accountOf(query); });
    note(&Hub::signalQueryPoolRealTimeData,
         [](const QVariantMap &query) { return "usage " + text(query, Master_Fields::ManualT0::T0TraderId); });
}

void LogicTest::answerProducts(const RecordList &rows, const QString &code)
{
    onHub([&] { hub->slotQueryT0ProductsResponse(code, rows); });
}

void LogicTest::answerTraders(const RecordList &rows, bool isManager, const QString &code)
{
    onHub([&] { hub->slotQueryT0TradersResponse(code, rows, isManager); });
}

void LogicTest::answerResources(const QString &account, const RecordList &rows, const QString &code, bool cover)
{
    onHub([&] { hub->slotQueryResourceResponse(code, {{tradingAccount, account}}, rows, cover); });
}

void LogicTest::answerPools(const QString &account, const RecordList &rows, const QString &code)
{
    onHub([&] { hub->slotQuerySecurityPoolResponse(code, {{tradingAccount, account}}, rows); });
}

void LogicTest::answerUsage(const RecordList &rows, const QString &code)
{
    onHub([&] { hub->slotQueryPoolRealTimeResponse(code, {}, rows); });
}

void LogicTest::answerPriority(const QStringList &accounts, const QString &code)
{
    RecordList rows;
    for (const QString &account : accounts)
        rows.append({{tradingAccount, account}});
    onHub([&] { hub->slotQueryT0AccountPriorityResponse(code, {}, rows); });
}

void LogicTest::push(const VariantRecord &row)
{
    onHub([&] { hub->slotRecvPoolRealtimeChangedPush(row); });
}

void LogicTest::start(const RecordList &resources, const RecordList &pools, const RecordList &usage, bool isManager)
{
    const auto of = [](const RecordList &rows, const QString &account) {
        RecordList result;
        for (const VariantRecord &row : rows) {
            if (text(row, tradingAccount) == account)
                result.append(row);
        }
        return result;
    };
    hub->InitData();
    answerProducts(
        {Rows::product("P1", "A1"), Rows::product("P1", "A2"), Rows::product("P1", "A3"), Rows::product("P2", "A4")});
    for (const char *account : {"A1", "A2", "A3", "A4"}) {
        answerResources(account, of(resources, account));
        answerPools(account, of(pools, account));
    }
    answerTraders({Rows::trader("u1", "u1-name"), Rows::trader("t2", "Two")}, isManager);
    answerUsage(usage);
    answerPriority({"A2", "A1"});
    takeAsked();
    QCOMPARE(takeEvents(), QStringList({"inited 0", "inited 2", "inited 3", "inited 1", "inited 4", "inited 5"}));
    server->takeSubscribed();
}

QStringList LogicTest::takeAsked()
{
    const std::lock_guard lock(askedMutex);
    return std::exchange(asked, {});
}

QStringList LogicTest::awaitAsked()
{
    QStringList queries;
    const bool came = QTest::qWaitFor([&] { return !(queries = takeAsked()).isEmpty(); });
    return came ? queries : QStringList("nothing in 5 s");
}

QStringList LogicTest::takeEvents()
{
    settle();
    QStringList events;
    for (const auto &[name, payload] : std::exchange(rawEvents, {}))
        events.append(eventText(name, payload));
    return events;
}

void LogicTest::settle()
{
    QVERIFY2(session->settle(10000), "something that was caused never arrived");
}
