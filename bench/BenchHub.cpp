#include "BenchHub.h"

#include "CpuTimer.h"
#include "InitKeys.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

using Orvane_Values::RequestExeStatus::success;

namespace {

constexpr qint64 Quantity = 1000;
constexpr int RowsAtOnce = 1000;

template <typename Work> void runOnThreadOf(QObject *object, Work work)
{
    QMetaObject::invokeMethod(object, work, Qt::BlockingQueuedConnection);
}

} // namespace

BenchHub::BenchHub(int records, int ofFirstAccount)
    : m_keys(Records::keys(records, ofFirstAccount))
{
    runOnThreadOf(&m_hub, [this] {
        fillUsage();
        fillPools();
    });
}

void BenchHub::fillUsage()
{
    initStates().Reset(initKey(ManualT0Logic::RealtimeUsage));
    initStates().StartInit(initKey(ManualT0Logic::RealtimeUsage));
    for (int first = 0; first < size(); first += RowsAtOnce) {
        RecordList rows;
        for (const Records::Keys &keys : m_keys.mid(first, RowsAtOnce))
            rows.append(Records::usage(keys, Quantity, ++m_time));
        m_hub.slotQueryPoolRealTimeResponse(success, {}, rows);
    }
}

void BenchHub::fillPools()
{
    QHash<QString, RecordList> rowsOf;
    for (const Records::Keys &keys : m_keys)
        rowsOf[keys.account].append(Records::pool(keys, Quantity));

    const QString key = initKey(ManualT0Logic::SecurityPools);
    initStates().Reset(key);
    initStates().StartInit(key);
    for (auto rows = rowsOf.cbegin(); rows != rowsOf.cend(); ++rows)
        answerPools(rows.key(), rows.value());
    initStates().FinishInit(key, true, true);
    // The first answer after a load indexes all pools anew; that is part of the load.
    answerPools(Records::firstAccount(), rowsOf.value(Records::firstAccount()));
}

void BenchHub::answerPools(const QString &account, const RecordList &rows)
{
    m_hub.slotQuerySecurityPoolResponse(success, {{Orvane_Fields::UserAccount::tradingAccount, account}}, rows);
}

QVector<Records::Keys> BenchHub::randomKeys(int count)
{
    QVector<Records::Keys> result;
    result.reserve(count);
    for (int i = 0; i < count; ++i)
        result.append(m_keys.at(int(m_random() % unsigned(size()))));
    return result;
}

QVector<VariantRecord> BenchHub::newPushes(int count)
{
    QVector<VariantRecord> pushes;
    for (const Records::Keys &keys : randomKeys(count)) {
        ++m_time;
        pushes.append(Records::usage(keys, Quantity + m_time % 100, m_time));
    }
    return pushes;
}

QVector<RecordList> BenchHub::newPoolAnswers(int count)
{
    QVector<RecordList> answers;
    for (int i = 0; i < count; ++i) {
        ++m_answers;
        RecordList rows;
        for (const Records::Keys &keys : m_keys) {
            if (keys.account == Records::firstAccount())
                rows.append(Records::pool(keys, Quantity + (rows.size() % 10 == m_answers % 10 ? m_answers : 0)));
        }
        answers.append(rows);
    }
    return answers;
}

qint64 BenchHub::mergePushes(QVector<VariantRecord> pushes)
{
    qint64 nanoseconds = 0;
    runOnThreadOf(&m_hub, [&] {
        const CpuTimer timer;
        for (VariantRecord &push : pushes)
            m_hub.slotRecvPoolRealtimeChangedPush(std::move(push));
        nanoseconds = timer.nanoseconds();
    });
    return nanoseconds;
}

qint64 BenchHub::takePoolAnswers(QVector<RecordList> answers)
{
    qint64 nanoseconds = 0;
    runOnThreadOf(&m_hub, [&] {
        const CpuTimer timer;
        for (RecordList &rows : answers)
            answerPools(Records::firstAccount(), std::move(rows));
        nanoseconds = timer.nanoseconds();
    });
    return nanoseconds;
}
