#include "SocketChannel.h"

#include "HostLog.h"
#include "MasterBusinessDataInterface.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "framework/LoopThread.h"
#include "message/AnswerStatus.h"
#include "message/RequestTexts.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QTimer>
#include <QtCore/QVector>
#include <QtCore/QWaitCondition>
#include <QtCore/QtEndian>
#include <QtNetwork/QLocalSocket>

#include <utility>

namespace {

constexpr int lengthBytes = 4;
constexpr quint32 maxEnvelope = 64 * 1024 * 1024;
constexpr int retryMs = 1000;
constexpr int loginValidMs = 5000;
constexpr int refusedAgainMs = 5000; ///< a subscription may be refused only for a moment

/// refusal: why not.
bool isSuccess(const Envelope &answer, QString &refusal)
{
    MessageBody body;
    return MessageBody::decode(answer.body, body, refusal) &&
           statusOfAnswer(body, refusal) == Orvane_Values::RequestExeStatus::success;
}

bool isSuccess(const Envelope &answer)
{
    QString refusal;
    return isSuccess(answer, refusal);
}

void tell(const QString &text)
{
    MasterBusinessDataInterface::AddBusiMsg(Master_Values::BusiMsgLevel::Normal, text,
                                            Master_Values::BusiMsgType::SystemMsg, QString(), true, QString());
}

/// Tells the server that pushes may have been missed.
QByteArray repeated(const QByteArray &loginBody)
{
    MessageBody body;
    QString errorText;
    if (!MessageBody::decode(loginBody, body, errorText))
        return loginBody;
    body.values.insert(Stand_Fields::Session::reconnected, true);
    return body.encode();
}

} // namespace

class SocketChannel::Private
{
public:
    LoopThread thread;
    std::unique_ptr<Worker> worker;

    QMutex mutex;
    QWaitCondition connected;
    QByteArray loginBody;       ///< repeats the accepted login; empty before
    QVector<Envelope> accepted; ///< subscriptions, to be repeated
};

/// The socket's side of the channel; everything here runs on the channel's thread.
class SocketChannel::Worker : public QObject
{
public:
    Worker(SocketChannel *channel, const QString &serverName)
        : m_channel(channel)
        , m_serverName(serverName)
    {}

    void start();
    void stop();
    void write(const QByteArray &envelope);

private:
    void tryToConnect();
    void onConnected();
    void onLost();
    void onBytes();
    void onEnvelope(const QByteArray &bytes);
    void onLoginAnswer(const Envelope &answer);
    void repeat(const QVector<Envelope> &subscriptions);
    void onSubscriptionAnswer(const Envelope &answer);
    void tellRefused(const QString &refusal);
    void becomeConnected();

    SocketChannel *const m_channel;
    const QString m_serverName;
    QLocalSocket *m_socket = nullptr;
    QTimer *m_retry = nullptr;
    QByteArray m_in;
    QString m_loginId;                      ///< of the repeated login that is not answered yet
    QHash<QString, Envelope> m_subscribing; ///< repeated subscriptions that are not answered yet, by id
    QVector<Envelope> m_refused;            ///< subscriptions, to be repeated
    QTimer *m_refusedAgain = nullptr;
    bool m_isRefusalTold = false; ///< of this connection
};

void SocketChannel::Worker::start()
{
    m_socket = new QLocalSocket(this);
    m_retry = new QTimer(this);
    m_retry->setInterval(retryMs);
    connect(m_retry, &QTimer::timeout, this, &Worker::tryToConnect);
    m_refusedAgain = new QTimer(this);
    m_refusedAgain->setSingleShot(true);
    m_refusedAgain->setInterval(refusedAgainMs);
    connect(m_refusedAgain, &QTimer::timeout, this, [this] { repeat(std::exchange(m_refused, {})); });
    connect(m_socket, &QLocalSocket::connected, this, &Worker::onConnected);
    connect(m_socket, &QLocalSocket::disconnected, this, &Worker::onLost);
    connect(m_socket, &QLocalSocket::readyRead, this, &Worker::onBytes);
    m_retry->start();
    tryToConnect();
}

