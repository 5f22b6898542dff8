#include "Background.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QQueue>
#include <QtCore/QThreadPool>

namespace {

using Work = std::function<void()>;

struct Lanes {
    QMutex mutex;
    QHash<QString, QQueue<Work>> waiting; ///< a lane that is here runs
    QThreadPool pool;

    Lanes() { pool.setMaxThreadCount(64); } // they wait for the server, not for a processor
};

Lanes &lanes()
{
    static auto *lanes = new Lanes; // waitForAll() ends its threads
    return *lanes;
}

/// The next work of a lane; the lane is gone when there is none.
Work next(const QString &lane)
{
    const QMutexLocker lock(&lanes().mutex);
    QQueue<Work> &queue = lanes().waiting[lane];
    if (!queue.isEmpty())
        return queue.dequeue();
    lanes().waiting.remove(lane);
    return {};
}

} // namespace

void Background::runInLane(const QString &lane, std::function<void()> work)
{
    const QMutexLocker lock(&lanes().mutex);
    const bool runs = lanes().waiting.contains(lane);
    lanes().waiting[lane].enqueue(std::move(work));
    if (runs)
        return;
    lanes().pool.start([lane] {
        while (const Work work = next(lane))
            work();
    });
}

bool Background::isIdle()
{
    const QMutexLocker lock(&lanes().mutex);
    return lanes().waiting.isEmpty();
}

void Background::waitForAll()
{
    lanes().pool.waitForDone();
}
