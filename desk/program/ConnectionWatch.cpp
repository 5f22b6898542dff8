#include "ConnectionWatch.h"

#include "CBusinessDataBase.h"
#include "HostNews.h"
#include "HostSession.h"
#include "MessageChannel.h"
#include "StandMsgType.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>

namespace {

constexpr int askEveryMs = 5000;
constexpr int timeoutMs = 4000;

} // namespace

ConnectionWatch::ConnectionWatch(HostSession &session, QObject *parent)
    : QObject(parent)
    , m_session(session)
{
    connect(&session.news(), &HostNews::connectionChanged, this, &ConnectionWatch::onConnection);
    connect(&session.news(), &HostNews::pictureChanged, this, &ConnectionWatch::changed);
    connect(&m_timer, &QTimer::timeout, this, &ConnectionWatch::ask);
    m_timer.start(askEveryMs);
    ask();
}

bool ConnectionWatch::isConnected() const
{
    return m_session.channel().connection() == MessageChannel::Connection::Connected;
}

QDateTime ConnectionWatch::since() const
{
    return m_session.channel().connectionSince();
}

bool ConnectionWatch::isInStep() const
{
    return m_session.picture().isInStep;
}

int ConnectionWatch::silentSeconds() const
{
    const QDateTime heardAt = m_session.picture().heardAt;
    return heardAt.isValid() ? int(qMax<qint64>(0, heardAt.secsTo(QDateTime::currentDateTimeUtc()))) : -1;
}

QString ConnectionWatch::gate() const
{
    return isConnected() ? QString() : tr("与网关的连接已断开，下单已停用");
}

void ConnectionWatch::onConnection()
{
    ++m_connection;
    m_isAsking = false;
    m_latencyMs = -1;
    emit changed();
    ask();
}

void ConnectionWatch::ask()
{
    if (m_isAsking || !isConnected())
        return;
    QElapsedTimer clock;
    clock.start();
    const QPointer<ConnectionWatch> guard(this);
    // The answer comes on the channel's thread.
    const auto handler = [guard, clock, connection = m_connection](const MessageChannel::Reply &reply) {
        const bool hasAnswer = reply.outcome == MessageChannel::Outcome::Answered;
        const int ms = int(clock.elapsed());
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, connection, hasAnswer, ms] {
                if (guard)
                    guard->answered(connection, hasAnswer, ms);
            },
            Qt::QueuedConnection);
    };
    const QString user = CBusinessDataBase::GetLoginAccount();
    m_isAsking = m_session.channel().send(Envelope::request(Stand_MsgType::EchoRequest, user, timeoutMs, {}), timeoutMs,
                                          handler);
}

void ConnectionWatch::answered(int connection, bool hasAnswer, int ms)
{
    if (connection != m_connection)
        return;
    m_isAsking = false;
    m_latencyMs = hasAnswer ? ms : -1;
    emit measured();
}
