#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Store.h"
#include "TestBooks.h"
#include "TestClient.h"
#include "Tests.h"

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <limits>

namespace {

namespace Safety_ = Stand_Fields::Safety;
namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;
using Master_Fields::System::addType;
using Master_Fields::System::alterType;
using Orvane_Fields::Security::securityID;

/// A good request of each type, for tests that spoil one field of it. Resource R…1 (600000) has a pool P…1 of 1000
/// for t1, who holds 200 open there, R…2 (600001, counted by tens) a public pool P…2; both resources hold 3000.
struct Sample {
    QString type;
    VariantRecord header;
    RecordList rows;
};

Sample sampleOf(const QString &type)
{
    const VariantRecord security{
        {UserAccount_::tradingAccount, "A1"}, {securityID, "600002"}, {UserAccount_::securityExchange, "SH"}};
    VariantRecord resource = security;
    resource.insert(T0_::ResourceQty, 7);
    VariantRecord pool{{T0_::T0TraderId, "t2"}, {T0_::PoolType, 1}, {T0_::PoolTotalQty, 9}};
    for (auto field = security.cbegin(); field != security.cend(); ++field)
        pool.insert(field.key(), *field);
    VariantRecord ofTens = pool;
    ofTens.insert(securityID, "600001");
    const VariantRecord cover{{addType, "Cover"}, {UserAccount_::tradingAccount, "A1"}};
    const VariantRecord onResource{{addType, "Cover"}, {T0_::ResourceId, "R000000002"}, {T0_::PoolType, 1}};
    const VariantRecord product{
        {UserAccount_::productAccount, "P2"}, {UserAccount_::tradingAccount, "A2"}, {alterType, "Delete"}};
    const QVector<Sample> samples{
        {Master_MsgType::AlterManualT0ProductsRequest, {}, {product}},
        {Master_MsgType::AddManualT0ResourceRequest, cover, {resource}},
        {Master_MsgType::AlterManualT0ResourceRequest,
         {},
         {{{T0_::ResourceId, "R000000002"}, {T0_::ResourceQty, 299}}}},
        {Master_MsgType::DeleteManualT0ResourceRequest, {}, {{{T0_::ResourceId, "R000000002"}}}},
        {Master_MsgType::AllocateManualT0SecurityPoolRequest, onResource, {ofTens}},
        {Master_MsgType::AlterManualT0SecurityPoolRequest,
         {},
         {{{T0_::PoolDetailId, "P000000001"}, {T0_::PoolTotalQty, 5}}}},
        {Master_MsgType::DeleteManualT0SecurityPoolRequest, {}, {{{T0_::PoolDetailId, "P000000001"}}}},
        {Master_MsgType::AddManualT0ResourceAndPoolRequest, cover, {pool}},
        {Stand_MsgType::AlterSafetyRulesRequest,
         {},
         {{{T0_::T0TraderId, "t1"},
           {Safety_::tradeSwitch, "Halted"},
           {Safety_::ordersPerSecond, 5},
           {Safety_::cancelsPerMinute, 60},
           {Safety_::duplicateMs, 500},
           {Safety_::refuseSelfMatch, true}}}}};
    for (const Sample &sample : samples)
        if (sample.type == type)
            return sample;
    return {};
}

Books books()
{
    Books books = TestBooks::withAccounts();
    const Holding first = books.resources.at(0).holding;
    const Holding inA2{"A2", first.securityID, first.exchange};
    books.resources.append({inA2, 3000});
    books.pools = {{"t1", first, 1000, -1, -1},
                   {"public", books.resources.at(1).holding, 500, -1, -1},
                   {"t1", inA2, 1000, -1, -1}};
    books.carried = {{"t1", first, "SellOpen", 200, 1998}};
    books.users.append({"m2", "Other", "O1", {Master_Values::UserRoles::ManualT0Mangager}, {}});
    books.buildIndexes();
    return books;
}

RecordList pictureOf(TestClient &client)
{
    RecordList rows = client.ask(Master_MsgType::QueryManualT0ProductsRequest).rows;
    const VariantRecord account{{UserAccount_::tradingAccount, "A1"}};
    rows += client.all(Master_MsgType::QueryManualT0ResourceRequest, account);
    rows += client.all(Master_MsgType::QueryManualT0SecurityPoolRequest, account);
    rows += client.all(Stand_MsgType::QuerySafetyRulesRequest);
    return rows + client.all(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, {{T0_::T0TraderId, "t1,t2"}});
}

Envelope appendOf(int quantity)
{
    Sample sample = sampleOf(Master_MsgType::AddManualT0ResourceAndPoolRequest);
    sample.rows[0].insert(T0_::PoolTotalQty, quantity);
    return changeOf(sample.type, {{addType, "Append"}, {UserAccount_::tradingAccount, "A1"}}, sample.rows);
}

qint64 appended(TestClient &client)
{
    const VariantRecord account{{UserAccount_::tradingAccount, "A1"}};
    return client.all(Master_MsgType::QueryManualT0ResourceRequest, account).value(2).value(T0_::ResourceQty).toInt() -
           3000;
}

/// What was changed, each as "object field from>to"; a request that was refused as " >".
QStringList auditLines(const QString &file, const AuditFilter &filter)
{
    QStringList lines;
    const QString error = Store::readAudit(file, filter, [&lines](const AuditEntry &entry) {
        lines.append(entry.object + ' ' + entry.field + ' ' + entry.from + '>' + entry.to);
    });
    return lines + (error.isEmpty() ? QStringList() : QStringList{error});
}

} // namespace

class ChangeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void everyChangeIsPushedAndAudited_data();
    void everyChangeIsPushedAndAudited();
    void refuses_data();
    void refuses();
    void refusesPoolsThatNobodyMayHave();
    void refusesWhatOpenPositionsStandAgainst();
    void aRequestIsExecutedOnce();
    void aStoreThatFailsChangesNothing_data();
    void aStoreThatFailsChangesNothing();
    void theAuditKeepsWhoWasRefused();

private:
    QStringList m_types;
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_file;
};

void ChangeTest::initTestCase()
{
    m_types = QStringList{Master_MsgType::AlterManualT0ProductsRequest,
                          Master_MsgType::AddManualT0ResourceRequest,
                          Master_MsgType::AlterManualT0ResourceRequest,
                          Master_MsgType::DeleteManualT0ResourceRequest,
                          Master_MsgType::AllocateManualT0SecurityPoolRequest,
                          Master_MsgType::AlterManualT0SecurityPoolRequest,
                          Master_MsgType::DeleteManualT0SecurityPoolRequest,
                          Master_MsgType::AddManualT0ResourceAndPoolRequest,
                          Stand_MsgType::AlterSafetyRulesRequest};
}

void ChangeTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_file = m_dir->filePath(QStringLiteral("state"));
}

void ChangeTest::everyChangeIsPushedAndAudited_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("audit");
    QTest::addColumn<int>("records"); // of usage
    const QVector<int> records{1, 0, 0, 2, 1, 1, 1, 1, 0};
    const QStringList audits{"account enabled true>false",
                             "resource ResourceQty 3000>7",
                             "resource ResourceQty 3000>2990",
                             "pool PoolTotalQty 500>, pool MaxExposureQty -1>, pool MaxPendExposureQty -1>, "
                             "resource ResourceQty 3000>",
                             "pool PoolTotalQty >90, pool MaxExposureQty >-1, pool MaxPendExposureQty >-1",
                             "pool PoolTotalQty 1000>5",
                             "pool PoolTotalQty 1000>, pool MaxExposureQty -1>, pool MaxPendExposureQty -1>",
                             "resource ResourceQty 3000>9, pool PoolTotalQty >9, pool MaxExposureQty >-1, "
                             "pool MaxPendExposureQty >-1",
                             "safety tradeSwitch Active>Halted, safety ordersPerSecond 0>5, "
                             "safety cancelsPerMinute 0>60, safety duplicateMs 0>500, "
                             "safety refuseSelfMatch false>true"};
    for (int i = 0; i < m_types.size(); ++i)
        QTest::newRow(qPrintable(m_types.at(i))) << m_types.at(i) << audits.at(i) << records.at(i);
}

