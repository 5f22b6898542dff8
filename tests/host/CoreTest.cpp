#include "HCore.h"
#include "HostSession.h"
#include "MasterDelayBuffer.h"
#include "MasterInitStateMgr.h"
#include "ScriptedChannel.h"
#include "Tests.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <rapidcheck.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

std::unique_ptr<HostSession> sessionIn(const QString &settingsDir)
{
    QString errorText;
    return HostSession::open({std::make_unique<ScriptedChannel>(), {}, settingsDir}, errorText);
}

QVariant setting(const QString &key, const QString &group = {}, const QString &file = {})
{
    return HCore::instance()->settings(key, group, file, QSettings::UserScope);
}

void save(const QString &key, const QVariant &value, const QString &group = {}, const QString &file = {})
{
    HCore::instance()->saveSetting(key, value, group, file, QSettings::UserScope);
}

} // namespace

class CoreTest : public QObject
{
    Q_OBJECT

private slots:
    void oneCallerStartsAnInit();
    void settingsSurviveTheSession();
    void settingsOfAnyBytesComeBack();
    void lateSettingIsNotTheNextSessions();
    void burstIsOneBatch();
    void steadyStreamIsNotPutOff();
};

void CoreTest::oneCallerStartsAnInit()
{
    MasterInitStateMgr::instance().clear();
    std::atomic<int> started{0};
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            for (int k = 0; k < 100; ++k)
                started += MasterInitStateMgr::instance().StartInit(QString::number(k));
        });
    }
    for (std::thread &caller : callers)
        caller.join();
    QCOMPARE(started.load(), 100);
    MasterInitStateMgr::instance().clear();
}

void CoreTest::settingsSurviveTheSession()
{
    QTemporaryDir dir;
    const QByteArray json = "{\"证券\": \"a\\\"b;=,\"}\n";
    {
        const auto session = sessionIn(dir.path());
        save("json", json);
        save("key with / and 空格", 7, "group", "own");
        save("removed later", 1);
    }
    QVERIFY(!setting("json").isValid()); // without a session there are no settings of the last one
    {
        const auto session = sessionIn(dir.path());
        QCOMPARE(setting("json").toString(), QString::fromUtf8(json));
        QCOMPARE(setting("key with / and 空格", "group", "own").toInt(), 7);
        QVERIFY(!setting("key with / and 空格", "group").isValid());
        QVERIFY(!setting("absent").isValid());
        QVERIFY(!HCore::instance()->settings("json", {}, {}, QSettings::SystemScope).isValid());
        save("json", QByteArray("{}"));
    }
    const auto session = sessionIn(dir.path());
    QCOMPARE(setting("json").toString(), QStringLiteral("{}"));
    QCOMPARE(setting("removed later").toInt(), 1); // an earlier session's values are kept beside new ones
}

void CoreTest::settingsOfAnyBytesComeBack()
{
    QTemporaryDir dir;
    std::vector<std::string> saved;
    {
        const auto session = sessionIn(dir.path());
        QVERIFY(rc::check([&] {
            const auto bytes = *rc::gen::arbitrary<std::string>();
            save(QString::number(saved.size()), QByteArray(bytes.data(), int(bytes.size())));
            saved.push_back(bytes);
        }));
    }
    const auto session = sessionIn(dir.path());
    for (size_t i = 0; i < saved.size(); ++i)
        QCOMPARE(setting(QString::number(i)).toByteArray(), QByteArray(saved[i].data(), int(saved[i].size())));
}

void CoreTest::lateSettingIsNotTheNextSessions()
{
    QTemporaryDir former;
    QTemporaryDir next;
    std::atomic<bool> stop{false};
    auto session = sessionIn(former.path());
    std::thread other([&] {
        while (!stop)
            save("late", 1);
    });
    QTRY_VERIFY(setting("late").isValid());
    session.reset();
    stop = true;
    other.join();
    QFile::remove(former.filePath("host.ini"));
    sessionIn(next.path()).reset();
    QVERIFY(!QFile::exists(former.filePath("host.ini")));
}

void CoreTest::burstIsOneBatch()
{
    MasterDelayBuffer buffer(this, 20);
    QSignalSpy announced(&buffer, &MasterDelayBuffer::bufferTimeOut);
    buffer.AppendItem(1);
    buffer.AppendItem(QVariant());
    buffer.AppendItem(QStringLiteral("x"));
    QTRY_COMPARE(announced.count(), 1);
    QCOMPARE(buffer.GetBufferItems(), QVariantList({1, QVariant(), QStringLiteral("x")}));
    QVERIFY(buffer.GetBufferItems().isEmpty());
    buffer.AppendItem(2);
    QCOMPARE(buffer.GetBufferItems().size(), 1); // what is taken is not announced
    buffer.AppendItem(3);
    QTRY_COMPARE(announced.count(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(announced.count(), 2);
}

void CoreTest::steadyStreamIsNotPutOff()
{
    MasterDelayBuffer buffer(this, 200);
    QSignalSpy announced(&buffer, &MasterDelayBuffer::bufferTimeOut);
    QTimer stream;
    int longestPause = 0;
    QElapsedTimer pause;
    pause.start();
    connect(&stream, &QTimer::timeout, [&] {
        longestPause = qMax(longestPause, int(pause.restart()));
        buffer.AppendItem(1);
    });
    stream.start(10);
    QTRY_COMPARE_WITH_TIMEOUT(announced.count(), 1, 60000);
    if (longestPause < 200) // else the machine paused longer than the delay, and the burst may have ended by itself
        QVERIFY(!buffer.GetBufferItems().isEmpty());
}

T0_REGISTER_TEST(CoreTest)
#include "CoreTest.moc"
