#pragma once

#include "HostExport.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

#include <memory>

/// Collects items and announces them together. Lives on its parent's thread and is used only there.
class T0_HOST_EXPORT MasterDelayBuffer : public QObject
{
    Q_OBJECT

public:
    MasterDelayBuffer(QObject *parent, int delayMs);
    ~MasterDelayBuffer() override;

    /// Keeps the item, an invalid one too, and restarts the delay; bufferTimeOut comes at the latest five
    /// delays after the first item of a batch, so that a steady stream cannot put it off for ever.
    void AppendItem(const QVariant &item);

    QVariantList GetBufferItems(); ///< takes the items out, which ends a batch that was not announced yet

signals:
    void bufferTimeOut(); ///< once a batch

private:
    QVariantList m_items;
    QTimer m_timer;
    QElapsedTimer m_sinceFirst;
    int m_delayMs;
    std::shared_ptr<const void> m_batch; ///< set from the first item of a batch to its announcement
};
