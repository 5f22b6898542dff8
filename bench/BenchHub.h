#pragma once

#include "CpuTimer.h"
#include "ManualT0LogicPrivate.h"
#include "Records.h"

#include <random>

enum class Family { Usage, Pools, Resources }; ///< Resources: with their pools

/// A hub that holds records of one family, filled through its own slots with rows as they are received. Needs an open
/// host session of Records::reference(), which must outlive it.
class BenchHub
{
public:
    BenchHub(Family family, const QVector<Records::Keys> &keys);

    /// One hub of a family and size, kept until the program ends or forgetAll().
    static BenchHub &of(Family family, int records);
    static void forgetAll();

    const QVector<Records::Keys> &keys() const { return m_keys; }
    const ManualT0LogicPrivate &hub() const { return m_hub; }
    ManualT0LogicPrivate &hub() { return m_hub; }
    RecordList records() const; ///< all the hub holds of its family (of Resources: the pools), as it gives them

    QVector<Records::Keys> randomKeys(int count); ///< every call draws others

    /// Usage records newer than everything before, for random keys.
    RecordList newPushes(int count);

    /// Does it on the hub's thread; the processor time that took, in nanoseconds.
    template <typename Work> qint64 onItsThread(Work work)
    {
        qint64 nanoseconds = 0;
        QMetaObject::invokeMethod(
            &m_hub,
            [&] {
                const CpuTimer timer;
                work();
                nanoseconds = timer.nanoseconds();
            },
            Qt::BlockingQueuedConnection);
        return nanoseconds;
    }

    void push(const VariantRecord &record) { m_hub.slotRecvPoolRealtimeChangedPush(record); }
    void answerPools(const QString &account, const RecordList &rows);

private:
    void fillUsage();
    void fillPools();
    void fillResources();

    const QVector<Records::Keys> m_keys;
    const Family m_family;
    ManualT0LogicPrivate m_hub;
    std::mt19937 m_random;
    qint64 m_time = 0; ///< of the newest usage record
};
