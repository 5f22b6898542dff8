#pragma once

#include "Operations.h"
#include "PaperGateway.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

#include <map>

class SocketServer;

/// Further consoles, one a user, each a process with a library of its own, at the same gateway. An embedded gateway
/// is served on a socket of its own for them. Lives on the main thread; its end ends them.
class Companions
{
public:
    /// serverName: a gateway process; empty: the embedded one, or in a replay none, and so no other user.
    Companions(std::shared_ptr<PaperGateway> gateway, const QString &serverName, int requestTimeoutMs);
    ~Companions();
    Companions(const Companions &) = delete;
    Companions &operator=(const Companions &) = delete;

    /// Runs one command line in a user's console, which is started when there is none, and waits for its end.
    Outcome run(const QString &user, const QString &line);

private:
    QString serve();
    QProcess *consoleOf(const QString &user, QString &errorText);

    const std::shared_ptr<PaperGateway> m_gateway;
    const int m_requestTimeoutMs;
    QString m_serverName;
    QTemporaryDir m_dir;
    QThread m_thread;  ///< the socket server's: the main thread waits for the consoles
    QObject m_context; ///< lives there
    std::unique_ptr<SocketServer> m_server;
    std::map<QString, std::unique_ptr<QProcess>> m_consoles;
};
