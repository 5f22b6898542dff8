#include "EventRecorder.h"

#include "EventBus.h"
#include "Interrupt.h"
#include "ManualT0Logic.h"
#include "VantaKeys.h"

#include <QtCore/QDeadlineTimer>

namespace {

constexpr int interruptCheckMs = 50;

bool isLoaded(int family)
{
    const MasterInitStateMgr::InitState state = ManualT0Logic::GetInitStateByType(family);
    return state == MasterInitStateMgr::Inited || state == MasterInitStateMgr::InitFailed;
}

} // namespace

EventRecorder::EventRecorder()
{
    m_thread.setObjectName(QStringLiteral("EventRecorder"));
    moveToThread(&m_thread);
    m_thread.start();
}

EventRecorder::~EventRecorder()
{
    EventBus::stopListening(this);
    m_thread.quit();
    m_thread.wait();
}

void EventRecorder::listen()
{
    EventBus::listenToAll(this, [this](const QString &name, const QVariant &payload) { record(name, payload); });
}

void EventRecorder::record(const QString &name, const QVariant &payload)
{
    const QMutexLocker lock(&m_mutex);
    m_events.append({name, payload});
    const bool isInited = name == Vanta_Keys::EventMsgName::ManualT0DataInited && m_clock.isValid();
    if (isInited && !m_loadTimes.contains(payload.toInt()))
        m_loadTimes.insert(payload.toInt(), m_clock.elapsed());
    if (isInited)
        m_announced.insert(payload.toInt());
    m_recorded.wakeAll();
}

QVector<EventRecorder::Event> EventRecorder::take()
{
    const QMutexLocker lock(&m_mutex);
    return std::exchange(m_events, {});
}

void EventRecorder::startClock()
{
    const QMutexLocker lock(&m_mutex);
    if (!m_clock.isValid())
        m_clock.start();
}

QMap<int, qint64> EventRecorder::loadTimes() const
{
    const QMutexLocker lock(&m_mutex);
    return m_loadTimes;
}

void EventRecorder::noteLoading()
{
    const QMutexLocker lock(&m_mutex);
    unfinished(m_announced.values());
}

/// A family's state changes before its event is sent: an event that came while it was seen loading was of an
/// earlier load.
QList<int> EventRecorder::unfinished(const QList<int> &families)
{
    QList<int> rest;
    for (const int family : families) {
        if (!isLoaded(family))
            m_announced.remove(family);
        if (!m_announced.contains(family))
            rest.append(family);
    }
    return rest;
}

QList<int> EventRecorder::waitForInited(const QList<int> &families, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QMutexLocker lock(&m_mutex);
    QList<int> rest = unfinished(families);
    while (!rest.isEmpty() && !deadline.hasExpired() && !Interrupt::requested()) {
        m_recorded.wait(&m_mutex, ulong(qBound(qint64(1), deadline.remainingTime(), qint64(interruptCheckMs))));
        rest = unfinished(families);
    }
    return rest;
}
