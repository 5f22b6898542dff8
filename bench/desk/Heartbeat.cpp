#include "Heartbeat.h"

#include <algorithm>

Heartbeat::Heartbeat()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { beat(); });
    m_clock.start();
    m_timer.start(IntervalMs);
}

void Heartbeat::beat()
{
    const qint64 now = m_clock.elapsed();
    for (; m_due <= now; m_due += IntervalMs) {
        const qint64 late = now - m_due;
        ++m_result.beats;
        m_result.late += late > LateMs ? 1 : 0;
        m_result.worst = std::max(m_result.worst, late);
    }
}
