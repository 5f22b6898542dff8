#include "MasterUtils.h"
#include "HostSession.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "Tests.h"

#include <QtTest/QtTest>

namespace {

const char *const type = "Query";

/// A server of rows 0 to total - 1 that pages by number or by position, the first number that is not sent.
ScriptedChannel::Answer paged(int total)
{
    return [total](const MessageBody &request) {
        using namespace Stand_Fields::Paging;
        const int size = request.values.value(pageSize).toInt();
        const int from = request.values.contains(pageIndex) ? request.values.value(pageIndex).toInt() * size
                                                            : request.values.value(position).toInt();
        const int to = qMin(total, from + size);
        RecordList rows;
        for (int i = from; i < to; ++i)
            rows.append({{"n", i}});
        return ScriptedChannel::success(
            rows, {{hasMore, to < total}, {position, to < total ? QString::number(to) : QString()}});
    };
}

bool isCountedUp(const RecordList &rows)
{
    for (int i = 0; i < rows.size(); ++i) {
        if (rows.at(i).value("n").toInt() != i)
            return false;
    }
    return true;
}

} // namespace

class MasterUtilsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { session = ScriptedReference{}.open(channel); }
    void cleanup()
    {
        QCOMPARE(channel->unexpected(), QStringList());
        session.reset();
    }

    void pagesUntilTheEnd_data();
    void pagesUntilTheEnd();
    void firstPageAndPageCountAreKept();
    void positionThatStandsStillEndsTheQuery();
    void errorTexts_data();
    void errorTexts();
    void withoutSessionNothingComes();

private:
    ScriptedChannel *channel = nullptr;
    std::unique_ptr<HostSession> session;
};

void MasterUtilsTest::pagesUntilTheEnd_data()
{
    QTest::addColumn<int>("total");
    QTest::addColumn<int>("requests");
    QTest::newRow("nothing") << 0 << 1;
    QTest::newRow("exactly one page") << 1000 << 1;
    QTest::newRow("one more than a page") << 1001 << 2;
    QTest::newRow("exactly two pages") << 2000 << 2;
}

void MasterUtilsTest::pagesUntilTheEnd()
{
    QFETCH(int, total);
    QFETCH(int, requests);
    QString errorText;
    channel->always(type, paged(total));
    RecordList rows =
        MasterUtils::QueryDatasFromServerByPos(nullptr, type, {{"account", "A1"}}, errorText, 1000, {}, 0);
    QCOMPARE(rows.size(), total);
    QVERIFY(isCountedUp(rows));
    QCOMPARE(channel->count(type), requests);
    const LoadProgress progress = session->loadProgress(type);
    QCOMPARE(progress.requests, 1);
    QCOMPARE(progress.running, 0);
    QCOMPARE(progress.rows, qint64(total));

    rows = MasterUtils::QueryDatasFromServerByPage(nullptr, type, {{"account", "A1"}}, errorText, 1000, 0, 0, 0);
    QCOMPARE(rows.size(), total);
    QVERIFY(isCountedUp(rows));
    const QList<ScriptedChannel::Request> sent = channel->requests(type);
    QCOMPARE(sent.size(), 2 * requests);
    for (const ScriptedChannel::Request &request : sent) {
        const RecordList query = {{{"account", "A1"}}};
        QCOMPARE(request.body.rows, query);
        QCOMPARE(request.envelope.sender, QStringLiteral("u1"));
    }
    QCOMPARE(errorText, QString());
}

void MasterUtilsTest::firstPageAndPageCountAreKept()
{
    QString errorText;
    channel->always(type, paged(100));
    const RecordList rows = MasterUtils::QueryDatasFromServerByPage(nullptr, type, {}, errorText, 10, 3, 2, 0);
    QCOMPARE(rows.size(), 20);
    QCOMPARE(rows.first().value("n").toInt(), 30);
    QCOMPARE(errorText, QString());
}

void MasterUtilsTest::positionThatStandsStillEndsTheQuery()
{
    QString errorText;
    channel->always(type, [](const MessageBody &) {
        return ScriptedChannel::success({{{"n", 0}}}, {{Stand_Fields::Paging::position, "same"}});
    });
    QCOMPARE(MasterUtils::QueryDatasFromServerByPos(nullptr, type, {}, errorText, 1000, {}, 0).size(), 1);
    QCOMPARE(errorText, QStringLiteral("服务器分页应答没有前进，查询已中止"));
    QCOMPARE(channel->count(type), 2);

    channel->always(type, [](const MessageBody &) {
        return ScriptedChannel::success({}, {{Stand_Fields::Paging::hasMore, true}});
    });
    errorText.clear();
    MasterUtils::QueryDatasFromServerByPage(nullptr, type, {}, errorText, 1000, 0, 0, 0);
    QCOMPARE(errorText, QStringLiteral("服务器分页应答没有前进，查询已中止"));
}

void MasterUtilsTest::errorTexts_data()
{
    QTest::addColumn<QVariantMap>("values");
    QTest::addColumn<QString>("text");
    QTest::newRow("the server's text") << QVariantMap{{"requestExeStatus", "fail"}, {"textDescription", "无权限"}}
                                       << "无权限";
    QTest::newRow("only a status") << QVariantMap{{"requestExeStatus", "ParticalFail"}} << "ParticalFail";
    QTest::newRow("success leaves it alone") << QVariantMap{{"requestExeStatus", "success"}} << "before";
    QTest::newRow("no status") << QVariantMap() << "服务器应答缺少处理结果";
}

void MasterUtilsTest::errorTexts()
{
    QFETCH(QVariantMap, values);
    QFETCH(QString, text);
    QString errorText = QStringLiteral("before");
    channel->next(type, {values, {{{"n", 1}}}});
    QCOMPARE(MasterUtils::QueryDatasFromServer(nullptr, type, {}, Mode1, errorText).size(), 1);
    QCOMPARE(errorText, text);
    QVERIFY(!channel->requests(type).first().body.values.contains(Stand_Fields::Paging::pageSize));
}

void MasterUtilsTest::withoutSessionNothingComes()
{
    channel->nextIsNotSent(type);
    QString errorText;
    QVERIFY(MasterUtils::QueryDatasFromServer(nullptr, type, {}, Mode0, errorText).isEmpty());
    QCOMPARE(errorText, QStringLiteral("请求未发送，与服务器的连接已断开"));
    session.reset();
    errorText.clear();
    QVERIFY(MasterUtils::QueryDatasFromServer(nullptr, type, {}, Mode0, errorText).isEmpty());
    QCOMPARE(errorText, QStringLiteral("请求未发送，与服务器的连接已断开"));
    session = ScriptedReference{}.open(channel);
}

T0_REGISTER_TEST(MasterUtilsTest)
#include "MasterUtilsTest.moc"
