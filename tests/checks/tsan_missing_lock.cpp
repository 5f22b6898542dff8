// A program with one fault, named by its argument, that the thread sanitizer has to report. With "none" it has no
// fault and has to end quietly: the same threads, the same container, the same locks.
#include <QtCore/QHash>
#include <QtCore/QReadWriteLock>
#include <QtCore/QString>
#include <QtCore/QThread>

#include <cstring>
#include <functional>
#include <memory>

namespace {

constexpr int rounds = 200;

void runBoth(const std::function<void()> &first, const std::function<void()> &second)
{
    const std::unique_ptr<QThread> a(QThread::create(first));
    const std::unique_ptr<QThread> b(QThread::create(second));
    a->start();
    b->start();
    a->wait();
    b->wait();
}

/// The commonest fault of a cache behind a read-write lock: a lookup with operator[] inserts.
void lookUp(bool insertUnderReadLock)
{
    QReadWriteLock lock;
    QHash<QString, int> cache;
    const auto reader = [&](const QString &prefix) {
        for (int i = 0; i < rounds; ++i) {
            const QReadLocker locker(&lock);
            if (insertUnderReadLock)
                cache[prefix + QString::number(i % 3)];
            else
                qAsConst(cache).value(prefix + QString::number(i % 3));
        }
    };
    runBoth([&] { reader(QStringLiteral("a")); }, [&] { reader(QStringLiteral("b")); });
}

/// One order here, the other there; one after the other, so that the program itself never hangs.
void nest(bool otherWayRound)
{
    QReadWriteLock resources;
    QReadWriteLock pools;
    const auto inOrder = [&](QReadWriteLock &outer, QReadWriteLock &inner) {
        const QWriteLocker first(&outer);
        const QWriteLocker second(&inner);
    };
    const auto runAlone = [](const std::function<void()> &task) { runBoth(task, [] {}); };
    runAlone([&] { inOrder(resources, pools); });
    runAlone([&] { otherWayRound ? inOrder(pools, resources) : inOrder(resources, pools); });
}

} // namespace

int main(int argc, char **argv)
{
    const auto has = [&](const char *fault) { return argc == 2 && std::strcmp(argv[1], fault) == 0; };
    lookUp(has("write_under_read_lock"));
    nest(has("lock_order"));
    return 0;
}
