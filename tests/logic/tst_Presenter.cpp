#include "LogicTest.h"
#include "ManualT0LogicPresenterClass.h"
#include "Tests.h"

#include "MasterMsgType.h"

using namespace Master_MsgType;
using State = MasterInitStateMgr::InitState;

namespace {

RecordList pools(int count)
{
    RecordList rows;
    for (int i = 0; i < count; ++i)
        rows.append(Rows::pool(QStringLiteral("p%1").arg(i), "A1", "600000 SH", "u1", 1, "r1"));
    return rows;
}

} // namespace

class PresenterTest : public LogicTest
{
    Q_OBJECT

private slots:
    void startsTheWholeDesk();
    void failedSecondPageFailsItsAccount();
    void productQueryHasFiveAttempts();
    void anothersRoleOrAFailedQueryMakesNoManager();
    void pushesArriveInOrderAndOthersAreIgnored();
    void answerBeforeAPushIsSeenBeforeIt();
    void releaseDuringALongQueryEndsIt();

private:
    void openDesk();
    void startDesk();
    int boughtByT2() const;
};

void PresenterTest::openDesk()
{
    close();
    open(Mode::Server);
    server->change([](TestServer::Books &books) {
        books.products = {Rows::product("P1", "A1"), Rows::product("P1", "A2")};
        books.managers = {Rows::trader("u1", "One")};
        books.traders = {Rows::trader("u1", "One"), Rows::trader("t2", "Two"), Rows::trader("t2", "again")};
        books.resources = {Rows::resource("r1", "A1", "110001 SH", 12)};
        books.pools = pools(3);
        books.usage = {Rows::usage("A1", "t2", "600000 SH", "1"), Rows::usage("A1", "x9", "600000 SH", "1")};
        books.priority = {Rows::product("P1", "A2"), Rows::product("P1", "A1")};
    });
}

void PresenterTest::startDesk()
{
    hub->InitData();
    settle();
}

int PresenterTest::boughtByT2() const
{
    const VariantRecord record = hub->GetRealtimePoolDetail("A1", "t2", "600000.SH", "SH");
    return record.value(Master_Fields::ManualT0::DailyBoughtQty).toInt();
}

void PresenterTest::startsTheWholeDesk()
{
    openDesk();
    hub->InitData();
    QStringList events = takeEvents();
    events.sort();
    QCOMPARE(events, QStringList({"inited 0", "inited 1", "inited 2", "inited 3", "inited 4", "inited 5"}));
    for (int type = 0; type <= 5; ++type)
        QCOMPARE(hub->GetInitStateByType(type), State::Inited);
    QCOMPARE(hub->GetAllT0TradingAccountList(), QStringList({"A1", "A2"}));
    QCOMPARE(hub->GetAllT0TraderId(), (QMap<QString, QString>{{"t2", "Two"}, {"u1", "One"}}));
    QCOMPARE(hub->GetAllT0TradingAccountListByCurUser(), QStringList({"A2", "A1"}));
    QCOMPARE(hub->GetResourceDetailById("r1").value(Master_Fields::ManualT0::ResourceQty).toInt(), 120);
    QCOMPARE(hub->GetAllSecurityPoolList().size(), 3);
    QCOMPARE(HubProbe::usageKeys(*hub), QStringList("t2_A1_600000.SH_SH")); // of the traders that were named
    QCOMPARE(server->takeSubscribed(), QStringList({"t2", "u1"}));

    // What the server is asked by.
    using namespace Orvane_Fields;
    const auto query = [this](const QString &type, int at) {
        return server->channel->requests(type).value(at).body.rows.value(0);
    };
    QCOMPARE(query(QueryManualT0ResourceRequest, 1),
             (VariantRecord{{UserAccount::tradingAccount, "A2"}, {UserAccount::loginUserId, "u1"}}));
    QCOMPARE(query(QueryManualT0TraderAccountPriorityRequest, 0),
             (VariantRecord{{UserAccount::loginUserId, "u1"}, {Master_Fields::ManualT0::T0TraderId, "u1"}}));
    QCOMPARE(query(QueryUserIdByUserRoleRequest, 1),
             (VariantRecord{{UserAccount::organCode, "org"},
                            {Master_Fields::UserAccount::UserRoleType, Master_Values::UserRoleType::OperRoles},
                            {Master_Fields::UserAccount::UserRoleId, Master_Values::UserRoles::ManualT0Trader}}));
    const MessageBody products = server->channel->requests(QueryManualT0ProductsRequest).value(0).body;
    QCOMPARE(products.rows, RecordList({{{UserAccount::loginUserId, "u1"}}}));
    QCOMPARE(products.values.value(System::msgType).toString(), QueryManualT0ProductsRequest);
}

