#include "LogicTest.h"
#include "Tests.h"

#include "MasterMsgType.h"

#include <random>

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;
using Rows::pool;
using Rows::resource;

namespace {

const QString Timeout = QStringLiteral("timeout");
const QString TimeoutText = QStringLiteral("请求超时");

const QMap<QString, QString> &requestOf()
{
    static const QMap<QString, QString> requests{{"add", AddManualT0ResourceRequest},
                                                 {"cover", AddManualT0ResourceRequest},
                                                 {"alter", AlterManualT0ResourceRequest},
                                                 {"delete", DeleteManualT0ResourceRequest},
                                                 {"public", AllocateManualT0SecurityPoolRequest},
                                                 {"traders", AllocateManualT0SecurityPoolRequest},
                                                 {"delete pools", DeleteManualT0SecurityPoolRequest},
                                                 {"add pools", AddManualT0ResourceAndPoolRequest},
                                                 {"cover pools", AddManualT0ResourceAndPoolRequest}};
    return requests;
}

/// What a caller knows of something new.
VariantRecord stock(const QString &tradingAccount, const QString &security, const QVariant &quantity)
{
    return resource("", tradingAccount, security, quantity);
}

/// what: resource id, account, security, exchange, trader.
VariantRecord wanted(const QString &what, const QVariant &quantity)
{
    VariantRecord row = Rows::ofSecurity(what.section(' ', 1, 1), what.section(' ', 2, 3));
    row.insert(ResourceId, what.section(' ', 0, 0));
    row.insert(T0TraderId, what.section(' ', 4));
    row.insert(PoolTotalQty, quantity);
    return row;
}

/// What a caller must know of something that exists.
VariantRecord byId(const QString &resourceId, const QVariant &quantity = 0)
{
    return {{ResourceId, resourceId}, {ResourceQty, quantity}};
}

RecordList poolIds(const QStringList &ids)
{
    RecordList rows;
    for (const QString &id : ids)
        rows.append({{PoolDetailId, id}});
    return rows;
}

void addColumns(const char *expected)
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<RecordList>("rows");
    QTest::addColumn<QStringList>(expected);
}

void newRow(const char *rule, const QString &operation, const RecordList &rows, const QStringList &expected)
{
    QTest::newRow(rule) << operation << rows << expected;
}

} // namespace

/// The desk: resource r1 of A1 holds 100, 30 with t2 and 20 public; r2 of A2 is a bond (display factor 10), 120
/// with 15 at u1; r3 of A1 is given away whole; r4 belongs to "A%2", an account that is not enabled.
class ChangesTest : public LogicTest
{
    Q_OBJECT

private slots:
    void refuses_data();
    void refuses();
    void sends_data();
    void sends();
    void asksAgain_data();
    void asksAgain();
    void oneOfSeveralRequests_data();
    void oneOfSeveralRequests();
    void poolsNeverExceedTheirResource();
    void deletedResourceIsGoneAtOnce();
    void deletedResourceStaysGone();
    void productsAreInForceAtReturn();

private:
    void startDesk();
    QString change(const QString &operation, const RecordList &rows, QString &errorText);
};

void ChangesTest::startDesk()
{
    close();
    desk.accounts.append({"A%2", "P9", "Cash", {"elsewhere"}});
    open(Mode::ByHand);
    start({resource("r1", "A1", "600000 SH", 100), resource("r2", "A2", "110001 SH", 12),
           resource("r3", "A1", "300001 SZ", 1234567)},
          {pool("p1", "A1", "600000 SH", "t2", 30, "r1"), pool("p2", "A1", "600000 SH", "public", 20, "r1"),
           pool("p3", "A2", "110001 SH", "u1", 1.5, "r2"), pool("p4", "A1", "300001 SZ", "u1", 1234567, "r3")});
    answerResources("A%2", {resource("r4", "A%2", "600000 SH", 10)});
    takeEvents();
}

QString ChangesTest::change(const QString &operation, const RecordList &rows, QString &errorText)
{
    if (operation == "add" || operation == "cover")
        return hub->AddT0Resource(rows, operation == "cover", errorText);
    if (operation == "alter")
        return hub->AlterT0Resource(rows.value(0), errorText);
    if (operation == "delete")
        return hub->DeleteT0Resource(rows, errorText);
    if (operation == "public")
        return hub->AllocatePublicResource(rows, errorText);
    if (operation == "traders")
        return hub->AllocateResourceToTrader(rows, errorText);
    if (operation == "add pools" || operation == "cover pools")
        return hub->AddSecurityPoolAndResource(rows, operation == "cover pools", errorText);
    QStringList ids;
    for (const VariantRecord &row : rows)
        ids.append(row.value(PoolDetailId).toString());
    return hub->DeleteSecurityPoolsByIdList(ids, errorText);
}

