#pragma once

#include "PaperGateway.h"

#include <QtCore/QObject>
#include <QtNetwork/QLocalServer>

/// Gives clients of other processes on this machine a way to the gateway: a local socket on which every
/// envelope follows its length, four bytes, highest first. Lives on a thread with an event loop. A client
/// that sends what is no message, or that lets too much pile up unread, is disconnected; the others go on.
class SocketServer : public QObject
{
    Q_OBJECT

public:
    /// The longest envelope either side may send, in bytes.
    static constexpr quint32 maxEnvelope = 64u * 1024 * 1024;

    explicit SocketServer(std::shared_ptr<PaperGateway> gateway, QObject *parent = nullptr);
    ~SocketServer() override;

    /// Only the user who runs the gateway may connect. What a dead gateway left behind is replaced, a living
    /// one is not. Returns an empty text, or why the name cannot be served.
    QString listen(const QString &name);

    int clientCount() const;

private:
    void accept();

    const std::shared_ptr<PaperGateway> m_gateway;
    QLocalServer m_server;
};