void PresenterTest::failedSecondPageFailsItsAccount()
{
    openDesk();
    server->change([](TestServer::Books &books) {
        books.pools = pools(1500);
        for (int i = 0; i < 1000; ++i)
            books.usage.append(Rows::usage(QStringLiteral("B%1").arg(i), "u1", "600000 SH", "1"));
    });
    startDesk();
    takeEvents();
    QCOMPARE(HubProbe::usageKeys(*hub).size(), 1001); // pages of both kinds
    const int before = server->channel->count(QueryManualT0SecurityPoolRequest);
    server->channel->next(QueryManualT0SecurityPoolRequest,
                          ScriptedChannel::success({Rows::pool("new", "A1", "600000 SH", "u1", 1, "r1")},
                                                   {{Stand_Fields::Paging::position, "1"}}));
    server->channel->next(QueryManualT0SecurityPoolRequest, ScriptedChannel::refusal("no"));
    hub->slotRecvSecurityPoolChangedPush("A1");
    QCOMPARE(takeEvents(), QStringList()); // a later failure is ignored, its first page with it
    QCOMPARE(hub->GetAllSecurityPoolList().size(), 1500);
    QCOMPARE(server->channel->count(QueryManualT0SecurityPoolRequest), before + 2);
}

void PresenterTest::productQueryHasFiveAttempts()
{
    openDesk();
    QStringList codes;
    connect(presenter, &ManualT0LogicPresenterClass::signalQueryT0ProductsResponse, this,
            [&codes](const QString &code) { codes.append(code); });
    server->channel->next(QueryManualT0ProductsRequest, ScriptedChannel::refusal("no"));
    server->channel->nextIsNotSent(QueryManualT0ProductsRequest);
    server->channel->nextTimesOut(QueryManualT0ProductsRequest);
    server->channel->next(QueryManualT0ProductsRequest, {}); // neither rows nor a status
    server->channel->next(QueryManualT0ProductsRequest, ScriptedChannel::refusal("no"));
    hub->InitData();
    QCOMPARE(takeEvents().count("inited 0"), 1);
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Products), State::InitFailed);
    QCOMPARE(server->channel->count(QueryManualT0ProductsRequest), 5);
    QCOMPARE(codes, QStringList({"fail", "fail", "timeout", "", "fail"}));
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Resources), State::NotInit);
}

void PresenterTest::anothersRoleOrAFailedQueryMakesNoManager()
{
    openDesk();
    server->channel->next(QueryUserIdByUserRoleRequest, ScriptedChannel::success({Rows::trader("t2", "Two")}));
    server->channel->next(QueryUserIdByUserRoleRequest, ScriptedChannel::refusal("no"));
    startDesk();
    QCOMPARE(hub->GetInitStateByType(ManualT0Logic::Traders), State::Inited);
    QVERIFY(hub->GetAllT0TraderId().isEmpty());
    QVERIFY(!HubProbe::isManager(*hub));
    QCOMPARE(server->takeSubscribed(), QStringList("u1"));
}

void PresenterTest::pushesArriveInOrderAndOthersAreIgnored()
{
    openDesk();
    hub->InitData();
    takeEvents();
    for (int i = 10; i < 60; ++i)
        server->pushUsage(
            Rows::usage("A1", "t2", "600000 SH", QString::number(i), {{Master_Fields::ManualT0::DailyBoughtQty, i}}));
    server->channel->push(QueryManualT0ProductsResponse, Rows::usage("A9", "t2", "600000 SH", "1"));
    const QStringList events = takeEvents();
    QCOMPARE(events.size(), 50); // none was taken for an older one
    QCOMPARE(boughtByT2(), 59);
}

void PresenterTest::answerBeforeAPushIsSeenBeforeIt()
{
    openDesk();
    server->channel->hold(QueryManualT0RealTimePoolUsageRequest);
    hub->InitData();
    QTRY_COMPARE(server->channel->count(QueryManualT0RealTimePoolUsageRequest), 1);
    QTRY_VERIFY(HubProbe::pushSubscribed(*hub));
    // The first load compares no times: a push that overtook its answer would be lost.
    server->channel->release(QueryManualT0RealTimePoolUsageRequest);
    server->pushUsage(Rows::usage("A1", "t2", "600000 SH", "2", {{Master_Fields::ManualT0::DailyBoughtQty, 7}}));
    settle();
    QCOMPARE(boughtByT2(), 7);
}

void PresenterTest::releaseDuringALongQueryEndsIt()
{
    openDesk();
    server->channel->hold(QueryManualT0SecurityPoolRequest);
    hub->InitData();
    QTRY_COMPARE(server->channel->count(QueryManualT0SecurityPoolRequest), 1);
    close(); // neither hangs nor leaves a thread
}

T0_REGISTER_TEST(PresenterTest)

#include "tst_Presenter.moc"
