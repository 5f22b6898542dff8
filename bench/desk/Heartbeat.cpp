#include "Heartbeat.h"

#include <algorithm>
#include <chrono>

void Beats::beat(qint64 now)
{
    for (; m_due <= now; m_due += IntervalMs) {
        const qint64 late = now - m_due;
        ++m_result.beats;
        m_result.late += late > LateMs ? 1 : 0;
        m_result.worst = std::max(m_result.worst, late);
    }
}

Heartbeat::Heartbeat()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { m_beats.beat(m_clock.elapsed()); });
    m_clock.start();
    m_timer.start(Beats::IntervalMs);
}

BareThread::BareThread()
    : m_thread([this] { run(); })
{}

BareThread::~BareThread()
{
    stop();
}

Beats::Result BareThread::stop()
{
    m_stops = true;
    if (m_thread.joinable())
        m_thread.join();
    return m_beats.result();
}

void BareThread::run()
{
    QElapsedTimer clock;
    clock.start();
    while (!m_stops) {
        std::this_thread::sleep_for(std::chrono::milliseconds(m_beats.due() - clock.elapsed()));
        m_beats.beat(clock.elapsed());
    }
}
