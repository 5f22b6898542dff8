#include "LocalChannel.h"

#include <QtCore/QMutex>
#include <QtCore/QQueue>
#include <QtCore/QWaitCondition>

#include <thread>

namespace {

/// Runs functions one by one on a thread of its own, in their order. finish() lets the one in work end and
/// forgets the rest.
class DeliveryThread
{
public:
    DeliveryThread()
        : m_thread([this] { run(); })
    {}
    ~DeliveryThread() { join(); }
    Q_DISABLE_COPY(DeliveryThread)

    void add(std::function<void()> work)
    {
        QMutexLocker lock(&m_mutex);
        if (m_finished)
            return;
        m_queue.enqueue(std::move(work));
        m_changed.wakeOne();
    }

    void finish()
    {
        QMutexLocker lock(&m_mutex);
        m_finished = true;
        m_queue.clear();
        m_changed.wakeOne();
    }

    /// Waits for the end, which finish() has asked for; does nothing on this object's own thread.
    void join()
    {
        {
            QMutexLocker lock(&m_mutex);
            if (m_runner == std::this_thread::get_id())
                return;
        }
        QMutexLocker lock(&m_joining);
        if (m_thread.joinable())
            m_thread.join();
    }

private:
    void run()
    {
        {
            QMutexLocker lock(&m_mutex);
            m_runner = std::this_thread::get_id();
        }
        while (const auto work = next())
            work();
    }

    /// Waits for work; empty at the end.
    std::function<void()> next()
    {
        QMutexLocker lock(&m_mutex);
        while (m_queue.isEmpty() && !m_finished)
            m_changed.wait(&m_mutex);
        return m_finished ? std::function<void()>() : m_queue.dequeue();
    }

    QMutex m_mutex;
    QWaitCondition m_changed;
    QQueue<std::function<void()>> m_queue;
    bool m_finished = false;
    std::thread::id m_runner;
    QMutex m_joining;     ///< several threads may join at once
    std::thread m_thread; ///< the last member: it uses the others as soon as it exists
};

} // namespace

class LocalChannel::Private
{
public:
    std::shared_ptr<PaperGateway> gateway;
    PaperGateway::ClientId client = 0;
    DeliveryThread delivery;
};

LocalChannel::LocalChannel(std::shared_ptr<PaperGateway> gateway)
    : d(new Private)
{
    d->gateway = std::move(gateway);
    setConnection(Connection::Connected);
    d->client = d->gateway->connectClient(
        {[this](const QByteArray &bytes) { d->delivery.add([this, bytes] { received(bytes); }); },
         [this] { d->delivery.add([this] { setConnection(Connection::Disconnected); }); }});
}

LocalChannel::~LocalChannel()
{
    close();
}

void LocalChannel::close()
{
    StreamChannel::close();
    d->gateway->disconnectClient(d->client);
    d->delivery.finish();
    d->delivery.join();
}

bool LocalChannel::transmit(const QByteArray &envelope)
{
    d->gateway->receive(d->client, envelope);
    return true;
}
