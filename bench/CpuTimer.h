#pragma once

#include <QtCore/qglobal.h>

#include <ctime>

/// The processor time that the calling thread, or the process, has used since the timer was made. Other programs on
/// the machine stretch the time on the wall, not this one.
class CpuTimer
{
public:
    enum Of { Thread = CLOCK_THREAD_CPUTIME_ID, Process = CLOCK_PROCESS_CPUTIME_ID };

    explicit CpuTimer(Of of = Thread)
        : m_of(of)
    {}

    qint64 nanoseconds() const { return now() - m_start; }

private:
    qint64 now() const
    {
        timespec time{};
        clock_gettime(m_of, &time);
        return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
    }

    Of m_of;
    qint64 m_start = now();
};
