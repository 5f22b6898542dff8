#include "EventBus.h"

#include "core/Activity.h"
#include "core/EventBusState.h"
#include "message/PresenterThread.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QVector>

#include <atomic>
#include <memory>

namespace {

using AnyListener = std::function<void(const QString &eventName, const QVariant &payload)>;

struct Registration {
    QString eventName; ///< null: every event
    QObject *context = nullptr;
    std::shared_ptr<const AnyListener> listener;
    std::shared_ptr<std::atomic<bool>> ended;
    QMetaObject::Connection contextDestroyed;
};

struct Bus {
    QMutex mutex;
    QVector<Registration> registrations;
};

Bus &bus()
{
    static auto *bus = new Bus; // never deleted: contexts may outlive every static
    return *bus;
}

thread_local int sendsOnThisThread = 0;

void removeIf(const std::function<bool(const Registration &)> &condition)
{
    QMutexLocker lock(&bus().mutex);
    QVector<Registration> kept;
    for (const Registration &registration : qAsConst(bus().registrations)) {
        if (!condition(registration)) {
            kept.append(registration);
            continue;
        }
        *registration.ended = true;
        QObject::disconnect(registration.contextDestroyed);
    }
    bus().registrations = kept;
}

void add(const QString &eventName, QObject *context, AnyListener listener)
{
    Q_ASSERT_X(context, "EventBus", "a listener needs a context");
    Q_ASSERT_X(!dynamic_cast<PresenterThread *>(context->thread()), "EventBus",
               "a listener on a presenter's thread would hold up the pushes");
    Registration registration;
    registration.eventName = eventName;
    registration.context = context;
    registration.listener = std::make_shared<const AnyListener>(std::move(listener));
    registration.ended = std::make_shared<std::atomic<bool>>(false);
    // Direct, so that the context leaves the list before it is gone.
    registration.contextDestroyed = QObject::connect(
        context, &QObject::destroyed, context,
        [context] { removeIf([context](const Registration &other) { return other.context == context; }); },
        Qt::DirectConnection);

    QMutexLocker lock(&bus().mutex);
    bus().registrations.append(registration);
}

void deliver(const Registration &registration, const QString &eventName, const QVariant &payload)
{
    Q_ASSERT_X(sendsOnThisThread == 0, "EventBus", "a listener may not run inside SendEventMsg");
    if (*registration.ended)
        return;
    Q_ASSERT_X(QThread::currentThread() == registration.context->thread(), "EventBus",
               "a listener runs on the thread of its context");
    (*registration.listener)(eventName, payload);
}

} // namespace

void EventBus::listen(const QString &eventName, QObject *context, Listener listener)
{
    add(eventName, context,
        [listener = std::move(listener)](const QString &, const QVariant &payload) { listener(payload); });
}

void EventBus::listenToAll(QObject *context,
                           std::function<void(const QString &eventName, const QVariant &payload)> listener)
{
    add(QString(), context, std::move(listener));
}

void EventBus::stopListening(QObject *context)
{
    removeIf([context](const Registration &registration) { return registration.context == context; });
}

void EventBusState::send(const QString &eventName, const QVariant &payload)
{
    ++sendsOnThisThread;
    {
        // Posting under the mutex keeps every context alive until its call is posted, and the order of one
        // sender's events the same for all listeners.
        QMutexLocker lock(&bus().mutex);
        for (const Registration &registration : qAsConst(bus().registrations)) {
            if (!registration.eventName.isNull() && registration.eventName != eventName)
                continue;
            QMetaObject::invokeMethod(
                registration.context,
                [registration, eventName, payload, token = Activity::begin()] {
                    deliver(registration, eventName, payload);
                },
                Qt::QueuedConnection);
        }
    }
    --sendsOnThisThread;
}

void EventBusState::clear()
{
    removeIf([](const Registration &) { return true; });
}