/// What random changes against a gateway meet too seldom: which check comes first, and odd numbers.
void ChangesTest::refuses_data()
{
    addColumns("text");
    newRow("no account, looked at first", "add", {stock("", "999999 SH", 15)}, {"账号数据为空"});
    newRow("the account before the security", "cover", {stock("A%2", "999999 SH", 1)}, {"账号text of A%2未选为T0产品"});
    newRow("checked though it sets nothing aside", "add",
           {stock("A1", "600000 SH", 0), stock("A1", "110001 SH", "-15.0")},
           {"第2行数据检查到错误：标的110001.SH的资源数量必须是10的整数倍，请重新填写！"});
    newRow("nothing is set aside", "add", {stock("A1", "600000 SH", 1e-11), stock("A1", "110001 SH", qQNaN())},
           {"没有可添加的资源数据"});
    newRow("the account before the trader", "add pools", {wanted("- A9 600000 SH t9", 1)}, {"账号数据不合法"});
    newRow("the trader before the quantity; without the prefix of refused requests", "add pools",
           {wanted("- A1 600000 SH t2", 1), wanted("- A1 110001 SH t9", 15)}, {"第2行数据检查到错误：交易员ID不存在"});
    newRow("one below what is allocated, looked at before multiples", "alter", {byId("r2", 14)},
           {"修改后的数量不能小于已分配数量15，请重新填写或修改券池后重新尝试"});
    newRow("a large quantity is written in full", "alter", {byId("r3", qQNaN())},
           {"修改后的数量不能小于已分配数量1234567，请重新填写或修改券池后重新尝试"});
    newRow("for traders multiples of all rows first", "traders",
           {wanted("r1 A1 600000 SH t2", 81), wanted("r2 A2 110001 SH u1", 15)},
           {"第2行数据检查到错误：标的110001.SH的券池数量必须是10的整数倍，请重新填写！"});
}

void ChangesTest::refuses()
{
    QFETCH(QString, operation);
    QFETCH(RecordList, rows);
    startDesk();
    QString errorText;
    QCOMPARE(change(operation, rows, errorText), Rows::Fail);
    QTEST(QStringList(errorText), "text");
    QCOMPARE(server->takeChanges(), QStringList());
}

void ChangesTest::sends_data()
{
    addColumns("changes");
    const VariantRecord bond = wanted("r2 A2 110001 SH public", 50);
    VariantRecord withLimit = wanted("- A1 600000 SH t2", -30);
    withLimit.insert(MaxExposureQty, 9);
    newRow("resources by account, in server units where they are whole numbers, without those of nothing", "add",
           {stock("A2", "110001 SH", "120.0"), stock("A2", "110001 SH", 120.0), stock("A1", "600000 SH", "100.0"),
            stock("A1", "600000 SH", 0), stock("A1", "110001 SH", 5e9)},
           {"AddManualT0ResourceRequest addType=Append loginUserId=u1 subGroupNumber=2",
            "  ResourceId= ResourceQty=100.0 securityExchange=SH securityID=600000 tradingAccount=A1",
            "  ResourceId= ResourceQty=500000000 securityExchange=SH securityID=110001 tradingAccount=A1",
            "AddManualT0ResourceRequest addType=Append loginUserId=u1 subGroupNumber=2",
            "  ResourceId= ResourceQty=120.0 securityExchange=SH securityID=110001 tradingAccount=A2",
            "  ResourceId= ResourceQty=12 securityExchange=SH securityID=110001 tradingAccount=A2"});
    newRow("an alteration holds what the caller wrote", "alter", {byId("r2", 150)},
           {"AlterManualT0ResourceRequest loginUserId=u1 subGroupNumber=1", "  ResourceId=r2 ResourceQty=15"});
    newRow("deletions hold ids only", "delete", {resource("r1", "A1", "600000 SH", 100), byId("r2")},
           {"DeleteManualT0ResourceRequest loginUserId=u1 subGroupNumber=2", "  ResourceId=r1", "  ResourceId=r2"});
    newRow("no deletions", "delete", {}, {"DeleteManualT0ResourceRequest loginUserId=u1 subGroupNumber=0"});
    newRow("public pools by resource; two of one are the server's to refuse", "public",
           {bond, pool("", "A1", "600000 SH", "t2", 70, "r1"), bond},
           {"AllocateManualT0SecurityPoolRequest PoolType=0 ResourceId=r1 addType=Cover loginUserId=u1 "
            "subGroupNumber=1",
            "  PoolTotalQty=70 PoolType=0 T0TraderId=public securityExchange=SH securityID=600000",
            "AllocateManualT0SecurityPoolRequest PoolType=0 ResourceId=r2 addType=Cover loginUserId=u1 "
            "subGroupNumber=2",
            "  PoolTotalQty=5 PoolType=0 T0TraderId=public securityExchange=SH securityID=110001",
            "  PoolTotalQty=5 PoolType=0 T0TraderId=public securityExchange=SH securityID=110001"});
    newRow("an id given twice", "delete pools", poolIds({"p1", "p3", "p1"}),
           {"DeleteManualT0SecurityPoolRequest loginUserId=u1", "  PoolDetailId=p1", "  PoolDetailId=p3",
            "  PoolDetailId=p1"});
    newRow("new pools by account, with all the caller wrote; a negative one is the server's to refuse", "add pools",
           {bond, withLimit, wanted("- A1 110001 SH public", 20)},
           {"AddManualT0ResourceAndPoolRequest PoolType=1 addType=Append loginUserId=u1 tradingAccount=A1",
            "  MaxExposureQty=9 PoolTotalQty=-30 PoolType=1 ResourceId=- T0TraderId=t2 securityExchange=SH "
            "securityID=600000 tradingAccount=A1",
            "  PoolTotalQty=2 PoolType=0 ResourceId=- T0TraderId=public securityExchange=SH "
            "securityID=110001 tradingAccount=A1",
            "AddManualT0ResourceAndPoolRequest PoolType=0 addType=Append loginUserId=u1 tradingAccount=A2",
            "  PoolTotalQty=5 PoolType=0 ResourceId=r2 T0TraderId=public securityExchange=SH "
            "securityID=110001 tradingAccount=A2"});
}

