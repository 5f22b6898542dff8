#include "LogicTest.h"
#include "Tests.h"

#include "EventBus.h"
#include "MasterMsgType.h"

#include <atomic>
#include <future>
#include <thread>

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;

namespace {

/// Ends the process when it is not disarmed in time: what hangs could not be cleaned up.
class Watchdog
{
public:
    explicit Watchdog(int seconds)
        : m_thread([this, seconds] {
            if (m_disarmed.get_future().wait_for(std::chrono::seconds(seconds)) == std::future_status::timeout)
                qFatal("the hub hangs");
        })
    {}
    ~Watchdog()
    {
        m_disarmed.set_value();
        m_thread.join();
    }
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

private:
    std::promise<void> m_disarmed;
    std::thread m_thread;
};

/// Every query of the hub; the sum of what came back, so that nothing is left out.
int askEverything(const ManualT0LogicPrivate &hub)
{
    const QStringList accounts{"A1", "A2"};
    const VariantRecord record = hub.GetRealtimePoolDetail("A1", "u1", "600000.SH", "SH");
    double sum = 0;
    bool found = false;
    const int size =
        hub.GetAllT0ProductAccount().size() + hub.GetAllT0TradingAccountList().size() +
        hub.GetCandidateT0ProductAccount().size() + hub.GetProductAssetPropList("P1").size() +
        hub.GetT0ProductMap().size() + hub.GetTradingAccountListByProductAndAssetProp("P1", "").size() +
        int(hub.IsProductAndAssetPropInT0("P1", "Cash")) + hub.GetAllT0TraderId().size() +
        hub.GetTraderNameByTraderId("u1").size() + hub.GetAllT0TradingAccountListByCurUser().size() +
        hub.GetAllResourceList().size() + hub.GetResourceDetailById("r1").size() +
        hub.GetResourceByProductAccount({"P1"}, "", "600000.SH", "", {"u1"}).size() +
        hub.GetT0ResourceCandidatesList({"P1"}, "", true).size() +
        int(hub.GetAllocatableQty2Resource("P1", "", "600000.SH", "SH")) + hub.GetAllSecurityPoolList().size() +
        hub.GetSecurityPoolDetailById("p1").size() + hub.GetSecurityPoolDetailByIdList({"p1", "p2"}).size() +
        hub.GetSecurityPoolDetailByResourceId("r1", 3).size() +
        hub.GetSecurityPoolDetailListByTradingList(accounts, {}, "", "", true).size() +
        hub.GetSecurityPoolDetailListByTrading("A1", "u1", "", "").size() +
        hub.GetSecurityPoolDetailByTrading("A1", "u1", "", "").size() +
        hub.GetSecurityPoolDetail(QString("P1"), QString("Cash"), "", "", "", true).size() +
        hub.GetSecurityPoolDetail(QStringList(), QStringList(), {"u1"}, "", "", false).size() + record.size() +
        hub.GetRealtimePoolKey(record).size() + hub.GetRealtimePoolDetailList(accounts, {"u1"}, "", "").size() +
        hub.GetRealtimeSumListMergeBySymbolExchange(accounts, "u1", "", "").size() +
        hub.GetProfitLossDataList(accounts, "", "", "").size() +
        int(hub.CalcProfitLossByRealtimeMap(record, 1, sum, sum, sum)) +
        hub.GetSymbolTradeSettings("S", &found).size() + hub.GetCurrentTradeAccount().size() +
        hub.GetCurrentTradableSymbolList().size() + hub.GetCurrentInputSymbolList().size() +
        int(hub.GetInitStateByType(0));
    return size;
}

int stormSeconds()
{
    const int seconds = qEnvironmentVariableIntValue("T0_STORM_SECONDS");
    return seconds > 0 ? seconds : 3;
}

} // namespace

/// The hub under its listeners and under many callers at once.
class ThreadsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void listenersMayAskEverythingFromEveryEvent();
    void stormEndsWithTheServersData();

private:
    void openDesk();
    QStringList serversData() const;
    QStringList hubsData() const;
};

void ThreadsTest::openDesk()
{
    close();
    open(Mode::Server, {1, 600000, 1});
    server->change([](TestServer::Books &books) {
        books.managers = {Rows::trader("u1", "One")};
        books.traders = {Rows::trader("u1", "One"), Rows::trader("t2", "Two")};
        books.priority = {Rows::product("P1", "A1")};
        for (const char *account : {"A1", "A2", "A3", "A4"}) {
            books.products.append(Rows::product(account == QLatin1String("A4") ? "P2" : "P1", account));
            for (int i = 0; i < 5; ++i) {
                const QString id = QString(account) + QString::number(i);
                const char *security = i % 2 == 0 ? "600000 SH" : "110001 SH";
                books.resources.append(Rows::resource("r" + id, account, security, 100 + i));
                books.pools.append(Rows::pool("p" + id, account, security, i < 3 ? "u1" : "public", 10 + i, "r" + id));
            }
        }
    });
}

