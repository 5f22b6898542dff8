#pragma once

#include "JournalRecord.h"

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QStringList>
#include <QtCore/QVector>

MessageBody bodyOf(const JournalRecord &record); ///< empty when there is none
bool isSuccess(const JournalRecord &end);        ///< an answer whose status says so

/// The last session of a journal, as it is replayed: its records, and how each request ended.
class RecordedDay
{
public:
    static constexpr int nothing = -1;

    /// Reads as far as a sequence number. False: errorText says what is damaged.
    bool load(const QString &path, quint64 until, QString &errorText);

    const QVector<JournalRecord> &records() const { return m_records; }
    QString user() const;

    /// What a reader should know of the journal: that it was cut off, or does not end with its closing.
    QStringList remarks() const { return m_remarks; }

    /// The request that a record answers or ends; nothing for any other record.
    int requestOf(int end) const { return m_requestOf.value(end, nothing); }

    /// How a request ended: one record, or several when its answer was handed over again.
    QVector<int> endsOf(int request) const { return m_endsOf.value(request); }

    /// The requests that say the same, in order.
    QVector<int> requestsLike(const Envelope &envelope) const;

private:
    void index();

    QVector<JournalRecord> m_records;
    QHash<int, int> m_requestOf;
    QHash<int, QVector<int>> m_endsOf;
    QHash<QPair<QString, QByteArray>, QVector<int>> m_alike; ///< by type and body
    QStringList m_remarks;
};