void ChangeTest::everyChangeIsPushedAndAudited()
{
    QFETCH(QString, type);
    const auto gateway = openGateway(books(), m_file);
    TestClient client(gateway, "m");
    for (const char *trader : {"t1", "t2"})
        QVERIFY(client.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, trader));
    const auto usage = [&] {
        return client.all(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, {{T0_::T0TraderId, "t1,t2"}});
    };
    const RecordList before = pictureOf(client);
    const RecordList usageBefore = usage();
    const Sample sample = sampleOf(type);
    // An empty list changes nothing, where it is not refused.
    const QString text = refusal(client.change(type, sample.header, {}));
    QVERIFY2(text.isEmpty() || text == QStringLiteral("请求没有数据行"), qPrintable(text));
    QCOMPARE(refusal(TestClient(gateway, "t1").change(type, sample.header, sample.rows)),
             QStringLiteral("用户t1不是管理员，没有权限修改"));
    QCOMPARE(pictureOf(client), before);
    QCOMPARE(refusal(client.change(type, sample.header, sample.rows)), QString());
    QVERIFY(pictureOf(client) != before);

    RecordList changed;
    for (const VariantRecord &row : usage())
        if (!usageBefore.contains(row))
            changed.append(row);
    QCOMPARE(client.pushed(), changed);
    QTEST(changed.size(), "records");
    const QString audit = auditLines(m_file, {0, "m"}).filter(QRegularExpression("^\\w")).join(", ");
    QTEST(audit, "audit");
}

void ChangeTest::refuses_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const QString products = Master_MsgType::AlterManualT0ProductsRequest;
    const QString add = Master_MsgType::AddManualT0ResourceRequest;
    const QString alter = Master_MsgType::AlterManualT0ResourceRequest;
    const QString remove = Master_MsgType::DeleteManualT0ResourceRequest;
    const QString allocate = Master_MsgType::AllocateManualT0SecurityPoolRequest;
    const QString alterPool = Master_MsgType::AlterManualT0SecurityPoolRequest;
    const QString removePool = Master_MsgType::DeleteManualT0SecurityPoolRequest;
    const QString both = Master_MsgType::AddManualT0ResourceAndPoolRequest;
    int number = 0;
    // A text without a row's number is one about the header; one about row 2 is about the sample's row sent twice,
    // the second time with this field.
    const auto row = [&number](const QString &type, const QString &field, const QVariant &value, const QString &text) {
        QTest::addRow("%d %s", ++number, qPrintable(text)) << type << field << value << text;
    };
    const QVariant none;
    row(products, UserAccount_::tradingAccount, "A%1", "第1行：账号不存在：A%1");
    row(products, UserAccount_::tradingAccount, "A1", "第1行：账号A1不属于产品P2");
    row(products, alterType, "add", "第1行：alterType应为Add或Delete：add");
    row(add, Orvane_Fields::System::subGroupNumber, 2, "subGroupNumber与数据行数1不一致");
    row(add, Orvane_Fields::System::subGroupNumber, "1", "subGroupNumber与数据行数1不一致");
    row(add, addType, none, "addType应为Cover或Append：");
    row(both, addType, "cover", "addType应为Cover或Append：cover");
    row(allocate, addType, "Append", "分配券池时addType应为Cover：Append");
    row(add, UserAccount_::tradingAccount, "a1", "第1行：账号不存在：a1");
    row(add, UserAccount_::tradingAccount, "A_1", "第1行：标识不能含有“_”或“,”：A_1");
    row(add, UserAccount_::tradingAccount, none, "第1行：缺少tradingAccount");
    row(add, UserAccount_::tradingAccount, "A3", "第1行：账号A3未选为T0账号");
    row(both, UserAccount_::tradingAccount, "A2", "第1行：一次请求只能有一个账号：A2");
    row(add, securityID, "699999", "第1行：证券不存在：699999（SH）");
    row(add, securityID, "60,1", "第1行：标识不能含有“_”或“,”：60,1");
    row(add, UserAccount_::securityExchange, "sh", "第1行：证券不存在：600002（sh）");
    row(alterPool, T0_::PoolDetailId, "P9", "第1行：券池不存在：P9");
    row(removePool, T0_::PoolDetailId, "p000000001", "第1行：券池不存在：p000000001");
    row(remove, T0_::ResourceId, "R000000009", "第1行：资源不存在：R000000009");
    row(alter, T0_::ResourceId, "P000000001", "第1行：资源不存在：P000000001");
    row(add, T0_::ResourceQty, 0, "第1行：ResourceQty应大于0");
    row(both, T0_::PoolTotalQty, 0, "第1行：PoolTotalQty应大于0");
    row(alter, T0_::ResourceQty, -1, "第1行：ResourceQty不能为负数");
    for (const QVariant &value : {QVariant("100.0"), QVariant("7"), QVariant(true), QVariant(0.5),
                                  QVariant(std::numeric_limits<double>::quiet_NaN()),
                                  QVariant(std::numeric_limits<double>::infinity()), QVariant(QVariantList{1})})
        row(add, T0_::ResourceQty, value, "第1行：ResourceQty应为整数");
    for (const QVariant &value : {QVariant(1000000001), QVariant(std::numeric_limits<qint64>::max()),
                                  QVariant(std::numeric_limits<quint64>::max()), QVariant(1e300)})
        row(add, T0_::ResourceQty, value, "第1行：ResourceQty不能超过1000000000");
    row(alter, T0_::ResourceQty, 100000001, "第1行：ResourceQty不能超过1000000000");
    row(alter, T0_::ResourceQty, 49, "第1行：资源数量不能小于已分配数量500");
    row(alterPool, T0_::PoolTotalQty, 3001, "第1行：券池数量之和3001超过资源数量3000");
    row(alterPool, T0_::MaxExposureQty, "none", "第1行：MaxExposureQty应为整数");
    row(allocate, T0_::PoolTotalQty, 251, "第1行：券池数量之和3010超过资源数量3000");
    row(allocate, T0_::PoolTotalQty, none, "第1行：缺少PoolTotalQty");
    row(allocate, securityID, "600000", "第1行：证券与资源的不一致：600000（SH）");
    row(allocate, T0_::T0TraderId, "T2", "第1行：交易员不存在：T2");
    row(allocate, T0_::T0TraderId, "m", "第1行：用户m不是交易员");
    row(allocate, T0_::T0TraderId, "public", "第1行：公共券池的PoolType应为0");
    row(allocate, T0_::PoolType, 2, "第1行：PoolType应为0或1");
    row(allocate, T0_::PoolType, "1", "第1行：PoolType应为0或1");
    row(products, alterType, "Add", "第2行：账号A2的各行互相矛盾");
    row(add, T0_::ResourceQty, 1, "第2行：证券重复：600002");
    row(add, UserAccount_::tradingAccount, "A2", "第2行：一次请求只能有一个账号：A2");
    row(alter, T0_::ResourceQty, 100, "第2行：标识重复：R000000002");
    row(alterPool, T0_::PoolTotalQty, 1, "第2行：标识重复：P000000001");
    row(allocate, T0_::PoolTotalQty, 1, "第2行：交易员重复：t2");
    row(both, T0_::PoolTotalQty, 1, "第2行：交易员重复：t2");
    row(both, UserAccount_::securityExchange, "SZ", "第2行：证券不存在：600002（SZ）");
    row(both, T0_::PoolType, 0, "第1行：交易员t2的券池的PoolType应为1");
    const QString safety = Stand_MsgType::AlterSafetyRulesRequest;
    row(safety, T0_::T0TraderId, "T1", "第1行：交易员不存在：T1");
    row(safety, T0_::T0TraderId, "m", "第1行：用户m不是交易员");
    row(safety, Safety_::tradeSwitch, "halted", "第1行：tradeSwitch应为Active、ReduceOnly、Halted之一：halted");
    row(safety, Safety_::ordersPerSecond, 1001, "第1行：ordersPerSecond不能超过1000");
    row(safety, Safety_::cancelsPerMinute, -1, "第1行：cancelsPerMinute不能为负数");
    row(safety, Safety_::duplicateMs, 0.5, "第1行：duplicateMs应为整数");
    row(safety, Safety_::refuseSelfMatch, 1, "第1行：refuseSelfMatch应为true或false");
    row(safety, T0_::T0TraderId, "t1", "第2行：交易员重复：t1");
}