void ThreadsTest::listenersMayAskEverythingFromEveryEvent()
{
    const Watchdog watchdog(10);
    openDesk();
    QObject here;
    QThread elsewhere;
    QObject there;
    there.moveToThread(&elsewhere);
    elsewhere.start();
    std::atomic<int> heard{0};
    QSet<QString> names;
    const auto ask = [this, &heard] {
        askEverything(*hub);
        ++heard;
    };
    EventBus::listenToAll(&here, [&](const QString &name, const QVariant &) {
        names.insert(name);
        ask();
    });
    EventBus::listenToAll(&there, [&](const QString &, const QVariant &) { ask(); });

    server->channel->next(QueryManualT0ResourceRequest, ScriptedChannel::refusal("no"));
    server->channel->nextTimesOut(QueryManualT0SecurityPoolRequest);
    server->channel->next(QueryManualT0TraderAccountPriorityRequest, ScriptedChannel::refusal("no"));
    hub->InitData();
    hub->SetCurrentTradeAccount({"A1", "A2"});
    settle();
    QTRY_COMPARE(hub->GetInitStateByType(ManualT0Logic::AccountPriority), MasterInitStateMgr::Inited);
    hub->RefreshData();
    settle();
    for (int type = 0; type <= 5; ++type) {
        server->pushUsage(
            Rows::usage("A1", "u1", type % 2 == 0 ? "600000 SH" : "110001 SH", QString::number(type + 1)));
        hub->RefreshDataByType(type);
        settle();
    }
    // Later answers: changed pools, deleted pools, resources, usage.
    server->change([](TestServer::Books &books) { books.pools = books.pools.mid(2); });
    hub->slotRecvSecurityPoolChangedPush("A1");
    settle();
    server->change(
        [](TestServer::Books &books) { books.pools.append(Rows::pool("new", "A1", "600000 SH", "u1", 1, "r")); });
    hub->slotRecvSecurityPoolChangedPush("A1");
    onHub([this] { emit hub->signalQueryResources({{Orvane_Fields::UserAccount::tradingAccount, "A1"}}); });
    onHub([this] { emit hub->signalQueryPoolRealTimeData({{T0TraderId, "u1"}}); });
    settle();

    QCOMPARE(names, (QSet<QString>{"ManualT0CurInputSymbolChanged", "ManualT0CurTradeAccountChanged",
                                   "ManualT0DataInited", "ManualT0PoolRealTimeUpdated", "ManualT0ResourceUpdated",
                                   "ManualT0SecurityPoolDeleted", "ManualT0SecurityPoolUpdated"}));
    QVERIFY(heard > 40);
    EventBus::stopListening(&there);
    elsewhere.quit();
    elsewhere.wait();
}

QStringList ThreadsTest::serversData() const
{
    const TestServer::Books books = server->books();
    return Rows::texts(books.products, Orvane_Fields::UserAccount::tradingAccount) +
           Rows::texts(books.resources, ResourceId) + Rows::texts(books.pools, PoolDetailId) +
           Rows::texts(books.usage, Master_Fields::System::ModifyTime);
}

QStringList ThreadsTest::hubsData() const
{
    QStringList accounts = hub->GetAllT0TradingAccountList();
    accounts.sort();
    return accounts + Rows::texts(hub->GetAllResourceList(), ResourceId) +
           Rows::texts(hub->GetAllSecurityPoolList(), PoolDetailId) +
           Rows::texts(hub->GetRealtimePoolDetailList(accounts, {}, "", ""), Master_Fields::System::ModifyTime);
}

void ThreadsTest::stormEndsWithTheServersData()
{
    const int seconds = stormSeconds();
    const Watchdog watchdog(seconds + 60);
    openDesk();
    hub->InitData();
    settle();

    std::atomic<bool> ended{false};
    std::atomic<qint64> answers{0};
    std::vector<std::thread> callers;
    const auto repeat = [&](auto action) {
        callers.emplace_back([&ended, action] {
            for (int round = 0; !ended; ++round)
                action(round);
        });
    };
    for (int reader = 0; reader < 4; ++reader)
        repeat([&](int) { answers += askEverything(*hub); });
    repeat([this](int round) {
        hub->RefreshDataByType(round % 4);
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // a rate, nothing is waited for
    });
    repeat([this](int round) {
        const char *account = round % 3 == 0 ? "A1" : "A2";
        const char *security = round % 5 == 0 ? "110001 SH" : round % 7 == 0 ? "300001 SZ" : "600000 SH";
        server->pushUsage(Rows::usage(account, round % 2 == 0 ? "u1" : "t2", security,
                                      QStringLiteral("%1").arg(round, 9, 10, QLatin1Char('0')),
                                      {{DailyBoughtQty, round}, {DailyBoughtAmount, round}}));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    repeat([this](int round) {
        hub->SetCurrentTradeAccount(round % 2 == 0 ? QStringList({"A1", "A2"}) : QStringList("A2"));
        hub->SetSymbolTradeSettings("S", {{"round", round}});
        if (round % 10 == 0)
            hub->DeleteSymbolTradeSettings("S");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    repeat([this](int round) { // accepted, but not carried out: what the server has comes back with the next load
        QString errorText;
        hub->DeleteT0Resource({{{ResourceId, QStringLiteral("rA1%1").arg(round % 5)}}}, errorText);
        hub->AddT0Resource({Rows::resource("", "A2", "600000 SH", 1)}, true, errorText);
        hub->AllocatePublicResource({Rows::pool("", "A2", "600000 SH", "public", 1, "rA20")}, errorText);
        hub->DeleteSecurityPoolsByIdList({QStringLiteral("pA1%1").arg(round % 5)}, errorText);
        if (round % 10 == 0)
            hub->AlterT0ProductAccount({{"P1", {"Cash"}}, {"P2", {"Cash"}}}, errorText);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    QTest::qWait(seconds * 1000); // the length of the storm; events are taken meanwhile
    ended = true;
    for (std::thread &caller : callers)
        caller.join();

    hub->SetCurrentTradeAccount({"A1", "A2"});
    hub->RefreshDataByType(ManualT0Logic::Products);
    settle();
    QVERIFY(answers > 0);
    QVERIFY(!server->takeChanges().isEmpty());
    QCOMPARE(hubsData(), serversData());
    QCOMPARE(hub->GetCurrentTradableSymbolList(), QStringList({"110001.SH", "300001.SZ", "600000.SH"}));
}

T0_REGISTER_TEST(ThreadsTest)

#include "tst_Threads.moc"
