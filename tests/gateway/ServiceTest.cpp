#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "SampleBooks.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TestBooks.h"
#include "TestClient.h"
#include "Tests.h"

#include <QtTest/QtTest>

namespace {

namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;

QStringList texts(const RecordList &rows, const QString &field)
{
    QStringList found;
    for (const VariantRecord &row : rows)
        found.append(row.value(field).toString());
    return found;
}

QSet<QString> textSet(const RecordList &rows, const QString &field)
{
    const QStringList all = texts(rows, field);
    return QSet<QString>(all.cbegin(), all.cend());
}

VariantRecord usageOf(const QString &traders)
{
    return {{T0_::T0TraderId, traders}};
}

} // namespace

class ServiceTest : public QObject
{
    Q_OBJECT

private slots:
    void pages_data();
    void pages();
    void refusesBadPaging_data();
    void refusesBadPaging();
    void theLoginDecidesWhoAsks();
    void everybodyKnowsAllAccountsButOnlyOwnHoldings();
    void referenceDataIsInServerUnits();
    void usersByRole();
    void prioritiesKeepTheirOrder();
    void tradersSeeOnlyThemselves();
};

void ServiceTest::pages_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("pageSize");
    QTest::addColumn<QVector<int>>("sizes");
    QTest::newRow("nothing") << 0 << 0 << QVector<int>{0};
    QTest::newRow("exactly a page") << 1000 << 0 << QVector<int>{1000};
    QTest::newRow("a page and one") << 1001 << 0 << QVector<int>{1000, 1};
    QTest::newRow("one row a page") << 3 << 1 << QVector<int>{1, 1, 1};
}

void ServiceTest::pages()
{
    QFETCH(int, count);
    QFETCH(int, pageSize);
    QFETCH(QVector<int>, sizes);
    TestClient client(openGateway(TestBooks::withRows(count)), "m");
    const VariantRecord account{{UserAccount_::tradingAccount, "A1"}};
    const auto check = [&](const QString &type, const VariantRecord &row, const QString &id) {
        QVector<int> found;
        QStringList ids;
        for (const RecordList &page : client.pages(type, row, pageSize)) {
            found.append(page.size());
            ids += texts(page, id);
        }
        QVERIFY2(found == sizes, qPrintable(type));
        QStringList sorted = ids;
        sorted.sort();
        sorted.removeDuplicates();
        QVERIFY2(ids == sorted, qPrintable(type));
    };
    check(Master_MsgType::QueryManualT0ResourceRequest, account, T0_::ResourceId);
    check(Master_MsgType::QueryManualT0SecurityPoolRequest, account, T0_::PoolDetailId);
    check(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, usageOf("t2,t1"), Orvane_Fields::Security::securityID);
    check(Stand_MsgType::QueryInstrumentsRequest, {}, Orvane_Fields::Security::symbol);
    check(Stand_MsgType::QueryPositionsRequest, {}, Orvane_Fields::Security::securityID);
    check(Stand_MsgType::QueryMarginSecuritiesRequest, {}, Orvane_Fields::Security::securityID);
    check(Stand_MsgType::QueryQuotesRequest, {}, Orvane_Fields::Security::symbol);
}

void ServiceTest::refusesBadPaging_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const QString size = QStringLiteral("每页行数应为1到10000");
    const QString place = QStringLiteral("分页位置无效");
    const QString usage = Master_MsgType::QueryManualT0RealTimePoolUsageRequest;
    const QString pageSize = Stand_Fields::Paging::pageSize;
    QTest::newRow("no rows") << usage << pageSize << QVariant(0) << size;
    QTest::newRow("before the first") << usage << Stand_Fields::Paging::pageIndex << QVariant(-1) << place;
    for (const char *position : {"P000000001", "R+00000001", "R000000000"})
        QTest::newRow(position) << Master_MsgType::QueryManualT0ResourceRequest << Stand_Fields::Paging::position
                                << QVariant(position) << place;
}

void ServiceTest::refusesBadPaging()
{
    QFETCH(QString, type);
    QFETCH(QString, field);
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    TestClient client(openGateway(TestBooks::withRows(1)), "m");
    QCOMPARE(refusal(client.ask(type, {}, {{field, value}})), text);
}

void ServiceTest::theLoginDecidesWhoAsks()
{
    TestClient client(openGateway(TestBooks::withRows(1)), QString());
    const auto login = [&](const char *user) {
        return refusal(client.ask(Stand_MsgType::LoginRequest, {{UserAccount_::userID, user}}));
    };
    QCOMPARE(refusal(client.ask(Stand_MsgType::QueryAccountsRequest)), QStringLiteral("尚未登录"));
    QVERIFY(!client.subscribe(Stand_MsgType::QuotePush, "m"));
    QCOMPARE(login("nobody"), QStringLiteral("用户不存在：nobody"));
    QCOMPARE(login("t1"), QString());
    QCOMPARE(login("t1"), QString());
    QCOMPARE(login("m"), QStringLiteral("本连接已由用户t1登录"));
    const VariantRecord asManager{{UserAccount_::loginUserId, "m"}, {T0_::T0TraderId, "t1"}};
    QCOMPARE(refusal(client.ask(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, asManager)),
             QStringLiteral("请求中的用户与登录用户不一致：m"));
    QCOMPARE(refusal(client.ask("OtherRequest")), QStringLiteral("不支持的消息类型：OtherRequest"));
    const RecordList me = client.ask(Stand_MsgType::LoginRequest, {{UserAccount_::userID, "t1"}}).rows;
    QCOMPARE(me, (RecordList{{{UserAccount_::userID, "t1"},
                              {UserAccount_::userName, "First"},
                              {UserAccount_::organCode, "O1"},
                              {Stand_Fields::User::roles, QVariantList{Master_Values::UserRoles::ManualT0Trader}}}}));
}

