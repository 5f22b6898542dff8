#pragma once

#include "HostExport.h"
#include "StreamChannel.h"

#include <memory>

/// The channel to a gateway process on the same machine, over a local socket: before each envelope its
/// length, four bytes big-endian, at most 64 MiB.
///
/// Has a thread of its own and connects by itself, every second while it is not connected. After a lost
/// connection it repeats the login, marked as Stand_Fields::Session::reconnected, and the subscriptions that
/// the server had accepted. It is Connected again when the server has answered them all. Those that it refuses are told
/// by a business message and repeated every 5 s; that all are accepted is told, too. A refused login begins anew. Needs
/// an application object.
class T0_HOST_EXPORT SocketChannel : public StreamChannel
{
public:
    explicit SocketChannel(const QString &serverName); ///< as of QLocalSocket; begins to connect
    ~SocketChannel() override;

    /// True as soon as it is connected, false when timeoutMs passed before.
    bool waitForConnected(int timeoutMs);

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    void close() override;

protected:
    bool transmit(const QByteArray &envelope) override;

private:
    /// An accepted login or subscription is repeated after a reconnection.
    void remember(const Envelope &envelope, const Reply &reply);

    class Worker;
    class Private;
    std::unique_ptr<Private> s;
};
