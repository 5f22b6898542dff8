#pragma once

#include "HostSession.h"
#include "MessageChannel.h"

/// The open session's channel for everybody in the host who sends. Thread-safe.
namespace Server {

/// What a session offers while it is open.
struct Border {
    MessageChannel *channel = nullptr;
    QString user;
    int timeoutMs = 0;
};

void open(const Border &border);

/// Nobody gets the channel any more; closes it and waits until everybody who had it has let go.
void close();

/// Keeps the channel alive while it is used. Without a session it is empty.
class Lease
{
public:
    Lease();
    ~Lease();
    Lease(const Lease &) = delete;
    Lease &operator=(const Lease &) = delete;

    explicit operator bool() const { return m_border.channel; }
    const Border *operator->() const { return &m_border; }

private:
    Border m_border;
};

/// Progress of the session's queries by message type.
LoadProgress progress(const QString &msgType);
void queryBegins(const QString &msgType);
void rowsReceived(const QString &msgType, int rows);
void queryEnds(const QString &msgType);

} // namespace Server
