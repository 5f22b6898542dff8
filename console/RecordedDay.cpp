#include "RecordedDay.h"

#include "JournalReader.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

using Kind = JournalRecord::Kind;

MessageBody bodyOf(const JournalRecord &record)
{
    MessageBody body;
    QString errorText;
    MessageBody::decode(record.envelope.body, body, errorText);
    return body;
}

bool isSuccess(const JournalRecord &end)
{
    return end.kind == Kind::Answer && bodyOf(end).values.value(Orvane_Fields::System::requestExeStatus).toString() ==
                                           Orvane_Values::RequestExeStatus::success;
}

bool RecordedDay::load(const QString &path, quint64 until, QString &errorText)
{
    JournalReader reader(path);
    JournalRecord record;
    bool isWhole = true; // as far as it was asked for
    while (isWhole && reader.next(record)) {
        if (record.kind == Kind::Opened)
            m_records.clear();
        m_records.append(record);
        isWhole = record.sequence < until;
    }
    errorText = reader.errorText();
    if (errorText.isEmpty() && m_records.isEmpty())
        errorText = QStringLiteral("%1: holds no session").arg(path);
    if (!errorText.isEmpty())
        return false;
    if (!reader.cutText().isEmpty())
        m_remarks.append(reader.cutText());
    else if (isWhole && m_records.constLast().kind != Kind::Closed)
        m_remarks.append(QStringLiteral("%1: ends with record %2, without its closing")
                             .arg(path, QString::number(m_records.constLast().sequence)));
    index();
    return true;
}

void RecordedDay::index()
{
    QHash<QString, int> open; // request by id; an answer that comes again finds its request, too
    for (int i = 0; i < m_records.size(); ++i) {
        const JournalRecord &record = m_records.at(i);
        if (record.kind == Kind::Request) {
            open.insert(record.envelope.id, i);
            m_alike[{record.envelope.type, record.envelope.body}].append(i);
        }
        const bool isEnd = record.kind == Kind::Answer || record.kind == Kind::TimedOut || record.kind == Kind::NotSent;
        if (!isEnd || !open.contains(record.envelope.id))
            continue;
        m_requestOf.insert(i, open.value(record.envelope.id));
        m_endsOf[open.value(record.envelope.id)].append(i);
    }
}

QString RecordedDay::user() const
{
    return m_records.constFirst().envelope.sender;
}

QVector<int> RecordedDay::requestsLike(const Envelope &envelope) const
{
    return m_alike.value({envelope.type, envelope.body});
}
