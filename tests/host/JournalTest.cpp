#include "HostSession.h"
#include "JournalReader.h"
#include "JournalWriter.h"
#include "MasterInitStateMgr.h"
#include "MasterUtils.h"
#include "ScriptedChannel.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QtEndian>
#include <QtTest/QtTest>

#include <csignal>

#include <sys/resource.h>

using Kind = JournalRecord::Kind;

namespace {

struct Reading {
    QVector<JournalRecord> records;
    QString errorText;
    QString cutText;
};

Reading readJournal(const QString &path)
{
    Reading reading;
    JournalReader reader(path);
    JournalRecord record;
    while (reader.next(record))
        reading.records.append(record);
    reading.errorText = reader.errorText();
    reading.cutText = reader.cutText();
    return reading;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void store(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

/// Where the first line ends, and each record.
QVector<int> endsOf(const QByteArray &journal)
{
    constexpr int head = 8;
    constexpr int hash = 32;
    QVector<int> ends{journal.indexOf('\n') + 1};
    while (ends.constLast() < journal.size())
        ends.append(ends.constLast() + head + int(qFromBigEndian<quint32>(journal.constData() + ends.constLast())) +
                    hash);
    return ends;
}

Envelope pushOf(const VariantRecord &row)
{
    return Envelope::push(QStringLiteral("P"), {{}, {row}});
}

QString describe(const JournalRecord &record)
{
    return QStringLiteral("%1 %2").arg(QString::number(int(record.kind)), record.envelope.type);
}

} // namespace

class JournalTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aSessionIsTakenDownInItsOrder();
    void aCutTailIsToldAndDamageNamesItsRecord();
    void recordsMayNotBeMissingOrMoved();
    void anOldJournalIsNotWrittenOver();
    void whenTheDiskIsFullTheClientWorksOn();

private:
    QString m_path;
    std::unique_ptr<QTemporaryDir> m_dir;
};
T0_REGISTER_TEST(JournalTest)

void JournalTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_path = m_dir->filePath(QStringLiteral("journal"));
}

void JournalTest::aSessionIsTakenDownInItsOrder()
{
    auto scripted = std::make_unique<ScriptedChannel>();
    ScriptedChannel *channel = scripted.get();
    ScriptedReference().script(*channel);
    QString errorText;
    HostConfig config;
    config.channel = std::move(scripted);
    config.user = QStringLiteral("u1");
    config.journal = JournalWriter::create(m_path, errorText);
    auto session = HostSession::open(std::move(config), errorText);
    QVERIFY2(session, qPrintable(errorText));

    channel->always("Q", [](const MessageBody &) { return ScriptedChannel::success({{{"field", 7}}}); });
    channel->nextTimesOut("T");
    channel->nextIsNotSent("N");
    MasterUtils::QueryDatasFromServer(nullptr, "Q", {{"asked", QStringLiteral("星")}}, Mode0, errorText);
    MasterUtils::QueryDatasFromServer(nullptr, "T", {}, Mode0, errorText);
    MasterUtils::QueryDatasFromServer(nullptr, "N", {}, Mode0, errorText);
    MasterInitStateMgr::instance().StartInit("family");
    channel->push("Pushed", {{"symbol", "600000.SH"}});
    QVERIFY(session->settle(60000)); // its echoes are not taken down
    MasterInitStateMgr::instance().Reset("family");
    channel->disconnect();
    session->channel().connection();
    session.reset();

    const Reading reading = readJournal(m_path);
    QCOMPARE(reading.errorText + reading.cutText, QString());
    QStringList ofTest;
    for (int i = 0; i < reading.records.size(); ++i) {
        const JournalRecord &record = reading.records.at(i);
        QCOMPARE(record.sequence, quint64(i + 1));
        if (i > 0)
            QVERIFY(record.time >= reading.records.at(i - 1).time);
        QVERIFY(record.envelope.type != Stand_MsgType::EchoRequest);
        if (QStringList{"Q", "T", "N", "Pushed", "family", "disconnected"}.contains(record.envelope.type))
            ofTest.append(describe(record));
        if (record.envelope.type != QLatin1String("Q"))
            continue;
        MessageBody body;
        QVERIFY(MessageBody::decode(record.envelope.body, body, errorText));
        QCOMPARE(body.rows.constFirst(), record.kind == Kind::Request ? VariantRecord({{"asked", QStringLiteral("星")}})
                                                                      : VariantRecord({{"field", 7LL}}));
    }
    const auto line = [](Kind kind, const char *type) {
        return QStringLiteral("%1 %2").arg(QString::number(int(kind)), QLatin1String(type));
    };
    QCOMPARE(ofTest, (QStringList{line(Kind::Request, "Q"), line(Kind::Answer, "Q"), line(Kind::Request, "T"),
                                  line(Kind::TimedOut, "T"), line(Kind::Request, "N"), line(Kind::NotSent, "N"),
                                  line(Kind::FamilyStarted, "family"), line(Kind::Push, "Pushed"),
                                  line(Kind::FamilyReset, "family"), line(Kind::Connection, "disconnected")}));
    QCOMPARE(int(reading.records.constFirst().kind), int(Kind::Opened));
    QCOMPARE(reading.records.constFirst().envelope.sender, QStringLiteral("u1"));
    QCOMPARE(int(reading.records.constLast().kind), int(Kind::Closed));
}

