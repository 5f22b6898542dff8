#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "HostSession.h"
#include "MasterBusinessDataInterface.h"
#include "MasterUtils.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"
#include "ZrPresenterClass.h"

#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <thread>

namespace {

/// Writes down what it is told, with the thread it is told on.
class Presenter : public ZrPresenterClass
{
public:
    explicit Presenter(QStringList *log, int threadType = 15)
        : ZrPresenterClass("id", nullptr, threadType)
        , m_log(log)
    {
        Sub(pluginPid(), "Push", 1);
    }
    void onPush(const QString &srcId, const QString &msgType, const QVariant &msg) override
    {
        CUnPackMessageCommon unpacked;
        unpacked.SetUnPackMsg(msg, 0);
        write(QStringLiteral("%1 %2%3").arg(msgType, unpacked.GetRowValue().value("n").toString(), mark(srcId)));
    }
    void onResponse(int status, const QString &srcId, const QString &msgType, const QVariant &msg) override
    {
        CUnPackMessageCommon unpacked;
        unpacked.SetUnPackMsg(msg, 0);
        write(QStringLiteral("%1 status %2 rows %3%4")
                  .arg(msgType, QString::number(status), QString::number(unpacked.GetAllValue().size()), mark(srcId)));
    }
    void query()
    {
        QString errorText;
        const RecordList rows = MasterUtils::QueryDatasFromServer(this, "Query", {}, Mode0, errorText);
        write(QStringLiteral("query rows %1 %2").arg(QString::number(rows.size()), errorText).trimmed());
    }
    void post(const std::function<void()> &call) { QMetaObject::invokeMethod(this, call, Qt::QueuedConnection); }
    QStringList log()
    {
        QMutexLocker lock(&m_mutex);
        return *m_log;
    }

private:
    QString mark(const QString &srcId) const
    {
        return srcId == pluginPid() && QThread::currentThread() == thread() ? QString() : QStringLiteral(" misplaced");
    }
    void write(const QString &line)
    {
        QMutexLocker lock(&m_mutex);
        m_log->append(line);
    }

    QMutex m_mutex;
    QStringList *m_log;
};

CMessageCommon *message(const QString &pid)
{
    CPackMessageCommon pack;
    pack.AddVaule("msgType", "Async");
    pack.AddRowVaule({{"loginUserId", "u1"}});
    auto *message = new CMessageCommon;
    message->SetSrcid(pid);
    message->SetType("Async");
    message->SetMsg(pack.GetPackedMsg(0));
    return message;
}

} // namespace

class PresenterTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { session = ScriptedReference{}.open(channel); }
    void cleanup()
    {
        QCOMPARE(channel->unexpected(), QStringList());
        session.reset();
        log.clear();
    }

    void pushesWaitBehindTheRunningQuery();
    void asynchronousAnswersTellHowTheyEnded();
    void messageStaysTheCallersWhenItIsNotSent();
    void releaseCancelsTheRunningQuery();
    void pushesInFlightMeetReleasedPresenters();
    void withoutOwnThreadHandlersRunHere();
    void unreadableBytesGiveNothing();

private:
    ScriptedChannel *channel = nullptr;
    std::unique_ptr<HostSession> session;
    QStringList log;
};

void PresenterTest::pushesWaitBehindTheRunningQuery()
{
    auto *presenter = new Presenter(&log);
    channel->always("Query", [](const MessageBody &) { return ScriptedChannel::success({{{"n", 0}}}); });
    channel->hold("Query");
    presenter->post([presenter] { presenter->query(); });
    QTRY_COMPARE(channel->count("Query"), 1);
    for (int i = 0; i < 3; ++i)
        channel->push("Push", {{"n", i}});
    channel->push("Other", {{"n", 9}});

    // another caller's request does not wait for the busy presenter
    channel->next("Fast", ScriptedChannel::success());
    QString errorText;
    MasterUtils::QueryDatasFromServer(presenter, "Fast", {}, Mode0, errorText);
    QCOMPARE(errorText, QString());
    QCOMPARE(presenter->log(), QStringList());

    channel->release("Query");
    QVERIFY(session->settle(60000));
    QCOMPARE(presenter->log(), QStringList({"query rows 1", "Push 0", "Push 1", "Push 2"}));
    ZrPresenterClass::release(presenter);
}

