#include "SocketServer.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QtEndian>
#include <QtNetwork/QLocalSocket>

#include <sys/stat.h>

namespace {

constexpr int lengthSize = 4;
constexpr qint64 maxUnread = 4ll * SocketServer::maxEnvelope;

/// One client; a child of the server, deletes itself when its socket has closed.
class SocketClient : public QObject
{
public:
    SocketClient(std::shared_ptr<PaperGateway> gateway, QLocalSocket *socket, QObject *parent)
        : QObject(parent)
        , m_gateway(std::move(gateway))
        , m_socket(socket)
    {
        m_socket->setParent(this);
        // Called on the gateway's thread; the destructor waits for the last call before this object goes.
        m_id = m_gateway->connectClient({[this](const QByteArray &bytes) {
                                             QMetaObject::invokeMethod(
                                                 this, [this, bytes] { send(bytes); }, Qt::QueuedConnection);
                                         },
                                         [this] {
                                             QMetaObject::invokeMethod(
                                                 this, [this] { m_socket->abort(); }, Qt::QueuedConnection);
                                         }});
        connect(m_socket, &QLocalSocket::readyRead, this, [this] { read(); });
        connect(m_socket, &QLocalSocket::disconnected, this, &QObject::deleteLater);
        read();
    }

    ~SocketClient() override
    {
        m_gateway->disconnectClient(m_id);
        disconnect(m_socket, nullptr, this, nullptr);
    }

private:
    void read()
    {
        m_received += m_socket->readAll();
        int at = 0;
        while (m_received.size() - at >= lengthSize) {
            const auto length = qFromBigEndian<quint32>(m_received.constData() + at);
            if (length > SocketServer::maxEnvelope)
                return drop("announces an envelope that is too long");
            if (m_received.size() - at - lengthSize < int(length))
                break;
            m_gateway->receive(m_id, m_received.mid(at + lengthSize, int(length)));
            at += lengthSize + int(length);
        }
        m_received.remove(0, at);
    }

    void send(const QByteArray &envelope)
    {
        if (m_socket->state() != QLocalSocket::ConnectedState)
            return;
        if (m_socket->bytesToWrite() > maxUnread)
            return drop("does not read what it asked for");
        char length[lengthSize];
        qToBigEndian(quint32(envelope.size()), length);
        m_socket->write(length, lengthSize);
        m_socket->write(envelope);
    }

    void drop(const char *reason)
    {
        qWarning("gateway: socket client %llu dropped: it %s", qulonglong(m_id), reason);
        m_received.clear();
        m_socket->abort();
    }

    const std::shared_ptr<PaperGateway> m_gateway;
    QLocalSocket *const m_socket;
    PaperGateway::ClientId m_id = 0;
    QByteArray m_received;
};

bool somebodyAnswers(const QString &name)
{
    QLocalSocket probe;
    probe.connectToServer(name);
    return probe.waitForConnected(1000);
}

/// Listening replaces whatever has the name, so only a dead gateway's socket may have it.
bool isOtherFile(const QString &name)
{
    const QString path = QDir::isAbsolutePath(name) ? name : QDir(QDir::tempPath()).filePath(name);
    struct stat status;
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISSOCK(status.st_mode);
}

} // namespace

SocketServer::SocketServer(std::shared_ptr<PaperGateway> gateway, QObject *parent)
    : QObject(parent)
    , m_gateway(std::move(gateway))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SocketServer::accept);
}

SocketServer::~SocketServer()
{
    m_server.close();
}

QString SocketServer::listen(const QString &name)
{
    if (isOtherFile(name))
        return QStringLiteral("%1: is a file, not the socket of a gateway").arg(name);
    if (somebodyAnswers(name))
        return QStringLiteral("%1: another gateway serves it").arg(name);
    QLocalServer::removeServer(name);
    return m_server.listen(name) ? QString() : QStringLiteral("%1: %2").arg(name, m_server.errorString());
}

int SocketServer::clientCount() const
{
    return children().size();
}

void SocketServer::accept()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection())
        new SocketClient(m_gateway, socket, this);
}