void SocketChannel::Worker::stop()
{
    if (m_socket)
        m_socket->disconnect(this);
    delete m_socket;
    delete m_retry;
    delete m_refusedAgain;
    m_socket = nullptr;
    m_retry = nullptr;
    m_refusedAgain = nullptr;
}

void SocketChannel::Worker::write(const QByteArray &envelope)
{
    if (!m_socket || m_socket->state() != QLocalSocket::ConnectedState)
        return; // onLost ends the wait
    char length[lengthBytes];
    qToBigEndian(quint32(envelope.size()), length);
    m_socket->write(length, lengthBytes);
    m_socket->write(envelope);
}

void SocketChannel::Worker::tryToConnect()
{
    if (m_socket->state() == QLocalSocket::UnconnectedState)
        m_socket->connectToServer(m_serverName);
}

void SocketChannel::Worker::onConnected()
{
    m_in.clear();
    Envelope login = Envelope::request(Stand_MsgType::LoginRequest, {}, loginValidMs, {});
    {
        QMutexLocker lock(&m_channel->s->mutex);
        login.body = m_channel->s->loginBody;
    }
    if (login.body.isEmpty()) {
        becomeConnected();
        return;
    }
    m_loginId = login.id;
    write(login.encode());
}

void SocketChannel::Worker::onLost()
{
    m_loginId.clear();
    m_subscribing.clear();
    m_refused.clear();
    m_refusedAgain->stop();
    m_isRefusalTold = false;
    m_channel->setConnection(Connection::Disconnected);
}

void SocketChannel::Worker::onBytes()
{
    m_in += m_socket->readAll();
    int at = 0;
    while (m_in.size() - at >= lengthBytes) {
        const quint32 length = qFromBigEndian<quint32>(m_in.constData() + at);
        if (length > maxEnvelope) {
            qWarning("SocketChannel: an envelope of %u bytes is announced, disconnecting", length);
            m_socket->abort();
            return;
        }
        if (quint32(m_in.size() - at - lengthBytes) < length)
            break;
        const QByteArray envelope = m_in.mid(at + lengthBytes, int(length));
        at += lengthBytes + int(length);
        onEnvelope(envelope);
        if (m_socket->state() != QLocalSocket::ConnectedState)
            return;
    }
    m_in.remove(0, at);
}

void SocketChannel::Worker::onEnvelope(const QByteArray &bytes)
{
    Envelope envelope;
    QString errorText;
    const bool isRepeating = !m_loginId.isEmpty() || !m_subscribing.isEmpty();
    const bool isAnswer =
        isRepeating && Envelope::decode(bytes, envelope, errorText) && envelope.kind == Envelope::Kind::Answer;
    if (isAnswer && envelope.id == m_loginId)
        onLoginAnswer(envelope);
    else if (isAnswer && m_subscribing.contains(envelope.id))
        onSubscriptionAnswer(envelope);
    else if (m_loginId.isEmpty())
        m_channel->received(bytes);
}

void SocketChannel::Worker::onLoginAnswer(const Envelope &answer)
{
    if (!isSuccess(answer)) {
        HOST_INFO("SocketChannel", "SocketChannel: the repeated login was refused");
        m_socket->abort(); // the retry timer tries again
        return;
    }
    m_loginId.clear();
    QVector<Envelope> accepted;
    {
        QMutexLocker lock(&m_channel->s->mutex);
        accepted = m_channel->s->accepted;
    }
    repeat(accepted);
    if (accepted.isEmpty())
        becomeConnected();
}

void SocketChannel::Worker::repeat(const QVector<Envelope> &subscriptions)
{
    for (const Envelope &subscription : subscriptions) {
        Envelope again = Envelope::request(subscription.type, {}, loginValidMs, {});
        again.body = subscription.body;
        m_subscribing.insert(again.id, subscription);
        write(again.encode());
    }
}

