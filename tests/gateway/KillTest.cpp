#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "SocketChannel.h"
#include "StandMsgType.h"
#include "Store.h"
#include "TestClient.h"
#include "Tests.h"

#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtCore/QSemaphore>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <csignal>

namespace {

namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;

constexpr int patience = 60000;

/// A manager who adds one unit to three securities of an account of his own, again and again, and who looks after
/// each restart whether the gateway still knows what it should. Runs on a thread of its own.
class Manager
{
public:
    Manager(const QString &user, const QString &account)
        : m_user(user)
        , m_account(account)
    {}

    QSemaphore acks; ///< one for every answer that came

    int halfApplied = 0;
    int lost = 0;
    int twice = 0;
    int acknowledged = 0;
    QString unexpected; ///< a refusal, which nothing here deserves

    bool isWorking() const { return !m_pending.id.isEmpty(); }

    /// Works until the connection breaks.
    void work(const QString &server)
    {
        SocketChannel channel(server);
        m_channel = &channel;
        MessageBody answer;
        if (channel.waitForConnected(patience) &&
            ask(Stand_MsgType::LoginRequest, {{UserAccount_::userID, m_user}}, answer) && lookAround())
            while (addOne())
                acks.release();
        channel.close();
    }

private:
    bool send(const Envelope &envelope, MessageBody &answer)
    {
        const auto reply = m_channel->request(envelope, patience);
        QString error;
        if (reply.outcome != MessageChannel::Outcome::Answered ||
            !MessageBody::decode(reply.envelope.body, answer, error))
            return false;
        if (!succeeded(answer))
            unexpected = envelope.type + refusal(answer);
        return succeeded(answer);
    }

    bool ask(const QString &type, const VariantRecord &row, MessageBody &answer)
    {
        return send(Envelope::request(type, m_user, patience, {{}, {row}}), answer);
    }

    /// How much every quantity that one request changes lies above its start.
    bool readCounts(QVector<qint64> &counts)
    {
        const VariantRecord query{{UserAccount_::tradingAccount, m_account}, {T0_::T0TraderId, "trader2"}};
        MessageBody resources;
        MessageBody pools;
        MessageBody usage;
        if (!ask(Master_MsgType::QueryManualT0ResourceRequest, query, resources) ||
            !ask(Master_MsgType::QueryManualT0SecurityPoolRequest, query, pools) ||
            !ask(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, query, usage))
            return false;
        if (m_securities.isEmpty())
            m_securities = resources.rows.mid(0, 3);
        counts = quantities(resources.rows, T0_::ResourceQty, QString());
        counts += quantities(pools.rows, T0_::PoolTotalQty, "trader2");
        counts += quantities(usage.rows, T0_::RtPoolTotalQty, "trader2");
        if (m_start.isEmpty())
            m_start = counts;
        for (int i = 0; i < counts.size(); ++i)
            counts[i] -= m_start.at(i);
        return true;
    }

    QVector<qint64> quantities(const RecordList &rows, const QString &field, const QString &trader) const
    {
        QVector<qint64> found(m_securities.size());
        for (int i = 0; i < m_securities.size(); ++i)
            for (const VariantRecord &row : rows)
                if (row.value(Orvane_Fields::Security::securityID) ==
                        m_securities.at(i).value(Orvane_Fields::Security::securityID) &&
                    row.value(UserAccount_::tradingAccount) == m_account &&
                    row.value(T0_::T0TraderId).toString() == trader)
                    found[i] = row.value(field).toLongLong();
        return found;
    }

    /// The state has to be the one before or the one behind the request in work, and repeating that request has to
    /// lead to the one behind.
    bool lookAround()
    {
        QVector<qint64> counts;
        if (!readCounts(counts))
            return false;
        const qint64 count = counts.constFirst();
        halfApplied += int(counts.count(count) != counts.size());
        lost += int(count < acknowledged);
        twice += int(count > acknowledged + int(!m_pending.id.isEmpty()));
        return m_pending.id.isEmpty() || finishPending(count);
    }

