#include "Server.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QWaitCondition>

namespace {

struct State {
    QMutex mutex;
    Server::Border border;
    int leases = 0;
    QWaitCondition returned;
    QHash<QString, LoadProgress> progress;
};

State &state()
{
    static auto *state = new State; // never deleted: requests may be tried while the process ends
    return *state;
}

} // namespace

void Server::open(const Border &border)
{
    QMutexLocker lock(&state().mutex);
    state().border = border;
    state().progress.clear();
}

void Server::close()
{
    QMutexLocker lock(&state().mutex);
    MessageChannel *channel = state().border.channel;
    state().border = {};
    lock.unlock();
    if (channel)
        channel->close(); // ends every wait
    lock.relock();
    while (state().leases > 0)
        state().returned.wait(&state().mutex);
    state().progress.clear();
}

Server::Lease::Lease()
{
    QMutexLocker lock(&state().mutex);
    m_border = state().border;
    if (m_border.channel)
        ++state().leases;
}

Server::Lease::~Lease()
{
    if (!m_border.channel)
        return;
    QMutexLocker lock(&state().mutex);
    --state().leases;
    state().returned.wakeAll();
}

LoadProgress Server::progress(const QString &msgType)
{
    QMutexLocker lock(&state().mutex);
    return state().progress.value(msgType);
}

void Server::queryBegins(const QString &msgType)
{
    QMutexLocker lock(&state().mutex);
    ++state().progress[msgType].running;
}

void Server::rowsReceived(const QString &msgType, int rows)
{
    QMutexLocker lock(&state().mutex);
    state().progress[msgType].rows += rows;
}

void Server::queryEnds(const QString &msgType)
{
    QMutexLocker lock(&state().mutex);
    LoadProgress &progress = state().progress[msgType];
    --progress.running;
    ++progress.requests;
}
