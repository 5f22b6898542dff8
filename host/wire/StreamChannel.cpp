#include "StreamChannel.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>

#include <thread>
#include <vector>

namespace {

constexpr int interruptCheckMs = 20;

/// Who waits for one answer: a blocked caller, or a handler of send().
struct Waiter {
    StreamChannel::ReplyHandler handler; ///< empty for a blocked caller
    QDeadlineTimer deadline;
    QWaitCondition ended;
    bool done = false;
    StreamChannel::Reply reply;
};
using WaiterPointer = std::shared_ptr<Waiter>;

StreamChannel::Reply replyOf(StreamChannel::Outcome outcome, const char *text)
{
    StreamChannel::Reply reply;
    reply.outcome = outcome;
    reply.errorText = QString::fromLatin1(text);
    return reply;
}

} // namespace

class StreamChannel::Private
{
public:
    /// Registers a waiter; null with the reason when the envelope cannot leave.
    WaiterPointer add(const Envelope &envelope, int timeoutMs, ReplyHandler handler, QString &errorText);
    WaiterPointer take(const QString &id);
    void endAll(const Reply &reply); ///< with the mutex held
    void startClock();               ///< with the mutex held
    void runClock();
    std::vector<WaiterPointer> expired(); ///< with the mutex held

    QMutex transmitMutex; ///< before mutex, when both are held
    QMutex mutex;
    QHash<QString, WaiterPointer> waiters;
    std::vector<WaiterPointer> endedSends; ///< whose handlers the clock thread is to run
    Connection connection = Connection::Disconnected;
    QDateTime since = QDateTime::currentDateTimeUtc();

    QWaitCondition clockWoken;
    std::thread clock; ///< runs what is not caused by a message: time-outs and ends of sends
    bool clockStops = false;

    std::shared_ptr<PushHandler> pushHandler;
    std::shared_ptr<PushHandler> runningHandler;
    std::thread::id runningOn;
    QWaitCondition handlerDone;
};

WaiterPointer StreamChannel::Private::add(const Envelope &envelope, int timeoutMs, ReplyHandler handler,
                                          QString &errorText)
{
    auto waiter = std::make_shared<Waiter>();
    waiter->deadline = QDeadlineTimer(qMax(0, timeoutMs));
    waiter->handler = std::move(handler);

    QMutexLocker lock(&mutex);
    if (envelope.body.isEmpty())
        errorText = QStringLiteral("the message cannot be encoded");
    else if (connection != Connection::Connected)
        errorText = connection == Connection::Closed ? QStringLiteral("closed") : QStringLiteral("disconnected");
    else if (waiters.contains(envelope.id))
        errorText = QStringLiteral("a request of the same id is under way");
    else {
        waiters.insert(envelope.id, waiter);
        if (waiter->handler)
            startClock();
        return waiter;
    }
    return nullptr;
}

WaiterPointer StreamChannel::Private::take(const QString &id)
{
    QMutexLocker lock(&mutex);
    return waiters.take(id);
}

void StreamChannel::Private::endAll(const Reply &reply)
{
    for (const WaiterPointer &waiter : qAsConst(waiters)) {
        waiter->reply = reply;
        waiter->reply.wasCut = true;
        waiter->done = true;
        if (waiter->handler)
            endedSends.push_back(waiter);
        waiter->ended.wakeAll();
    }
    waiters.clear();
    clockWoken.wakeAll();
}

void StreamChannel::Private::startClock()
{
    if (!clock.joinable())
        clock = std::thread([this] { runClock(); });
    clockWoken.wakeAll();
}

std::vector<WaiterPointer> StreamChannel::Private::expired()
{
    std::vector<WaiterPointer> out;
    out.swap(endedSends);
    for (auto it = waiters.begin(); it != waiters.end();) {
        if (it.value()->handler && it.value()->deadline.hasExpired()) {
            it.value()->reply = replyOf(Outcome::TimedOut, "timed out");
            out.push_back(it.value());
            it = waiters.erase(it);
        } else {
            ++it;
        }
    }
    return out;
}

void StreamChannel::Private::runClock()
{
    QMutexLocker lock(&mutex);
    for (;;) {
        const std::vector<WaiterPointer> due = expired();
        if (!due.empty()) {
            lock.unlock();
            for (const WaiterPointer &waiter : due)
                waiter->handler(waiter->reply);
            lock.relock();
            continue;
        }
        if (clockStops)
            return;
        QDeadlineTimer next(QDeadlineTimer::Forever);
        for (const WaiterPointer &waiter : qAsConst(waiters)) {
            if (waiter->handler)
                next = qMin(next, waiter->deadline);
        }
        clockWoken.wait(&mutex, next);
    }
}

StreamChannel::StreamChannel()
    : d(std::make_unique<Private>())
{}