void ChangesTest::sends()
{
    QFETCH(QString, operation);
    QFETCH(RecordList, rows);
    startDesk();
    QString errorText;
    QCOMPARE(change(operation, rows, errorText), Rows::Success);
    QCOMPARE(errorText, QString());
    QTEST(server->takeChanges(), "changes");
    takeAsked();
    answerPools("A1", {});
    answerPools("A2", {});
    takeEvents();
}

void ChangesTest::asksAgain_data()
{
    addColumns("asked"); // after success, refusal and time-out
    const RecordList stocks{stock("A1", "600000 SH", 1), stock("A1", "300001 SZ", 1)};
    const RecordList pools{wanted("r1 A1 600000 SH t2", 1), wanted("r1 A1 600000 SH u1", 1)};
    newRow("add", "add", stocks, {"resources A1", "", "resources A1"});
    newRow("alter", "alter", {byId("r1", 100)}, {"resources A1", "", "resources A1"});
    newRow("delete", "delete", {byId("r2"), byId("r1"), byId("r3")},
           {"pools A2,pools A1", "", "resources A2,resources A1"});
    newRow("public", "public", pools, {"pools A1", "pools A1", "pools A1"});
    newRow("traders", "traders", pools, {"pools A1", "pools A1", "pools A1"});
    newRow("delete pools", "delete pools", poolIds({"p3", "p1", "p2"}),
           {"pools A2,pools A1", "pools A2,pools A1", "pools A2,pools A1"});
    newRow("add pools", "add pools", pools, {"resources A1,pools A1", "", "resources A1,pools A1"});
}

void ChangesTest::asksAgain()
{
    QFETCH(QString, operation);
    QFETCH(RecordList, rows);
    QFETCH(QStringList, asked);
    const QString prefix = operation == "add pools" ? "添加券池时错误：" : "";
    startDesk();
    const auto ends = [&](const QString &outcome, const QString &code, const QString &text, const QString &queries) {
        server->answerNext(requestOf().value(operation), outcome);
        QString errorText;
        QCOMPARE(change(operation, rows, errorText), code);
        QCOMPARE(errorText, text);
        QCOMPARE(takeAsked().join(','), queries);
        QCOMPARE(server->takeChanges().filter("Request").size(), 1);
    };
    ends("%1 no", Rows::Fail, prefix + "%1 no", asked[1]);
    ends(Timeout, operation.startsWith("delete") ? Timeout : Rows::Fail, prefix + TimeoutText, asked[2]);
    QCOMPARE(hub->GetAllResourceList().size(), 4); // what may have failed is not forgotten
    ends(Rows::Success, Rows::Success, QString(), asked[0]);
    answerPools("A1", {});
    answerPools("A2", {});
    takeEvents();
}

