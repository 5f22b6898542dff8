#include "PictureStep.h"

#include "StandMsgType.h"
#include "core/Activity.h"
#include "core/LivingObjects.h"
#include "message/Server.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <atomic>

namespace {

using Connection = MessageChannel::Connection;

struct State {
    QMutex mutex;
    QDateTime connection; ///< the one that is in step, by its beginning
    QDateTime since;
    bool isAsking = false;
    std::atomic<qint64> heardMs{0};
};

State &state()
{
    static auto *state = new State; // never deleted: something may be heard while the process ends
    return *state;
}

void enter(const QDateTime &connection)
{
    QMutexLocker lock(&state().mutex);
    state().isAsking = false;
    state().connection = connection;
    state().since = QDateTime::currentDateTimeUtc();
}

void answered(const QDateTime &connection, const MessageChannel::Reply &reply)
{
    if (reply.outcome != MessageChannel::Outcome::Answered) {
        QMutexLocker lock(&state().mutex);
        state().isAsking = false;
        return;
    }
    // What came before the echo waits for presenters, and what they make of it for others.
    LivingObjects::afterAll([connection, token = Activity::begin()] {
        LivingObjects::afterAll([connection, token] { enter(connection); });
    });
}

} // namespace

void PictureStep::begin()
{
    const Server::Lease server;
    enter(server ? server->channel->connectionSince() : QDateTime());
}

PictureState PictureStep::state()
{
    const Server::Lease server;
    if (!server)
        return {};
    PictureState picture;
    // In this order: a connection that is lost and back in between has another beginning.
    const bool isConnected = server->channel->connection() == Connection::Connected;
    const QDateTime connection = server->channel->connectionSince();
    if (const qint64 heardMs = ::state().heardMs)
        picture.heardAt = QDateTime::fromMSecsSinceEpoch(heardMs, Qt::UTC);
    QMutexLocker lock(&::state().mutex);
    picture.isInStep = isConnected && connection == ::state().connection;
    picture.since = picture.isInStep ? ::state().since : connection;
    return picture;
}

void PictureStep::synchronise()
{
    const Server::Lease server;
    if (!server || server->channel->connection() != Connection::Connected)
        return;
    const QDateTime connection = server->channel->connectionSince();
    {
        QMutexLocker lock(&::state().mutex);
        if (::state().isAsking || ::state().connection == connection)
            return;
        ::state().isAsking = true;
    }
    const Envelope echo = Envelope::request(Stand_MsgType::EchoRequest, server->user, server->timeoutMs, {});
    const auto handler = [connection](const MessageChannel::Reply &reply) { answered(connection, reply); };
    if (!server->channel->send(echo, server->timeoutMs, handler))
        handler({});
}

void PictureStep::heard()
{
    ::state().heardMs = QDateTime::currentMSecsSinceEpoch();
}

void PictureStep::clear()
{
    QMutexLocker lock(&::state().mutex);
    ::state().connection = {};
    ::state().since = {};
    ::state().isAsking = false;
    ::state().heardMs = 0;
}