StreamChannel::~StreamChannel()
{
    StreamChannel::close();
    {
        QMutexLocker lock(&d->mutex);
        d->clockStops = true;
        d->clockWoken.wakeAll();
    }
    if (d->clock.joinable())
        d->clock.join();
}

StreamChannel::Reply StreamChannel::request(const Envelope &envelope, int timeoutMs)
{
    Reply notSent;
    const WaiterPointer waiter = d->add(envelope, timeoutMs, {}, notSent.errorText);
    if (!waiter)
        return notSent;
    const bool left = transmitUnlessClosed(envelope);
    const QThread *caller = QThread::currentThread();

    QMutexLocker lock(&d->mutex);
    while (left && !waiter->done && !waiter->deadline.hasExpired() && !caller->isInterruptionRequested())
        waiter->ended.wait(&d->mutex, qMin(waiter->deadline, QDeadlineTimer(interruptCheckMs)));
    if (waiter->done)
        return waiter->reply;
    d->waiters.remove(envelope.id);
    return left ? replyOf(Outcome::TimedOut, "timed out") : replyOf(Outcome::NotSent, "not sent");
}

bool StreamChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    QString errorText;
    if (!d->add(envelope, timeoutMs, std::move(handler), errorText))
        return false;
    // Whoever took the waiter meanwhile runs its handler: then it counts as sent.
    return transmitUnlessClosed(envelope) || !d->take(envelope.id);
}

bool StreamChannel::transmitUnlessClosed(const Envelope &envelope)
{
    const QByteArray bytes = envelope.encode();
    QMutexLocker order(&d->transmitMutex);
    return connection() == Connection::Connected && transmit(bytes);
}

bool StreamChannel::subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                              int timeoutMs)
{
    const Reply reply = request(Envelope::subscription(pushType, filter, serviceName, timeoutMs), timeoutMs);
    MessageBody answer;
    QString errorText;
    return reply.outcome == Outcome::Answered && MessageBody::decode(reply.envelope.body, answer, errorText) &&
           answer.values.value(Orvane_Fields::System::requestExeStatus).toString() ==
               Orvane_Values::RequestExeStatus::success;
}

void StreamChannel::setPushHandler(PushHandler handler)
{
    auto next = handler ? std::make_shared<PushHandler>(std::move(handler)) : nullptr;
    QMutexLocker lock(&d->mutex);
    d->pushHandler.swap(next);
    while (next && d->runningHandler == next && d->runningOn != std::this_thread::get_id())
        d->handlerDone.wait(&d->mutex);
}

StreamChannel::Connection StreamChannel::connection() const
{
    QMutexLocker lock(&d->mutex);
    return d->connection;
}

QDateTime StreamChannel::connectionSince() const
{
    QMutexLocker lock(&d->mutex);
    return d->since;
}

void StreamChannel::close()
{
    setConnection(Connection::Closed);
    QMutexLocker running(&d->transmitMutex); // a transmit that began before has ended when close() returns
}

void StreamChannel::received(const QByteArray &bytes)
{
    Envelope envelope;
    QString errorText;
    if (!Envelope::decode(bytes, envelope, errorText)) {
        qWarning() << "StreamChannel: dropped" << bytes.size() << "bytes:" << errorText;
        return;
    }
    if (envelope.kind == Envelope::Kind::Answer)
        receivedAnswer(envelope);
    else if (envelope.kind == Envelope::Kind::Push)
        receivedPush(envelope);
}

void StreamChannel::receivedAnswer(const Envelope &envelope)
{
    Reply reply;
    reply.outcome = Outcome::Answered;
    reply.envelope = envelope;

    QMutexLocker lock(&d->mutex);
    const WaiterPointer waiter = d->waiters.take(envelope.id);
    if (!waiter)
        return;
    if (waiter->handler) {
        lock.unlock();
        waiter->handler(reply);
        return;
    }
    waiter->reply = reply;
    waiter->done = true;
    waiter->ended.wakeAll();
}

void StreamChannel::receivedPush(const Envelope &envelope)
{
    QMutexLocker lock(&d->mutex);
    const std::shared_ptr<PushHandler> handler = d->pushHandler;
    if (!handler)
        return;
    d->runningHandler = handler;
    d->runningOn = std::this_thread::get_id();
    lock.unlock();
    (*handler)(envelope);
    lock.relock();
    d->runningHandler.reset();
    d->handlerDone.wakeAll();
}

void StreamChannel::setConnection(Connection connection)
{
    QMutexLocker lock(&d->mutex);
    if (d->connection == connection || d->connection == Connection::Closed)
        return;
    d->connection = connection;
    d->since = qMax(QDateTime::currentDateTimeUtc(), d->since.addMSecs(1));
    if (connection == Connection::Closed)
        d->endAll(replyOf(Outcome::NotSent, "closed"));
    else if (connection == Connection::Disconnected)
        d->endAll(replyOf(Outcome::TimedOut, "connection lost"));
}
