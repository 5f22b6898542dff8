#pragma once

#include <QtCore/qglobal.h>

#include <ctime>

/// The processor time that the calling thread has used since the timer was made. Other programs on the machine
/// stretch the time on the wall, not this one.
class CpuTimer
{
public:
    qint64 nanoseconds() const { return now() - m_start; }

private:
    static qint64 now()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
    }

    const qint64 m_start = now();
};
