#include "SimDispatcher.h"

#include "SimClock.h"

#include <QtCore/QCoreApplication>

#include <tuple>

namespace {
constexpr qint64 usPerMs = 1000;
}

int SimDispatcher::nextTimer(const Allowed &allowed) const
{
    const Timer *first = nullptr;
    int next = 0;
    for (const auto &[id, timer] : m_timers) {
        if (first && std::tie(first->due, first->order) < std::tie(timer.due, timer.order))
            continue;
        if (allowed(timer.owner)) {
            first = &timer;
            next = id;
        }
    }
    return next;
}

void SimDispatcher::fire(int timer)
{
    Timer &due = m_timers.at(timer);
    // A timer without an interval would hold the clock.
    due.due = SimClock::now() + qMax(due.interval, usPerMs);
    QTimerEvent event(timer);
    QCoreApplication::sendEvent(due.owner, &event);
}

bool SimDispatcher::processEvents(QEventLoop::ProcessEventsFlags)
{
    QCoreApplication::sendPostedEvents();
    return true;
}

void SimDispatcher::registerTimer(int timer, int intervalMs, Qt::TimerType type, QObject *owner)
{
    const qint64 interval = intervalMs * usPerMs;
    m_timers[timer] = {SimClock::now() + interval, interval, type, owner, ++m_lastOrder};
}

bool SimDispatcher::unregisterTimer(int timer)
{
    return m_timers.erase(timer) > 0;
}

bool SimDispatcher::unregisterTimers(QObject *owner)
{
    bool any = false;
    for (auto timer = m_timers.begin(); timer != m_timers.end();) {
        const bool isOwn = timer->second.owner == owner;
        any = any || isOwn;
        timer = isOwn ? m_timers.erase(timer) : std::next(timer);
    }
    return any;
}

QList<QAbstractEventDispatcher::TimerInfo> SimDispatcher::registeredTimers(QObject *owner) const
{
    QList<TimerInfo> infos;
    for (const auto &[id, timer] : m_timers) {
        if (timer.owner == owner)
            infos.append(TimerInfo(id, int(timer.interval / usPerMs), timer.type));
    }
    return infos;
}

int SimDispatcher::remainingTime(int timer)
{
    const auto found = m_timers.find(timer);
    return found == m_timers.end() ? -1 : int(qMax<qint64>(0, found->second.due - SimClock::now()) / usPerMs);
}