void ChangeTest::refuses()
{
    QFETCH(QString, type);
    QFETCH(QString, field);
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    Sample sample = sampleOf(type);
    if (text.startsWith(QStringLiteral("第2行")))
        sample.rows.append(sample.rows[0]);
    VariantRecord &record = text.startsWith(QStringLiteral("第")) ? sample.rows.last() : sample.header;
    if (value.isValid())
        record.insert(field, value);
    else
        record.remove(field);
    TestClient client(openGateway(books()), "m");
    const RecordList before = pictureOf(client);
    QCOMPARE(refusal(client.change(type, sample.header, sample.rows)), text);
    QCOMPARE(pictureOf(client), before);
}

void ChangeTest::refusesPoolsThatNobodyMayHave()
{
    TestClient client(openGateway(books()), "m");
    Sample both = sampleOf(Master_MsgType::AddManualT0ResourceAndPoolRequest);
    const auto refused = [&](const VariantRecord &first, const VariantRecord &second) {
        RecordList rows{both.rows[0], both.rows[0]};
        for (auto field = first.cbegin(); field != first.cend(); ++field)
            rows[0].insert(field.key(), *field);
        for (auto field = second.cbegin(); field != second.cend(); ++field)
            rows[1].insert(field.key(), *field);
        return refusal(client.change(both.type, both.header, rows));
    };
    const VariantRecord common{{T0_::T0TraderId, "public"}, {T0_::PoolType, 0}};
    QCOMPARE(refused(common, common), QStringLiteral("第2行：一个资源只能有一行公共券池"));
    QCOMPARE(refused(common, {{securityID, "600000"}, {UserAccount_::securityExchange, "SZ"}}),
             QStringLiteral("第2行：账号A1不能交易市场SZ"));
    both.header.insert(UserAccount_::tradingAccount, "A2");
    both.rows[0].insert(UserAccount_::tradingAccount, "A2");
    QCOMPARE(refused(common, {}), QStringLiteral("第2行：交易员t2不能交易账号A2"));
    Sample allocation = sampleOf(Master_MsgType::AllocateManualT0SecurityPoolRequest);
    allocation.header.insert(T0_::PoolType, 0);
    QCOMPARE(refusal(client.change(allocation.type, allocation.header, allocation.rows)),
             QStringLiteral("第1行：PoolType与请求头的不一致"));
    // Each alone would fit the resource, and so would both.
    allocation.rows[0].insert(T0_::T0TraderId, "public");
    allocation.rows[0].insert(T0_::PoolType, 0);
    allocation.rows[0].insert(T0_::PoolTotalQty, 1);
    allocation.rows.append(allocation.rows[0]);
    QCOMPARE(refusal(client.change(allocation.type, allocation.header, allocation.rows)),
             QStringLiteral("第2行：一个资源只能有一行公共券池"));
    Sample oneTooMany = sampleOf(Master_MsgType::AllocateManualT0SecurityPoolRequest);
    oneTooMany.header.insert(T0_::ResourceId, "R000000003");
    oneTooMany.rows[0].insert(securityID, "600002");
    oneTooMany.rows[0].insert(T0_::PoolTotalQty, 3001);
    QCOMPARE(refusal(client.change(oneTooMany.type, oneTooMany.header, oneTooMany.rows)),
             QStringLiteral("第1行：券池数量之和3001超过资源数量3000"));
}

