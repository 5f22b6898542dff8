#include "HostSession.h"
#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "EventBus.h"
#include "HCore.h"
#include "MarginDC.h"
#include "MasterBusinessDataInterface.h"
#include "MasterDelayBuffer.h"
#include "MasterInitStateMgr.h"
#include "MasterUtils.h"
#include "OrvaneFields.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"
#include "ZrObject.h"

#include <QtTest/QtTest>

#include <atomic>
#include <thread>

namespace {

ScriptedReference smallHouse()
{
    ScriptedReference reference;
    reference.accounts = {{"T2", "P2", "Credit", {"HHK", "SZHK"}}, {"T1", "P1"}, {"T0", "P2", "Cash", {"BJ"}}};
    reference.instruments = {{"600000.SH", "600000", "SH", 1, 10.5},
                             {"00700.HK", "00700", "HHK", 100, 320},
                             {"00700.HK", "00700", "SZHK", 100},
                             {"113001.SH", "113001", "SH", 10, 0, "BondType", "Convertiblebond"}};
    reference.marginSecurities = {{"T2", "00700", "SZHK", 5, "InUse"}};
    return reference;
}

QStringList tradingAccounts(const QStringList &exchanges)
{
    QStringList accounts;
    for (const tagUserAccountInfo &info :
         MasterBusinessDataInterface::GetFundAccountListByFundProp(3, 16, true, exchanges, true))
        accounts.append(info.tradingAccount);
    return accounts;
}

} // namespace

class HostSessionTest : public QObject
{
    Q_OBJECT

private slots:
    void referenceDataAnswersLookUps();
    void pushesAreNewerThanTheQueries();
    void closingLeavesNothing();
    void refusalsLeaveNothingOpen_data();
    void refusalsLeaveNothingOpen();
    void unansweredRequestsTellWhetherTheyLeft();
    void settleWaitsForWhatWasCaused();
    void settleGivesUpInTimeAndClosingDoesNotWait();
};

void HostSessionTest::referenceDataAnswersLookUps()
{
    using namespace MasterBusinessDataInterface;
    ScriptedChannel *channel = nullptr;
    const auto session = smallHouse().open(channel);
    QCOMPARE(CBusinessDataBase::GetLoginAccount(), QStringLiteral("u1"));
    QCOMPARE(CBusinessDataBase::GetLoginAccountDetail().value(Orvane_Fields::UserAccount::organCode).toString(),
             QStringLiteral("org1"));

    QCOMPARE(tradingAccounts({"SH", "HHK"}), QStringList({"T1", "T2"}));
    QCOMPARE(tradingAccounts({"SH", "SZ", "BJ", "HHK", "SZHK"}), QStringList({"T1", "T0", "T2"}));
    QCOMPARE(GetAccountAssetPropByTradingAccount("T2"), QStringLiteral("Credit"));
    QCOMPARE(GetAccountAssetPropByTradingAccount("unknown"), QString());
    QCOMPARE(GetAllProductAccountMap(), (QMap<QString, QString>{{"P1", "name of P1"}, {"P2", "name of P2"}}));

    // one symbol on two exchanges
    QCOMPARE(GetSymbolBySecurityIDAndExchange("00700", "HHK"), QStringLiteral("00700.HK"));
    QCOMPARE(GetSymbolBySecurityIDAndExchange("00700", "SZHK"), QStringLiteral("00700.HK"));
    QCOMPARE(GetSymbolBySecurityIDAndExchange("00700", "SH"), QString());
    QCOMPARE(GetDispFactorBySymbol("00700.HK"), 100);
    QCOMPARE(GetDispFactorBySymbol("unknown"), 1);
    QCOMPARE(GetSecurityDetailsBySymbol("600000.SH").value(Orvane_Fields::Security::chineseName).toString(),
             QStringLiteral("证券600000"));
    QVERIFY(GetSecurityDetailsBySymbol("unknown").isEmpty());
    QCOMPARE(CBusinessDataBase::GetSymbolListByTypeList("StockType", {}, {}, false, {}),
             QStringList({"00700.HK", "600000.SH"}));
    QCOMPARE(CBusinessDataBase::GetSymbolListByTypeList("StockType", {"MainBoardStock"}, {".SH"}, false, {}),
             QStringList("600000.SH"));
    QVERIFY(CBusinessDataBase::GetSymbolListByTypeList("BondType", {"Other"}, {}, false, {}).isEmpty());

    QVERIFY(BusinessDataInterface::GetPositionListByTradingAccount("unknown").isEmpty());

    QVERIFY(MarginDC::GetMarginSecurities("T2").isEmpty()); // not before init
    MarginDC::init({"T1"});
    QVERIFY(MarginDC::GetMarginSecurities("T2").isEmpty());
    MarginDC::init({});
    QCOMPARE(MarginDC::GetMarginSecurities("T2").value(0).value(Orvane_Fields::Security::symbol).toString(),
             QStringLiteral("00700.HK"));

    QCOMPARE(CommonQuotaHandler::instance().lastPrice("600000.SH", 0), 10.5);
    QCOMPARE(CommonQuotaHandler::instance().lastPrice("113001.SH", 0), 0.0);
    QCOMPARE(channel->unexpected(), QStringList());

    QString errorText; // only one is open, and it is left alone
    QVERIFY(!HostSession::open({std::make_unique<ScriptedChannel>(), "u2", {}}, errorText));
    QCOMPARE(errorText, QStringLiteral("已有打开的会话"));
    QCOMPARE(CBusinessDataBase::GetLoginAccount(), QStringLiteral("u1"));
}

