#pragma once

#include "HostExport.h"
#include "JournalRecord.h"

#include <QtCore/QFile>

/// Reads a journal record by record and checks it meanwhile. What a crash leaves, a last record that is not whole, ends
/// the reading and is told in cutText(); anything else that is not as it was written is damage, told in errorText().
/// Both name the file, the record and the byte at which it begins.
class T0_HOST_EXPORT JournalReader
{
public:
    explicit JournalReader(const QString &path);

    /// False at the end: errorText() is empty when all is well.
    bool next(JournalRecord &record);

    QString errorText() const { return m_errorText; }
    QString cutText() const { return m_cutText; }

private:
    bool open();
    bool readFrame(QByteArray &payload);
    bool damaged(const QString &what);
    bool cut(qint64 has, qint64 of);
    QString place() const;

    QFile m_file;
    qint64 m_begin = 0;     ///< of the record that is being read
    quint64 m_sequence = 0; ///< its number
    QByteArray m_hash;
    QString m_errorText;
    QString m_cutText;
};
