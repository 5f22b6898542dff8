#pragma once

#include "JournalRecord.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

/// How often what was noted of each family. Any thread may call.
class FamilyNotes : public JournalSink
{
public:
    using Kind = JournalRecord::Kind;

    void append(Kind kind, const Envelope &envelope) override
    {
        QMutexLocker lock(&m_mutex);
        ++m_counts[{int(kind), envelope.type}];
    }

    void clear()
    {
        QMutexLocker lock(&m_mutex);
        m_counts.clear();
    }

    int count(Kind kind, const QString &key) const
    {
        QMutexLocker lock(&m_mutex);
        return m_counts.value({int(kind), key});
    }

private:
    mutable QMutex m_mutex;
    QHash<QPair<int, QString>, int> m_counts;
};