void ChangeTest::refusesWhatOpenPositionsStandAgainst()
{
    TestClient client(openGateway(books()), "m");
    const VariantRecord first{{T0_::ResourceId, "R000000001"}};
    const VariantRecord second{{T0_::ResourceId, "R000000002"}};
    QCOMPARE(refusal(client.change(Master_MsgType::DeleteManualT0ResourceRequest, {}, {second, first})),
             QStringLiteral("第2行：交易员t1有未平仓数量-200"));
    Sample both = sampleOf(Master_MsgType::AddManualT0ResourceAndPoolRequest);
    both.rows.append(both.rows[0]);
    both.rows[1].insert(securityID, "600000");
    QCOMPARE(refusal(client.change(both.type, both.header, both.rows)),
             QStringLiteral("第2行：交易员t1有未平仓数量-200"));
    // One who stays may have what he likes.
    both.rows[1].insert(T0_::T0TraderId, "t1");
    QCOMPARE(refusal(client.change(both.type, both.header, both.rows)), QString());
}

void ChangeTest::aRequestIsExecutedOnce()
{
    Envelope append = appendOf(10);
    Envelope late = appendOf(100);
    late.validUntil = QDateTime::currentMSecsSinceEpoch() - 1;
    const Envelope refused = appendOf(-1);
    MessageBody answer;
    RecordList left;
    {
        const auto gateway = openGateway(books(), m_file);
        TestClient client(gateway, "m");
        QVERIFY(client.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, "t2"));
        answer = client.send(append);
        QVERIFY(succeeded(answer));
        QVERIFY(client.send(append).rows == answer.rows);
        QCOMPARE(client.pushed().size(), 1);
        QCOMPARE(refusal(client.send(late)), QStringLiteral("请求已过期"));
        QVERIFY(!succeeded(client.send(refused)));
        QCOMPARE(appended(client), 10);
        // An id belongs to its user.
        TestClient other(gateway, "m2");
        QVERIFY(succeeded(other.send(append)));
        QCOMPARE(appended(client), 20);
        left = pictureOf(client);
    }
    {
        TestClient client(openGateway(books(), m_file), "m");
        QCOMPARE(pictureOf(client), left);
        append.validUntil = 0;
        QVERIFY(client.send(append).rows == answer.rows);
        // Nothing has happened before, so it is still late, not done.
        QCOMPARE(refusal(client.send(late)), QStringLiteral("请求已过期"));
        Envelope again = appendOf(1);
        again.id = refused.id;
        QCOMPARE(refusal(client.send(again)), QStringLiteral("第1行：PoolTotalQty不能为负数"));
        again.id.clear();
        QCOMPARE(refusal(client.send(again)), QStringLiteral("请求缺少编号"));
        QCOMPARE(appended(client), 20);
    }
    // Kept for thirty days after its validity, not for ever.
    const qint64 day = 24 * 60 * 60 * 1000;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    for (const qint64 ago : {29 * day, 31 * day}) {
        TestBooks::runSql(m_file, QStringLiteral("UPDATE answers SET valid_until = %1").arg(now - ago));
        TestClient client(openGateway(books(), m_file), "m");
        QVERIFY(succeeded(client.send(appendOf(1))));
        QCOMPARE(succeeded(client.send(append)), ago < 30 * day);
    }
}