void HostSessionTest::pushesAreNewerThanTheQueries()
{
    const auto position = [](const char *id, int quantity) {
        return VariantRecord{
            {"tradingAccount", "T1"}, {"securityID", id}, {"securityExchange", "SH"}, {"quantity", quantity}};
    };
    auto owned = std::make_unique<ScriptedChannel>();
    ScriptedChannel *channel = owned.get();
    smallHouse().script(*channel);
    // each answer was computed before the push that overtakes it
    const auto overtaken = [channel](const QString &query, const QString &push, const RecordList &pushed,
                                     const RecordList &answer) {
        channel->always(query, [=](const MessageBody &) {
            for (const VariantRecord &row : pushed)
                channel->push(push, row);
            return ScriptedChannel::success(answer);
        });
    };
    overtaken(Stand_MsgType::QueryQuotesRequest, Stand_MsgType::QuotePush,
              {{{"symbol", "600000.SH"}, {"lastPrice", 10.6}, {"bidPrices", QVariantList{10.5, 10.4}}}},
              {{{"symbol", "600000.SH"}, {"lastPrice", 10.5}}, {{"symbol", "00700.HK"}, {"lastPrice", 320.0}}});
    overtaken(Stand_MsgType::QueryPositionsRequest, Stand_MsgType::PositionPush, {position("600000", 5)},
              {position("600000", 4), position("113001", 1)});
    overtaken(Stand_MsgType::ExchangeControlRequest, Stand_MsgType::MarketPush, {{{"marketTime", "new"}}},
              {{{"marketTime", "old"}}});
    QString errorText;
    const auto session = HostSession::open({std::move(owned), "u1", {}}, errorText);
    QVERIFY2(session, qPrintable(errorText));
    QCOMPARE(CommonQuotaHandler::instance().lastPrice("600000.SH", 0), 10.6);
    QCOMPARE(CommonQuotaHandler::instance().quote("600000.SH").value("bidPrices").toList(), (QVariantList{10.5, 10.4}));
    QCOMPARE(CommonQuotaHandler::instance().lastPrice("00700.HK", 0), 320.0);
    QCOMPARE(session->marketState().value("marketTime").toString(), QStringLiteral("new"));
    QCOMPARE(channel->requests(Stand_MsgType::ExchangeControlRequest).first().body.rows,
             RecordList({{{"command", "status"}}}));

    channel->push(Stand_MsgType::PositionPush, position("113001", 2));
    channel->push(Stand_MsgType::PositionPush, position("999999", 3));
    QVERIFY(session->settle(60000));
    QStringList held;
    for (const VariantRecord &row : BusinessDataInterface::GetPositionListByTradingAccount("T1"))
        held.append(row.value("symbol").toString() + "=" + row.value("quantity").toString());
    QCOMPARE(held, QStringList({"113001.SH=2", "600000.SH=5", "=3"}));
}

void HostSessionTest::closingLeavesNothing()
{
    ScriptedChannel *channel = nullptr;
    auto session = smallHouse().open(channel);
    QObject context;
    int heard = 0;
    EventBus::listen("event", &context, [&](const QVariant &) { ++heard; });
    MasterInitStateMgr::instance().StartInit("k");
    MarginDC::init({});
    HCore::instance()->saveSetting("k", 1, {}, {}, QSettings::UserScope);
    MasterUtils::SendEventMsg(nullptr, "event", 1); // queued, and dropped by closing
    using namespace Master_Values;
    MasterBusinessDataInterface::AddBusiMsg(BusiMsgLevel::Normal, "text %1", BusiMsgType::SystemMsg, {}, false, {});
    QVERIFY(session->takeBusinessMessages().value(0).startsWith("text %1\t0\t20"));
    QVERIFY(session->takeBusinessMessages().isEmpty());
    session.reset();

    QCOMPARE(HostSession::current(), nullptr);
    MasterUtils::SendEventMsg(nullptr, "event", 1);
    QCoreApplication::processEvents();
    QCOMPARE(heard, 0);
    QCOMPARE(MasterInitStateMgr::instance().GetInitState("k"), MasterInitStateMgr::NotInit);
    QVERIFY(!HCore::instance()->settings("k", {}, {}, QSettings::UserScope).isValid());
    QVERIFY(CBusinessDataBase::GetLoginAccount().isEmpty());
    QVERIFY(tradingAccounts({"SH"}).isEmpty());
    QVERIFY(MasterBusinessDataInterface::GetAllProductAccountMap().isEmpty());
    QCOMPARE(CommonQuotaHandler::instance().lastPrice("600000.SH", 0), 0.0);

    session = smallHouse().open(channel);
    QVERIFY(MarginDC::GetMarginSecurities("T2").isEmpty());
}