void ChangesTest::oneOfSeveralRequests_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("outcomes"); // of A1, A2, A3
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("asked");
    const QStringList mixed{Rows::Success, "no", Timeout};
    const QString partly = Master_Values::RequestExeStatus::ParticalFail;
    QTest::newRow("resources") << "add" << mixed << partly << "no," + TimeoutText << "resources A1,resources A3";
    QTest::newRow("no resources") << "add" << QStringList{"%1", "no %2", Timeout} << Rows::Fail
                                  << "%1,no %2," + TimeoutText << "resources A3";
    QTest::newRow("pools with their resources")
        << "cover pools" << mixed << partly << QString("添加券池时错误：") + "no," + TimeoutText
        << "resources A1,pools A1,resources A3,pools A3";
    QTest::newRow("public pools") << "public" << mixed << partly << TimeoutText << "pools A1,pools A2,pools A3";
    QTest::newRow("private pools; a later success keeps the text")
        << "traders" << QStringList{"no", Rows::Success, Rows::Success} << partly << "no"
        << "pools A1,pools A2,pools A3";
}

void ChangesTest::oneOfSeveralRequests()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, outcomes);
    startDesk();
    answerResources("A3", {resource("r5", "A3", "600000 SH", 100)});
    takeEvents();
    RecordList rows;
    for (const char *what : {"r1 A1 600000 SH t2", "r2 A2 110001 SH t2", "r5 A3 600000 SH t2"}) {
        rows.append(wanted(what, 10));
        rows.last().insert(ResourceQty, 10);
    }
    for (const QString &outcome : qAsConst(outcomes))
        server->answerNext(requestOf().value(operation), outcome);
    QString errorText;
    QTEST(change(operation, rows, errorText), "code");
    QTEST(errorText, "text");
    QTEST(takeAsked().join(','), "asked");
    QCOMPARE(server->takeChanges().filter("Request").size(), 3);
}

void ChangesTest::poolsNeverExceedTheirResource()
{
    std::mt19937 engine(1);
    const auto upTo = [&engine](int limit) { return int(engine() % unsigned(limit)); };
    startDesk();
    for (int round = 0; round < 300; ++round) {
        // In tenths, which doubles do not hold exactly: 0.1 + 0.2 and 0.3 are the same to a user.
        const int held = upTo(100);
        const QVector<int> ofTraders{upTo(30), upTo(30)};
        const int isPublic = upTo(40);
        const int isPrivate = ofTraders[0] + ofTraders[1];
        answerResources("A1", {resource("r", "A1", "600000 SH", held * 0.1)});
        answerPools("A1", {pool("a", "A1", "600000 SH", "u1", ofTraders[0] * 0.1, "r"),
                           pool("b", "A1", "600000 SH", "t2", ofTraders[1] * 0.1, "r"),
                           pool("c", "A1", "600000 SH", "public", isPublic * 0.1, "r")});
        int accepted = 0;
        const auto check = [&](const QString &operation, const VariantRecord &row, bool fits) {
            QString errorText;
            QCOMPARE(change(operation, {row}, errorText), fits ? Rows::Success : Rows::Fail);
            accepted += fits;
        };
        for (int more : {0, 1}) { // the border and beyond it
            const int forPublic = qMax(0, held - isPrivate) / 10 + more;
            const int forTraders = qMax(0, held - isPublic) / 10 + more;
            const int altered = (isPrivate + isPublic) / 10 + more;
            check("public", wanted("r A1 600000 SH", forPublic), forPublic * 10 + isPrivate <= held);
            check("traders", wanted("r A1 600000 SH u1", forTraders), forTraders * 10 + isPublic <= held);
            check("alter", byId("r", altered), isPrivate + isPublic <= altered * 10);
        }
        QCOMPARE(server->takeChanges().filter("Request").size(), accepted);
    }
    takeAsked();
    takeEvents();
}

void ChangesTest::deletedResourceIsGoneAtOnce()
{
    startDesk();
    const RecordList pools{pool("p1", "A1", "600000 SH", "t2", 30, "r1"),
                           pool("p2", "A1", "600000 SH", "public", 20, "r1")};
    answerPools("A1", pools); // from here on the indexes are no longer built anew
    QString errorText;
    QCOMPARE(hub->DeleteT0Resource({byId("r1")}, errorText), Rows::Success); // neither account nor symbol
    QCOMPARE(Rows::texts(hub->GetAllResourceList(), ResourceId), QStringList({"r2", "r3", "r4"}));
    QVERIFY(hub->GetResourceByProductAccount({"P1"}, "", "600000.SH", "", {}).isEmpty());
    QVERIFY(hub->GetSecurityPoolDetailByResourceId("r1", 3).isEmpty());
    QCOMPARE(hub->GetSecurityPoolDetailByIdList({"p1", "p2"}).size(), 2);

    answerPools("A1", {pools.first()}); // the server still has one
    QCOMPARE(Rows::texts(hub->GetSecurityPoolDetailByResourceId("r1", 3), PoolDetailId), QStringList("p1"));
    QVERIFY(hub->GetSecurityPoolDetailById("p2").isEmpty());
    QCOMPARE(takeAsked(), QStringList("pools A1"));
    server->takeChanges();
    takeEvents();
}

