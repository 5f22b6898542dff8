#include "LockTimes.h"

#include "CpuTimer.h"

#include <QtCore/QReadWriteLock>

#include <optional>

namespace {

struct Watch {
    bool isOn = false;
    const QReadWriteLock *held = nullptr;
    std::optional<CpuTimer> since;
    LockTimes::Held times;
};

thread_local Watch watch;

} // namespace

void LockTimes::begin()
{
    watch = {};
    watch.isOn = true;
}

LockTimes::Held LockTimes::end()
{
    watch.isOn = false;
    return watch.times;
}

// The names are those of QReadWriteLock::lockForWrite() and unlock() in the object files.
extern "C" {
void __real__ZN14QReadWriteLock12lockForWriteEv(QReadWriteLock *lock);
void __real__ZN14QReadWriteLock6unlockEv(QReadWriteLock *lock);

void __wrap__ZN14QReadWriteLock12lockForWriteEv(QReadWriteLock *lock)
{
    __real__ZN14QReadWriteLock12lockForWriteEv(lock);
    if (watch.isOn && !watch.held) {
        watch.held = lock;
        watch.since.emplace();
    }
}

void __wrap__ZN14QReadWriteLock6unlockEv(QReadWriteLock *lock)
{
    if (watch.isOn && watch.held == lock) {
        const qint64 time = watch.since->nanoseconds();
        watch.held = nullptr;
        watch.times.sum += time;
        watch.times.longest = qMax(watch.times.longest, time);
    }
    __real__ZN14QReadWriteLock6unlockEv(lock);
}
}
