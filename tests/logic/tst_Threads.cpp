#include "HubQueries.h"
#include "LogicTest.h"
#include "Tests.h"
#include "Watchdog.h"

#include "EventBus.h"
#include "MasterMsgType.h"

#include <atomic>

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;

namespace {

HubFilter someFilter()
{
    HubFilter filter;
    filter.products = QStringList("P1");
    filter.assetProps = QStringList("Cash");
    filter.accounts = QStringList{"A1", "A2"};
    filter.traders = QStringList("u1");
    filter.symbol = "600000.SH";
    filter.exchange = "SH";
    filter.resourceIds = QStringList("rA10");
    filter.poolIds = QStringList{"pA10", "pA11"};
    return filter;
}

} // namespace

/// The hub under its listeners.
class ThreadsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void listenersMayAskEverythingFromEveryEvent();

private:
    void openDesk();
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
    const Watchdog watchdog("the hub under its listeners", 60);
    openDesk();
    QObject here;
    QThread elsewhere;
    QObject there;
    there.moveToThread(&elsewhere);
    elsewhere.start();
    std::atomic<int> heard{0};
    QSet<QString> names;
    const HubFilter filter = someFilter();
    const auto ask = [this, &heard, &filter] {
        askEverything(*hub, filter);
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

T0_REGISTER_TEST(ThreadsTest)

#include "tst_Threads.moc"
