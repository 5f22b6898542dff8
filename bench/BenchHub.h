#pragma once

#include "ManualT0LogicPrivate.h"
#include "Records.h"

#include <random>

/// A hub that holds as many usage records as pools, filled through its own slots. Needs an open host session
/// of Records::reference(), which must outlive it.
class BenchHub
{
public:
    BenchHub(int records, int ofFirstAccount);

    int size() const { return m_keys.size(); }
    const ManualT0LogicPrivate &hub() const { return m_hub; }

    /// Keys of random records that are held; every call draws others.
    QVector<Records::Keys> randomKeys(int count);

    /// Usage records newer than everything before, for random keys.
    QVector<VariantRecord> newPushes(int count);

    /// Answers for the first account; in each another tenth of the quantities has changed.
    QVector<RecordList> newPoolAnswers(int count);

    /// Merges them on the hub's thread and returns the processor time that took, in nanoseconds.
    qint64 mergePushes(QVector<VariantRecord> pushes);
    qint64 takePoolAnswers(QVector<RecordList> answers);

private:
    void fillUsage();
    void fillPools();
    void answerPools(const QString &account, const RecordList &rows);

    const QVector<Records::Keys> m_keys;
    ManualT0LogicPrivate m_hub;
    std::mt19937 m_random;
    qint64 m_time = 0; ///< of the newest usage record
    int m_answers = 0;
};
