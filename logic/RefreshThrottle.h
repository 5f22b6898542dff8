#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QMutex>

/// Accepts at most one refresh in 30 whole seconds. Callable from any thread.
class RefreshThrottle
{
public:
    static constexpr qint64 WindowSeconds = 30;

    /// now: UTC. A clock that was set back accepts and starts a new window: else it would refuse for as long
    /// as it was moved.
    bool accept(const QDateTime &now)
    {
        const QMutexLocker lock(&m_mutex);
        const qint64 seconds = m_lastRefreshTime.isValid() ? m_lastRefreshTime.secsTo(now) : WindowSeconds;
        if (seconds >= 0 && seconds < WindowSeconds)
            return false;
        m_lastRefreshTime = now;
        return true;
    }

private:
    QMutex m_mutex;
    QDateTime m_lastRefreshTime;
};