/// Answers that were computed before the deletion come after it; only when none is under way can it not be listed.
void ChangesTest::deletedResourceStaysGone()
{
    startDesk();
    QString errorText;
    for (int quantity : {200, 300})
        QCOMPARE(hub->AlterT0Resource(byId("r1", quantity), errorText), Rows::Success);
    QCOMPARE(hub->DeleteT0Resource({byId("r1")}, errorText), Rows::Success);
    const RecordList old{resource("r1", "A1", "600000 SH", 200), resource("r2", "A1", "110001 SH", 1)};
    for (int i = 0; i < 2; ++i) {
        answerResources("A1", old);
        QVERIFY(hub->GetResourceDetailById("r1").isEmpty());
        QVERIFY(!hub->GetResourceDetailById("r2").isEmpty());
    }
    answerResources("A1", old); // asked for after the deletion: the server has it again
    QVERIFY(!hub->GetResourceDetailById("r1").isEmpty());
    answerPools("A1", {});
    takeAsked();
    server->takeChanges();
    takeEvents();
}

void ChangesTest::productsAreInForceAtReturn()
{
    start({resource("r1", "A1", "600000 SH", 100)});
    QString errorText("untouched");
    QCOMPARE(hub->AlterT0ProductAccount({{"P1", {"cash", "Credit"}}, {"P9", {"Cash"}}}, errorText), Rows::Success);
    const QMap<QString, QStringList> enabled{{"P1", {"Credit"}}}; // in the wrong case it is another property
    QCOMPARE(hub->GetAllT0ProductAccount(), enabled);
    QCOMPARE(hub->GetAllT0TradingAccountList(), QStringList("A3"));
    QVERIFY(rawEvents.isEmpty());
    QCOMPARE(errorText, QString("untouched"));
    QCOMPARE(server->takeChanges(), QStringList({"AlterManualT0ProductsRequest loginUserId=u1",
                                                 "  alterType=Delete productAccount=P1 tradingAccount=A1",
                                                 "  alterType=Delete productAccount=P1 tradingAccount=A2",
                                                 "  alterType=Add productAccount=P1 tradingAccount=A3",
                                                 "  alterType=Delete productAccount=P2 tradingAccount=A4"}));
    QCOMPARE(takeAsked(), QStringList({"resources A3", "pools A3"}));
    QVERIFY(hub->GetAllResourceList().isEmpty());

    const auto ends = [&](const QString &outcome, const QString &code, const QString &text) {
        server->answerNext(AlterManualT0ProductsRequest, outcome);
        QCOMPARE(hub->AlterT0ProductAccount({}, errorText), code);
        QCOMPARE(errorText, text);
        QCOMPARE(server->takeChanges().filter("alterType=Delete").size(), 4);
    };
    ends("no", Rows::Fail, "no");
    QCOMPARE(takeAsked(), QStringList());
    ends(Timeout, Timeout, TimeoutText);
    QCOMPARE(takeAsked(), QStringList("products"));
    QCOMPARE(hub->GetAllT0ProductAccount(), enabled); // known once the answer comes
    QCOMPARE(takeEvents(), QStringList("inited 0"));
    ends(Rows::Success, Rows::Success, TimeoutText);
    QVERIFY(hub->GetAllT0ProductAccount().isEmpty());
    QCOMPARE(takeEvents(), QStringList({"inited 0", "inited 2", "inited 3"}));
    // Answers still on their way may be from before, and the oldest may come last.
    const QStringList asked("products");
    QCOMPARE(takeAsked(), QStringList());
    hub->RefreshDataByType(ManualT0Logic::Products);
    QCOMPARE(takeAsked(), asked);
    answerProducts({});
    QCOMPARE(takeAsked(), QStringList());
    answerProducts({Rows::product("P1", "A1")});
    QCOMPARE(takeAsked().filter("products"), asked);
    answerProducts({});
    QCOMPARE(takeAsked(), QStringList());
    takeEvents();
}

T0_REGISTER_TEST(ChangesTest)

#include "tst_Changes.moc"