void ChangeTest::aStoreThatFailsChangesNothing_data()
{
    QTest::addColumn<QString>("trap");
    QTest::newRow("in the middle")
        << "BEFORE INSERT ON audit WHEN NEW.object_id <> '' BEGIN SELECT RAISE(ABORT, 'full'); END";
    QTest::newRow("at the end") << "AFTER INSERT ON answers BEGIN INSERT INTO trap VALUES (-1); END";
}

void ChangeTest::aStoreThatFailsChangesNothing()
{
    QFETCH(QString, trap);
    openGateway(books(), m_file).reset();
    TestBooks::runSql(m_file, "CREATE TABLE trap (x REFERENCES resources (id) DEFERRABLE INITIALLY DEFERRED)");
    TestBooks::runSql(m_file, "CREATE TRIGGER fails " + trap);
    TestClient client(openGateway(books(), m_file), "m");
    for (const char *trader : {"t1", "t2"})
        QVERIFY(client.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, trader));
    QVERIFY(client.subscribe(Stand_MsgType::QuotePush, QString()));
    const RecordList quotes = client.all(Stand_MsgType::QueryQuotesRequest);
    const RecordList before = pictureOf(client);
    for (const QString &type : qAsConst(m_types)) {
        const Sample sample = sampleOf(type);
        const QString text = refusal(client.change(type, sample.header, sample.rows));
        QVERIFY2(text.startsWith(QStringLiteral("数据保存失败：")), qPrintable(type + text));
    }
    const VariantRecord quote{{Orvane_Fields::Security::symbol, "600000.SH"}, {Stand_Fields::Quote::lastPrice, 11}};
    QVERIFY(!succeeded(client.ask(Stand_MsgType::SetQuoteRequest, quote)));
    QCOMPARE(pictureOf(client), before);
    QCOMPARE(client.all(Stand_MsgType::QueryQuotesRequest), quotes);
    QCOMPARE(client.pushed(), RecordList());
}

void ChangeTest::theAuditKeepsWhoWasRefused()
{
    const qint64 began = QDateTime::currentMSecsSinceEpoch();
    const auto gateway = openGateway(books(), m_file);
    TestClient trader(gateway, "t1");
    Envelope late = appendOf(1);
    late.validUntil = 0;
    Envelope foreign = changeOf(late.type, {{UserAccount_::loginUserId, "m"}}, {});
    Envelope unreadable = appendOf(1);
    unreadable.body = "no body";
    for (const Envelope &envelope : {appendOf(1), late, foreign, unreadable})
        QVERIFY(!succeeded(trader.send(envelope)));
    QVERIFY(!succeeded(trader.ask(Stand_MsgType::SetQuoteRequest)));
    trader.ask(Master_MsgType::QueryManualT0ProductsRequest);
    const auto lines = [&](qint64 since, const QString &user) { return auditLines(m_file, {since, user}).size(); };
    QCOMPARE(lines(began, "t1"), 5);
    TestClient manager(gateway, "m");
    QVERIFY(succeeded(manager.send(appendOf(1))));
    QCOMPARE(lines(began, "m"), 4); // the resource, and three fields of the pool
    QCOMPARE(lines(0, QString()), 9);
    QCOMPARE(lines(QDateTime::currentMSecsSinceEpoch() + 60000, QString()), 0);
}

T0_REGISTER_TEST(ChangeTest)
#include "ChangeTest.moc"
