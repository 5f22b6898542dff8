#include "MasterDelayBuffer.h"

#include "core/Activity.h"

namespace {
constexpr int longestWaitInDelays = 5;
}

MasterDelayBuffer::MasterDelayBuffer(QObject *parent, int delayMs)
    : QObject(parent)
    , m_timer(this)
    , m_delayMs(qMax(0, delayMs))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        const Activity::Token announcing = std::move(m_batch);
        m_batch.reset();
        emit bufferTimeOut();
    });
}

MasterDelayBuffer::~MasterDelayBuffer() = default;

void MasterDelayBuffer::AppendItem(const QVariant &item)
{
    if (!m_batch) {
        m_batch = Activity::begin();
        m_sinceFirst.start();
    }
    m_items.append(item);
    const qint64 left = qint64(longestWaitInDelays) * m_delayMs - m_sinceFirst.elapsed();
    m_timer.start(int(qBound(qint64(0), left, qint64(m_delayMs))));
}

QVariantList MasterDelayBuffer::GetBufferItems()
{
    m_timer.stop();
    m_batch.reset();
    QVariantList items;
    items.swap(m_items);
    return items;
}
