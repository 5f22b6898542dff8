#include "LivingObjects.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QObject>
#include <QtCore/QThread>
#include <QtCore/QVector>

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

/// Lets go of the token when the call has come through every object or was dropped with it.
void passThrough(const std::shared_ptr<const void> &token)
{
    // No object can leave the list meanwhile, so none can be gone before its call is posted.
    LivingObjects::forEach([&token](QObject *object) {
        QMetaObject::invokeMethod(
            object, [token] {}, Qt::QueuedConnection);
    });
}

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
    auto token = std::make_shared<char>();
    const std::weak_ptr<char> open = token;
    passThrough(std::move(token));
    while (!open.expired()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents();
        if (!open.expired())
            QThread::yieldCurrentThread();
    }
    return true;
}

void LivingObjects::afterAll(std::function<void()> then)
{
    passThrough(std::shared_ptr<const void>(nullptr, [then = std::move(then)](const void *) { then(); }));
}