void SocketChannel::Worker::onSubscriptionAnswer(const Envelope &answer)
{
    const Envelope subscription = m_subscribing.take(answer.id);
    QString refusal;
    if (!isSuccess(answer, refusal)) {
        m_refused.append(subscription);
        tellRefused(refusal);
    }
    if (!m_subscribing.isEmpty())
        return;
    if (m_channel->connection() != Connection::Connected)
        becomeConnected();
    if (!m_refused.isEmpty())
        m_refusedAgain->start();
    else if (m_isRefusalTold)
        tell(RequestTexts::pushesAccepted());
}

/// A picture of which a part is not pushed any more looks alive, so the user is told; the rest he can still use.
void SocketChannel::Worker::tellRefused(const QString &refusal)
{
    if (!std::exchange(m_isRefusalTold, true))
        tell(RequestTexts::pushesRefused(refusal));
}

void SocketChannel::Worker::becomeConnected()
{
    m_channel->setConnection(Connection::Connected);
    QMutexLocker lock(&m_channel->s->mutex);
    m_channel->s->connected.wakeAll();
}

SocketChannel::SocketChannel(const QString &serverName)
    : s(std::make_unique<Private>())
{
    s->worker = std::make_unique<Worker>(this, serverName);
    Worker *worker = s->worker.get();
    worker->moveToThread(&s->thread);
    QObject::connect(&s->thread, &QThread::started, worker, [worker] { worker->start(); });
    s->thread.setAtEnd([worker] { worker->stop(); }); // socket and timer die on their own thread
    s->thread.setObjectName(QStringLiteral("SocketChannel"));
    s->thread.startLoop();
}

SocketChannel::~SocketChannel()
{
    SocketChannel::close();
    s->thread.endLoop();
}

bool SocketChannel::waitForConnected(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QMutexLocker lock(&s->mutex);
    while (connection() != Connection::Connected) {
        if (connection() == Connection::Closed || !s->connected.wait(&s->mutex, deadline))
            return false;
    }
    return true;
}

MessageChannel::Reply SocketChannel::request(const Envelope &envelope, int timeoutMs)
{
    const Reply reply = StreamChannel::request(envelope, timeoutMs);
    remember(envelope, reply);
    return reply;
}

bool SocketChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    return StreamChannel::send(envelope, timeoutMs, [this, envelope, handler = std::move(handler)](const Reply &reply) {
        remember(envelope, reply);
        handler(reply);
    });
}

void SocketChannel::remember(const Envelope &envelope, const Reply &reply)
{
    const bool isLogin = envelope.type == Stand_MsgType::LoginRequest;
    if (reply.outcome != Outcome::Answered || !(isLogin || envelope.type == Stand_MsgType::SubscribeRequest) ||
        !isSuccess(reply.envelope))
        return;
    QMutexLocker lock(&s->mutex);
    if (isLogin) {
        s->loginBody = repeated(envelope.body);
    } else {
        const auto same = [&](const Envelope &other) { return other.body == envelope.body; };
        if (std::none_of(s->accepted.cbegin(), s->accepted.cend(), same))
            s->accepted.append(envelope);
    }
}

void SocketChannel::close()
{
    StreamChannel::close();
    {
        QMutexLocker lock(&s->mutex);
        s->connected.wakeAll();
    }
    if (QThread::currentThread() != &s->thread)
        s->thread.endLoop();
    else
        s->thread.quit();
}

bool SocketChannel::transmit(const QByteArray &envelope)
{
    if (quint32(envelope.size()) > maxEnvelope)
        return false;
    Worker *worker = s->worker.get();
    return QMetaObject::invokeMethod(
        worker, [worker, envelope] { worker->write(envelope); }, Qt::QueuedConnection);
}
