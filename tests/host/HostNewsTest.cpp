#include "HostNews.h"
#include "BusinessDataInterface.h"
#include "HostSession.h"
#include "MasterBusinessDataInterface.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtTest/QtTest>

namespace {

using Outcome = MessageChannel::Outcome;

VariantRecord order(const char *id, const char *status, const char *time = "2026-01-05 09:31:00")
{
    return {{"orderID", id}, {"orderStatus", status}, {"filledQty", 0}, {"orderTime", time}, {"updateTime", time}};
}

VariantRecord fill(const char *id, const char *time = "2026-01-05 09:31:00")
{
    return {{"fillID", id}, {"fillTime", time}};
}

template <typename Row> QStringList texts(const QList<Row> &rows, const QString &field)
{
    QStringList found;
    for (const VariantRecord &row : rows)
        found.append(row.value(field).toString());
    return found;
}

} // namespace

class HostNewsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_session = ScriptedReference().open(m_channel);
        QVERIFY(m_session);
        m_session->news().deliver();
    }
    void cleanup() { m_session.reset(); }

    void whatCameTogetherIsSignalledOnce();
    void aNewDayTakesTheNewsOfTheOldOne();
    void requestsTellHowTheyEnded();
    void aClosedConnectionIsNoticed();

private:
    std::unique_ptr<HostSession> m_session;
    ScriptedChannel *m_channel = nullptr;
};

void HostNewsTest::whatCameTogetherIsSignalledOnce()
{
    HostNews &news = m_session->news();
    QSignalSpy quotes(&news, &HostNews::quotesChanged);
    QSignalSpy positions(&news, &HostNews::positionsChanged);
    QList<RecordList> orders;
    QList<RecordList> fills;
    connect(&news, &HostNews::ordersChanged, this, [&](const RecordList &rows) { orders.append(rows); });
    connect(&news, &HostNews::fillsCame, this, [&](const RecordList &rows) { fills.append(rows); });

    for (const char *symbol : {"b", "a", "b"})
        m_channel->push(Stand_MsgType::QuotePush, {{"symbol", symbol}, {"lastPrice", 1.0}});
    m_channel->push(Stand_MsgType::PositionPush, {{"tradingAccount", "T1"}, {"securityID", "1"}});
    for (const VariantRecord &row : {order("O1", "Accepted"), order("O2", "Accepted"), order("O1", "Cancelled"),
                                     order("O1", "Accepted")}) // overtaken by its own end
        m_channel->push(Stand_MsgType::OrderPush, row);
    for (const VariantRecord &row : {fill("F2"), fill("F2"), fill("F1")})
        m_channel->push(Stand_MsgType::FillPush, row);
    while (BusinessDataInterface::GetFillList({}).size() < 2) // all is handed in, and no event has run
        QThread::yieldCurrentThread();
    news.deliver();

    QCOMPARE(quotes.size(), 1);
    QCOMPARE(quotes.first().first().toStringList(), QStringList({"a", "b"}));
    QCOMPARE(positions.size(), 1);
    QCOMPARE(positions.first().first().toStringList(), QStringList("T1"));
    QCOMPARE(orders.size(), 1);
    QCOMPARE(texts(orders.first(), "orderStatus"), QStringList({"Cancelled", "Accepted"}));
    QCOMPARE(fills.size(), 1);
    QCOMPARE(texts(fills.first(), "fillID"), QStringList({"F2", "F1"}));
}

void HostNewsTest::aNewDayTakesTheNewsOfTheOldOne()
{
    HostNews &news = m_session->news();
    const auto market = [&](const char *time) { m_channel->push(Stand_MsgType::MarketPush, {{"marketTime", time}}); };
    market("2026-01-05 15:00:00");
    QVERIFY(m_session->settle(20000));
    QStringList heard;
    connect(&news, &HostNews::dayBegan, this, [&](const QString &day) { heard.append(day); });
    connect(&news, &HostNews::ordersChanged, this,
            [&](const RecordList &rows) { heard.append(texts(rows, "orderID").join(",")); });
    m_channel->push(Stand_MsgType::OrderPush, order("old", "Expired"));
    market("2026-01-06 09:00:00");
    m_channel->push(Stand_MsgType::OrderPush, order("new", "Accepted", "2026-01-06 09:31:00"));
    QVERIFY(m_session->settle(20000));
    QTRY_VERIFY(heard.contains("new"));
    QCOMPARE(heard.mid(heard.indexOf("2026-01-06")), QStringList({"2026-01-06", "new"}));
}

void HostNewsTest::requestsTellHowTheyEnded()
{
    QVector<FinishedRequest> heard;
    connect(&m_session->news(), &HostNews::requestsFinished, this,
            [&](const QVector<FinishedRequest> &requests) { heard += requests; });
    m_channel->next("good", ScriptedChannel::success({}));
    m_channel->nextTimesOut("late");
    m_channel->nextIsNotSent("unsent");
    QString errorText;
    VariantRecord values;
    RecordList rows;
    for (const char *type : {"good", "late", "unsent"})
        m_session->request(type, {}, {}, errorText, values, rows);
    m_session->news().deliver();
    QCOMPARE(heard.size(), 3);
    const QVector<Outcome> outcomes{Outcome::Answered, Outcome::TimedOut, Outcome::NotSent};
    for (int i = 0; i < outcomes.size(); ++i)
        QCOMPARE(int(heard.at(i).outcome), int(outcomes.at(i)));
    QCOMPARE(m_session->news().requests().last().msgType, QStringLiteral("unsent"));
    QCOMPARE(m_session->news().requests().first().msgType, Stand_MsgType::LoginRequest);
}

void HostNewsTest::aClosedConnectionIsNoticed()
{
    QSignalSpy changed(&m_session->news(), &HostNews::connectionChanged);
    m_session->channel().close();
    QTRY_COMPARE(changed.size(), 1);
}

T0_REGISTER_TEST(HostNewsTest)
#include "HostNewsTest.moc"
