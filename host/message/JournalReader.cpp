#include "JournalReader.h"

#include "message/JournalFrame.h"

JournalReader::JournalReader(const QString &path)
    : m_file(path)
{}

bool JournalReader::open()
{
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_errorText = QStringLiteral("%1: %2").arg(m_file.fileName(), m_file.errorString());
        return false;
    }
    if (m_file.read(JournalFrame::firstLine().size()) != JournalFrame::firstLine()) {
        m_errorText = QStringLiteral("%1: no journal, its first line is another").arg(m_file.fileName());
        return false;
    }
    m_hash = JournalFrame::firstHash();
    return true;
}

bool JournalReader::next(JournalRecord &record)
{
    QByteArray content;
    if (!m_errorText.isEmpty() || !m_cutText.isEmpty() || (!m_file.isOpen() && !open()))
        return false;
    m_begin = m_file.pos();
    ++m_sequence;
    if (m_file.atEnd() || !readFrame(content))
        return false;
    if (!JournalFrame::decode(content, record))
        return damaged(QStringLiteral("its content cannot be read"));
    return record.sequence == m_sequence || damaged(QStringLiteral("it calls itself %1").arg(record.sequence));
}

bool JournalReader::readFrame(QByteArray &content)
{
    using namespace JournalFrame;
    const QByteArray head = m_file.read(headBytes);
    quint32 length = 0;
    if (head.size() < headBytes)
        return cut(head.size(), headBytes);
    if (!lengthOf(head, length))
        return damaged(QStringLiteral("its length is damaged"));
    content = m_file.read(length);
    const QByteArray hash = m_file.read(hashBytes);
    if (hash.size() < hashBytes)
        return cut(headBytes + content.size() + hash.size(), headBytes + qint64(length) + hashBytes);
    m_hash = nextHash(m_hash, content);
    return hash == m_hash || damaged(QStringLiteral("the chain of hashes is broken"));
}

bool JournalReader::damaged(const QString &what)
{
    m_errorText = QStringLiteral("%1: %2").arg(place(), what);
    return false;
}

bool JournalReader::cut(qint64 has, qint64 of)
{
    m_cutText =
        QStringLiteral("%1: cut off, %2 of %3 bytes are there").arg(place(), QString::number(has), QString::number(of));
    return false;
}

QString JournalReader::place() const
{
    return QStringLiteral("%1: record %2 at byte %3")
        .arg(m_file.fileName(), QString::number(m_sequence), QString::number(m_begin));
}