void HostSessionTest::refusalsLeaveNothingOpen_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QString>("error");
    QTest::newRow("login") << Stand_MsgType::LoginRequest << "LoginRequest：不行";
    QTest::newRow("accounts") << Stand_MsgType::QueryAccountsRequest << "QueryAccountsRequest：不行";
    QTest::newRow("quotes") << Stand_MsgType::QueryQuotesRequest << "QueryQuotesRequest：不行";
    QTest::newRow("orders") << Stand_MsgType::QueryOrdersRequest << "QueryOrdersRequest：不行";
    QTest::newRow("subscription") << Stand_MsgType::SubscribeRequest << "QuotePush：订阅失败";
}

void HostSessionTest::refusalsLeaveNothingOpen()
{
    QFETCH(QString, refused);
    QFETCH(QString, error);
    auto channel = std::make_unique<ScriptedChannel>();
    smallHouse().script(*channel);
    channel->next(refused, ScriptedChannel::refusal(QStringLiteral("不行")));
    QString errorText;
    QVERIFY(!HostSession::open({std::move(channel), "u1", {}}, errorText));
    QCOMPARE(errorText, error);
    QCOMPARE(HostSession::current(), nullptr);
    QVERIFY(CBusinessDataBase::GetLoginAccount().isEmpty());
    ScriptedChannel *second = nullptr;
    QVERIFY(smallHouse().open(second));
}

void HostSessionTest::unansweredRequestsTellWhetherTheyLeft()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel);
    VariantRecord values;
    RecordList rows;
    QString errorText;
    channel->nextTimesOut("Own");
    QCOMPARE(session->request("Own", {}, {}, errorText, values, rows), QStringLiteral("timeout"));
    QCOMPARE(errorText, QStringLiteral("请求超时"));
    channel->nextIsNotSent("Own");
    QCOMPARE(session->request("Own", {}, {}, errorText, values, rows), QStringLiteral("fail"));
    QCOMPARE(errorText, QStringLiteral("请求未发送，与服务器的连接已断开"));
}

namespace {

/// Work that goes through everything settle() promises to wait for: own thread, delay buffer, event, request.
class Chain : public ZrObject
{
public:
    Chain()
        : ZrObject(true, nullptr)
    {}
    ~Chain() override { quitThread(); }

    void start()
    {
        QMetaObject::invokeMethod(this, [this] {
            auto *buffer = new MasterDelayBuffer(this, 30);
            connect(buffer, &MasterDelayBuffer::bufferTimeOut, this,
                    [] { MasterUtils::SendEventMsg(nullptr, "announced", 1); });
            EventBus::listen("announced", this, [](const QVariant &) {
                QString errorText;
                MasterUtils::QueryDatasFromServer(nullptr, "Query", {}, Mode0, errorText);
                MasterUtils::SendEventMsg(nullptr, "finished", errorText);
            });
            buffer->AppendItem(1);
        });
    }
};

} // namespace

void HostSessionTest::settleWaitsForWhatWasCaused()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference{}.open(channel);
    channel->always("Query", [](const MessageBody &) { return ScriptedChannel::success(); });
    QString finished = QStringLiteral("no");
    QObject here;
    EventBus::listen("finished", &here, [&](const QVariant &errorText) { finished = errorText.toString(); });
    Chain chain;
    chain.start();
    QVERIFY(session->settle(60000));
    QCOMPARE(finished, QString());
    QVERIFY(session->settle(60000));
}

void HostSessionTest::settleGivesUpInTimeAndClosingDoesNotWait()
{
    ScriptedChannel *channel = nullptr;
    auto session = ScriptedReference{}.open(channel, 60000);
    channel->next("Query", ScriptedChannel::success());
    channel->hold("Query");
    QString errorText;
    std::thread caller([&] { MasterUtils::QueryDatasFromServer(nullptr, "Query", {}, Mode0, errorText); });
    QTRY_COMPARE(channel->count("Query"), 1);
    QCOMPARE(session->loadProgress("Query").running, 1);
    QVERIFY(!session->settle(20));
    session.reset();
    caller.join();
    QCOMPARE(errorText, QStringLiteral("请求未发送，与服务器的连接已断开"));
}

T0_REGISTER_TEST(HostSessionTest)
#include "HostSessionTest.moc"
