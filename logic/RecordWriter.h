#pragma once

#include "VariantRecord.h"

/// Overwrites a record with fields that come in ascending order of their names. Fields that the record has
/// already keep their place in memory; those that are not written are gone in the end.
class RecordWriter
{
public:
    explicit RecordWriter(VariantRecord &record)
        : m_record(record)
        , m_next(record.begin())
    {}
    ~RecordWriter()
    {
        while (m_next != m_record.end())
            m_next = m_record.erase(m_next);
    }
    RecordWriter(const RecordWriter &) = delete;
    RecordWriter &operator=(const RecordWriter &) = delete;

    void write(const QString &field, const QVariant &value)
    {
        while (m_next != m_record.end()) {
            if (m_next.key() == field) {
                *m_next++ = value;
                return;
            }
            if (field < m_next.key())
                break;
            m_next = m_record.erase(m_next);
        }
        m_record.insert(m_next, field, value);
    }

private:
    VariantRecord &m_record;
    VariantRecord::iterator m_next; ///< the first field that may still be written
};
