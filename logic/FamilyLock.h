#pragma once

#include <QtCore/QReadWriteLock>

// Clang proves with these annotations (preset threadsafety) that no guarded member is touched without its
// lock and that locks nest in their declared order; other compilers see nothing.
#ifdef __clang__
#define T0_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define T0_THREAD_ANNOTATION(x)
#endif

#define T0_GUARDED_BY(lock) T0_THREAD_ANNOTATION(guarded_by(lock))
#define T0_ACQUIRED_AFTER(lock) T0_THREAD_ANNOTATION(acquired_after(lock))
#define T0_REQUIRES(...) T0_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define T0_REQUIRES_SHARED(...) T0_THREAD_ANNOTATION(requires_shared_capability(__VA_ARGS__))
#define T0_EXCLUDES(...) T0_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))

/// The lock of one data family. Not recursive: a second read lock of one thread waits for ever once a
/// writer is queued. Taken through ReadLock and WriteLock only.
class T0_THREAD_ANNOTATION(capability("family lock")) FamilyLock : public QReadWriteLock
{
public:
    /// To be called before the first static is made whose threads lock. Qt's locks wait in a pool that is a static
    /// itself, made by the first one that waits: made later, it would be destroyed by exit() before what uses it.
    static void makePool()
    {
        static const bool isMade = [] {
            QReadWriteLock lock;
            lock.lockForRead();
            lock.tryLockForWrite(1); // in vain: only one that waits asks for the pool
            lock.unlock();
            return true;
        }();
        Q_UNUSED(isMade)
    }
};

class T0_THREAD_ANNOTATION(scoped_lockable) ReadLock
{
public:
    explicit ReadLock(FamilyLock &lock) T0_THREAD_ANNOTATION(acquire_shared_capability(lock))
        : m_locker(&lock)
    {}
    ~ReadLock() T0_THREAD_ANNOTATION(release_capability()) = default;
    void unlock() T0_THREAD_ANNOTATION(release_capability()) { m_locker.unlock(); }

private:
    Q_DISABLE_COPY(ReadLock)
    QReadLocker m_locker;
};

class T0_THREAD_ANNOTATION(scoped_lockable) WriteLock
{
public:
    explicit WriteLock(FamilyLock &lock) T0_THREAD_ANNOTATION(acquire_capability(lock))
        : m_locker(&lock)
    {}
    ~WriteLock() T0_THREAD_ANNOTATION(release_capability()) = default;
    void unlock() T0_THREAD_ANNOTATION(release_capability()) { m_locker.unlock(); }

private:
    Q_DISABLE_COPY(WriteLock)
    QWriteLocker m_locker;
};
