#include "LivingObjects.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QObject>
#include <QtCore/QThread>
#include <QtCore/QVector>

#include <atomic>
#include <memory>

namespace {

struct Registry {
    QMutex mutex;
    QVector<QObject *> objects;
};

Registry &registry()
{
    static auto *registry = new Registry; // never deleted: objects may outlive every static
    return *registry;
}

/// Counts itself; the copy inside a queued call goes when the call was run or dropped.
class Passage
{
public:
    explicit Passage(std::shared_ptr<std::atomic<int>> open)
        : m_open(std::move(open))
    {
        ++*m_open;
    }
    Passage(const Passage &other)
        : m_open(other.m_open)
    {
        ++*m_open;
    }
    Passage &operator=(const Passage &) = delete;
    ~Passage() { --*m_open; }

private:
    std::shared_ptr<std::atomic<int>> m_open;
};

} // namespace

void LivingObjects::add(QObject *object)
{
    QMutexLocker lock(&registry().mutex);
    registry().objects.append(object);
}

void LivingObjects::remove(QObject *object)
{
    QMutexLocker lock(&registry().mutex);
    registry().objects.removeAll(object);
}

void LivingObjects::forEach(const std::function<void(QObject *)> &call)
{
    QMutexLocker lock(&registry().mutex);
    for (QObject *object : qAsConst(registry().objects))
        call(object);
}

bool LivingObjects::passThroughAll(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    const auto open = std::make_shared<std::atomic<int>>(0);
    forEach([&open](QObject *object) {
        const Passage passage(open);
        QMetaObject::invokeMethod(
            object, [passage] {}, Qt::QueuedConnection);
    });
    while (*open > 0) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents();
        if (*open > 0)
            QThread::yieldCurrentThread();
    }
    return true;
}