void PresenterTest::asynchronousAnswersTellHowTheyEnded()
{
    auto *presenter = new Presenter(&log);
    channel->next("Async", ScriptedChannel::success({{{"header", 1}}, {{"n", 1}}}));
    channel->next("Async", ScriptedChannel::refusal("no"));
    channel->nextTimesOut("Async");
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(presenter->sendRequest_Async(message(presenter->pluginPid())), 0);
        QVERIFY(session->settle(60000));
    }
    QCOMPARE(presenter->log(),
             QStringList({"Async status 0 rows 2", "Async status 0 rows 0", "Async status 1 rows 0"}));
    QCOMPARE(channel->requests("Async").first().body.values.value("msgType").toString(), QStringLiteral("Async"));

    channel->hold("Async");
    channel->next("Async", ScriptedChannel::success());
    QCOMPARE(presenter->sendRequest_Async(message(presenter->pluginPid())), 0);
    session.reset();
    QTRY_COMPARE(presenter->log().last(), QStringLiteral("Async status 2 rows 0"));
    ZrPresenterClass::release(presenter);
    session = ScriptedReference{}.open(channel);
}

void PresenterTest::messageStaysTheCallersWhenItIsNotSent()
{
    auto *presenter = new Presenter(&log);
    const std::unique_ptr<CMessageCommon> kept(message(presenter->pluginPid()));
    channel->disconnect();
    for (int i = 0; i < 5; ++i)
        QVERIFY(presenter->sendRequest_Async(kept.get()) != 0);
    QCOMPARE(kept->type(), QStringLiteral("Async"));
    QVERIFY(presenter->sendRequest_Async(nullptr) != 0);
    channel->reconnect();
    ZrPresenterClass::release(presenter);
    QCOMPARE(log, QStringList());
}

void PresenterTest::releaseCancelsTheRunningQuery()
{
    auto *presenter = new Presenter(&log);
    channel->next("Query", ScriptedChannel::success());
    channel->hold("Query");
    bool destroyed = false;
    QThread *const own = presenter->thread();
    connect(presenter, &QObject::destroyed, presenter, [&] { destroyed = QThread::currentThread() == own; });
    presenter->post([presenter] { presenter->query(); });
    QTRY_COMPARE(channel->count("Query"), 1);
    ZrPresenterClass::release(presenter);
    QVERIFY(destroyed);
    QCOMPARE(log, QStringList("query rows 0 请求已取消"));

    QString errorText;
    QVERIFY(MasterUtils::QueryDatasFromServer(presenter, "Query", {}, Mode0, errorText).isEmpty());
    QCOMPARE(errorText, QStringLiteral("请求已取消"));
    QCOMPARE(channel->count("Query"), 1);
}

void PresenterTest::pushesInFlightMeetReleasedPresenters()
{
    std::atomic<bool> stop{false};
    std::thread server([&] {
        for (; !stop; QThread::usleep(20)) // paced, so that the queue does not grow for ever
            channel->push("Push", {{"n", 1}});
    });
    for (int i = 0; i < 50; ++i) {
        auto *presenter = new Presenter(&log);
        QTRY_VERIFY(!presenter->log().isEmpty());
        ZrPresenterClass::release(presenter);
        log.clear();
    }
    stop = true;
    server.join();
}

void PresenterTest::withoutOwnThreadHandlersRunHere()
{
    auto *presenter = new Presenter(&log, 1);
    QCOMPARE(presenter->thread(), QThread::currentThread());
    channel->push("Push", {{"n", 5}});
    QVERIFY(session->settle(60000));
    QCOMPARE(presenter->log(), QStringList("Push 5"));
    ZrPresenterClass::release(presenter);
}

void PresenterTest::unreadableBytesGiveNothing()
{
    CUnPackMessageCommon unpacked;
    CPackMessageCommon pack;
    pack.AddRowVaule({{"a", 1}});
    pack.AddVaule("v", 1);
    pack.AddVaule("v", 2);
    QVERIFY(unpacked.SetUnPackMsg(pack.GetPackedMsg(0), 0));
    QCOMPARE(unpacked.GetValue("v", 0).toInt(), 2);
    QVERIFY(!unpacked.SetUnPackMsg(QByteArray("junk"), 0));
    QVERIFY(unpacked.GetAllValue().isEmpty() && unpacked.GetRowValue().isEmpty());
    QCOMPARE(unpacked.GetValue("v", -1).toInt(), -1);
}

T0_REGISTER_TEST(PresenterTest)
#include "PresenterTest.moc"