    bool finishPending(qint64 count)
    {
        MessageBody answer;
        QVector<qint64> counts;
        if (!send(m_pending, answer))
            return false;
        ++acknowledged;
        m_pending = Envelope();
        if (!readCounts(counts))
            return false;
        twice += int(counts.constFirst() > acknowledged);
        lost += int(counts.constFirst() < qMax<qint64>(count, acknowledged));
        return true;
    }

    bool addOne()
    {
        RecordList rows = m_securities;
        for (VariantRecord &row : rows) {
            row.insert(T0_::T0TraderId, "trader2");
            row.insert(T0_::PoolType, 1);
            row.insert(T0_::PoolTotalQty, 1);
        }
        m_pending =
            changeOf(Master_MsgType::AddManualT0ResourceAndPoolRequest,
                     {{Master_Fields::System::addType, "Append"}, {UserAccount_::tradingAccount, m_account}}, rows);
        MessageBody answer;
        if (!send(m_pending, answer))
            return false;
        ++acknowledged;
        m_pending = Envelope();
        return true;
    }

    const QString m_user;
    const QString m_account;
    SocketChannel *m_channel = nullptr;
    RecordList m_securities;
    QVector<qint64> m_start;
    Envelope m_pending; ///< no id: none
};

} // namespace

/// Kills the gateway's process again and again while it works. T0_KILLS says how often.
class KillTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsHalfDoneOrForgotten();

private:
    void start(QProcess &program);

    QTemporaryDir m_dir;
    QString m_name = m_dir.filePath(QStringLiteral("socket"));
    QString m_state = m_dir.filePath(QStringLiteral("state"));
};

void KillTest::start(QProcess &program)
{
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(T0_GATEWAY_PROGRAM),
                  {"--serve", m_name, "--books", T0_SAMPLE_BOOKS, "--state", m_state});
    QVERIFY(program.waitForStarted(patience));
}

void KillTest::nothingIsHalfDoneOrForgotten()
{
    const int kills = qMax(1, qEnvironmentVariable("T0_KILLS", "5").toInt());
    QRandomGenerator *random = QRandomGenerator::global();
    Manager one("manager1", "A000101");
    Manager two("lead1", "A000201");
    // One round more: what a kill has left is seen in the next.
    for (int round = 0; round <= kills; ++round) {
        QProcess program;
        start(program);
        std::vector<std::unique_ptr<QThread>> threads;
        // Some die while they start, most while they work.
        if (round == kills || random->bounded(5) != 0) {
            QVERIFY(program.waitForReadyRead(patience));
            for (Manager *manager : {&one, &two}) {
                threads.emplace_back(QThread::create([this, manager] { manager->work(m_name); }));
                threads.back()->start();
            }
            for (Manager *manager : {&one, &two})
                QVERIFY2(manager->acks.tryAcquire(1 + int(random->bounded(5)), patience),
                         qPrintable(manager->unexpected));
        }
        // deliberate: nothing is waited for here, any moment is as good as another.
        QThread::usleep(random->bounded(threads.empty() ? 100000 : 5000));
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished(patience));
        for (const auto &thread : threads)
            thread->wait();
        for (Manager *manager : {&one, &two})
            manager->acks.acquire(manager->acks.available());
    }
    qInfo("kills: %d, acknowledged: %d, half-applied: %d, acknowledged lost: %d, executed twice: %d", kills,
          one.acknowledged + two.acknowledged, one.halfApplied + two.halfApplied, one.lost + two.lost,
          one.twice + two.twice);
    for (const Manager *manager : {&one, &two})
        QVERIFY(manager->halfApplied == 0 && manager->lost == 0 && manager->twice == 0);
    int audited = 0;
    const QString error = Store::readAudit(
        m_state, {}, [&](const AuditEntry &entry) { audited += int(entry.object == QLatin1String("resource")); });
    QCOMPARE(error, QString());
    // Three resources a request; what was in work at the very end may be there or not.
    const int least = 3 * (one.acknowledged + two.acknowledged);
    QVERIFY(audited >= least && audited <= least + 3 * (int(one.isWorking()) + int(two.isWorking())));
}

T0_REGISTER_TEST(KillTest)
#include "KillTest.moc"