void ServiceTest::everybodyKnowsAllAccountsButOnlyOwnHoldings()
{
    const auto gateway = openGateway(SampleBooks::make(1));
    const auto accounts = [&](const QString &user) {
        return texts(TestClient(gateway, user).ask(Stand_MsgType::QueryAccountsRequest).rows,
                     UserAccount_::tradingAccount);
    };
    for (const char *user : {"trader2", "manager1"})
        QCOMPARE(accounts(user),
                 (QStringList{"A000101", "A000102", "A000201", "A000202", "A000301", "A000302", "A000303"}));
    const auto holders = [&](const QString &user, const QString &type) {
        return textSet(TestClient(gateway, user).all(type, {}, 7), UserAccount_::tradingAccount);
    };
    QCOMPARE(holders("trader3", Stand_MsgType::QueryPositionsRequest),
             (QSet<QString>{"A000102", "A000201", "A000202"}));
    QCOMPARE(holders("trader1", Stand_MsgType::QueryMarginSecuritiesRequest), QSet<QString>{"A000102"});
}

void ServiceTest::referenceDataIsInServerUnits()
{
    Books books = TestBooks::withRows(1);
    books.instruments[0].dispFactor = 10;
    books.positions[0].quantity = 5005;
    books.buildIndexes();
    TestClient client(openGateway(books), "m");
    const VariantRecord position = client.all(Stand_MsgType::QueryPositionsRequest).value(0);
    QCOMPARE(position.value(Stand_Fields::Position::quantity).toDouble(), 500.5);
    QCOMPARE(position.value(Stand_Fields::Position::tradeable).toDouble(), 400.0);
    const VariantRecord margin = client.all(Stand_MsgType::QueryMarginSecuritiesRequest).value(0);
    QCOMPARE(margin.value(Stand_Fields::Margin::quantity).toDouble(), 10.0);
    const VariantRecord pool =
        client.all(Master_MsgType::QueryManualT0SecurityPoolRequest, {{UserAccount_::tradingAccount, "A1"}}).value(0);
    QCOMPARE(pool.value(T0_::MaxExposureQty), QVariant(-1ll));
    QCOMPARE(pool.value(T0_::MaxPendExposureQty), QVariant(50ll));
}

void ServiceTest::usersByRole()
{
    Books books = SampleBooks::make(1);
    std::reverse(books.users.begin(), books.users.end());
    books.users[0].organCode = QStringLiteral("ORG2");
    books.buildIndexes();
    TestClient client(openGateway(books), "manager1");
    const auto ids = [&](const QString &organ, const QString &role) {
        const MessageBody answer =
            client.ask(Master_MsgType::QueryUserIdByUserRoleRequest,
                       {{UserAccount_::organCode, organ},
                        {Master_Fields::UserAccount::UserRoleType, Master_Values::UserRoleType::OperRoles},
                        {Master_Fields::UserAccount::UserRoleId, role}});
        return succeeded(answer) ? texts(answer.rows, UserAccount_::userID) : QStringList{"refused"};
    };
    QCOMPARE(ids("ORG1", Master_Values::UserRoles::ManualT0Trader),
             (QStringList{"lead1", "trader1", "trader2", "trader3"}));
    QCOMPARE(ids("ORG1", Master_Values::UserRoles::ManualT0Mangager), (QStringList{"lead1", "manager1"}));
    QCOMPARE(ids("ORG1", "Auditor"), QStringList());
}

void ServiceTest::prioritiesKeepTheirOrder()
{
    const auto gateway = openGateway(SampleBooks::make(1));
    TestClient trader(gateway, "trader4");
    const QString type = Master_MsgType::QueryManualT0TraderAccountPriorityRequest;
    // A000303 comes first in the books, but is not enabled.
    QCOMPARE(texts(trader.all(type, usageOf("trader4"), 2), UserAccount_::tradingAccount),
             (QStringList{"A000302", "A000301", "A000202"}));
    QCOMPARE(refusal(trader.ask(type, usageOf("trader1"))), QStringLiteral("没有权限查看用户trader1的数据"));
    QCOMPARE(TestClient(gateway, "manager1").all(type, usageOf("trader1")).size(), 3);
}

void ServiceTest::tradersSeeOnlyThemselves()
{
    const auto gateway = openGateway(SampleBooks::make(1));
    const QString type = Master_MsgType::QueryManualT0RealTimePoolUsageRequest;
    TestClient trader(gateway, "trader1");
    const auto seen = [&](const QString &traders) {
        return textSet(trader.all(type, usageOf(traders)), T0_::T0TraderId);
    };
    QCOMPARE(seen("trader1,trader2"), QSet<QString>{"trader1"});
    QCOMPARE(seen("trader2"), QSet<QString>());
    QCOMPARE(seen(""), QSet<QString>());
    QVERIFY(trader.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "trader1"));
    QVERIFY(!trader.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "trader2"));

    TestClient manager(gateway, "manager1");
    QCOMPARE(textSet(manager.all(type, usageOf("trader1,trader2")), T0_::T0TraderId),
             (QSet<QString>{"trader1", "trader2"}));
    QVERIFY(manager.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "trader2"));
    QVERIFY(!manager.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "public"));
    QVERIFY(!manager.subscribe("OtherPush", "trader2"));
}

T0_REGISTER_TEST(ServiceTest)
#include "ServiceTest.moc"
