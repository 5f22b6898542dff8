#include "SimClock.h"

#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr qint64 start = 1767576600; ///< a Monday morning, seconds since the epoch
constexpr qint64 million = 1000000;
qint64 microseconds = 0;

} // namespace

qint64 SimClock::now()
{
    return microseconds;
}

void SimClock::set(qint64 us)
{
    microseconds = us;
}

double SimClock::realSeconds()
{
    timespec time{};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

extern "C" {

Q_DECL_EXPORT int clock_gettime(clockid_t, timespec *time) noexcept
{
    time->tv_sec = start + microseconds / million;
    time->tv_nsec = microseconds % million * 1000;
    return 0;
}

Q_DECL_EXPORT int gettimeofday(timeval *time, void *) noexcept
{
    time->tv_sec = start + microseconds / million;
    time->tv_usec = microseconds % million;
    return 0;
}

Q_DECL_EXPORT time_t time(time_t *result) noexcept
{
    const time_t seconds = start + microseconds / million;
    if (result)
        *result = seconds;
    return seconds;
}

} // extern "C"