/// Every length that a file may be cut to, and every byte that may be another one.
void JournalTest::aCutTailIsToldAndDamageNamesItsRecord()
{
    QString errorText;
    auto writer = JournalWriter::create(m_path, errorText);
    writer->append(Kind::Push, pushOf({{"number", 1}}));
    writer->append(Kind::Push, pushOf({{"number", 2}}));
    writer.reset(); // and its closing record
    const QByteArray whole = bytesOf(m_path);
    const QVector<int> ends = endsOf(whole);
    QCOMPARE(readJournal(m_path).records.size(), 3);

    const QString changed = m_dir->filePath(QStringLiteral("changed"));
    for (int size = ends.at(0); size < whole.size(); ++size) {
        store(changed, whole.left(size));
        const Reading reading = readJournal(changed);
        const int intact = int(std::upper_bound(ends.cbegin(), ends.cend(), size) - ends.cbegin()) - 1;
        QCOMPARE(reading.errorText, QString());
        QCOMPARE(reading.records.size(), intact);
        const QString place = QStringLiteral("%1: record %2 at byte %3: cut off, %4 of ")
                                  .arg(changed, QString::number(intact + 1), QString::number(ends.at(intact)),
                                       QString::number(size - ends.at(intact)));
        QVERIFY2(ends.contains(size) ? reading.cutText.isEmpty() : reading.cutText.startsWith(place),
                 qPrintable(reading.cutText));
    }
    for (int at = 0; at < whole.size(); ++at) {
        QByteArray bytes = whole;
        bytes[at] = char(bytes.at(at) ^ 0x10);
        store(changed, bytes);
        const Reading reading = readJournal(changed);
        const int intact = int(std::upper_bound(ends.cbegin(), ends.cend(), at) - ends.cbegin()) - 1;
        const QString place = intact < 0
                                  ? changed + QStringLiteral(": no journal")
                                  : QStringLiteral("%1: record %2 at byte %3: ")
                                        .arg(changed, QString::number(intact + 1), QString::number(ends.at(intact)));
        QVERIFY2(reading.errorText.startsWith(place) && reading.cutText.isEmpty(), qPrintable(reading.errorText));
        QCOMPARE(reading.records.size(), qMax(0, intact));
    }
}

void JournalTest::recordsMayNotBeMissingOrMoved()
{
    QString errorText;
    auto writer = JournalWriter::create(m_path, errorText);
    for (int i = 0; i < 4; ++i)
        writer->append(Kind::FamilyAsked, {});
    writer.reset();
    const QByteArray whole = bytesOf(m_path);
    const QVector<int> ends = endsOf(whole);
    const int size = ends.at(2) - ends.at(1); // all are of one size
    const QByteArray missing = whole.left(ends.at(1)) + whole.mid(ends.at(2));
    const QByteArray swapped =
        whole.left(ends.at(1)) + whole.mid(ends.at(2), size) + whole.mid(ends.at(1), size) + whole.mid(ends.at(3));
    for (const QByteArray &bytes : {missing, swapped}) {
        store(m_path, bytes);
        const Reading reading = readJournal(m_path);
        QCOMPARE(reading.records.size(), 1);
        QCOMPARE(reading.errorText, QStringLiteral("%1: record 2 at byte %2: the chain of hashes is broken")
                                        .arg(m_path, QString::number(ends.at(1))));
    }
}

void JournalTest::anOldJournalIsNotWrittenOver()
{
    store(m_path, "what was there");
    QString errorText;
    QVERIFY(!JournalWriter::create(m_path, errorText));
    QVERIFY2(errorText.startsWith(m_path + QStringLiteral(": ")), qPrintable(errorText));
    QCOMPARE(bytesOf(m_path), QByteArray("what was there"));
}

void JournalTest::whenTheDiskIsFullTheClientWorksOn()
{
    ScriptedChannel *channel = nullptr;
    const auto session = ScriptedReference().open(channel);
    QString errorText;
    const auto writer = JournalWriter::create(m_path, errorText);

    constexpr rlim_t room = 4096;
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{room, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    QStringList messages;
    QTRY_VERIFY((writer->append(Kind::Push, pushOf({{"text", QString(1000, QLatin1Char('x'))}})),
                 messages += session->takeBusinessMessages(), !messages.isEmpty()));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, formerHandler);

    QCOMPARE(messages.size(), 1);
    QVERIFY2(messages.constFirst().contains(QStringLiteral("消息日志无法继续写入，之后的消息不再记录")),
             qPrintable(messages.constFirst()));
    writer->append(Kind::Push, pushOf({})); // taken, and forgotten
    const Reading reading = readJournal(m_path);
    QCOMPARE(reading.errorText, QString());
    QVERIFY(!reading.records.isEmpty());
}

#include "JournalTest.moc"
