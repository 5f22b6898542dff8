#include "JournalList.h"

#include "JournalReader.h"
#include "JsonText.h"
#include "OrvaneFields.h"
#include "Picture.h"
#include "RecordedDay.h"

#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QTextStream>

using Kind = JournalRecord::Kind;

namespace {

constexpr int typeWidth = 42;
constexpr int detailWidth = 120;

const char *directionOf(Kind kind)
{
    switch (kind) {
    case Kind::Request:
        return "out ";
    case Kind::Answer:
        return "in  ";
    case Kind::Push:
        return "push";
    default:
        return "    ";
    }
}

/// A key of MasterInitStateMgr, for people.
QString familyOf(const QString &key)
{
    const int family = Picture::familyOfKey(key);
    return family >= 0 ? Picture::familyName(family) : key;
}

QString nameOf(const JournalRecord &record)
{
    const QString &type = record.envelope.type;
    switch (record.kind) {
    case Kind::Opened:
        return QStringLiteral("session of %1").arg(record.envelope.sender);
    case Kind::TimedOut:
        return QStringLiteral("%1 timed out").arg(type);
    case Kind::NotSent:
        return QStringLiteral("%1 not sent").arg(type);
    case Kind::FamilyReset:
        return QStringLiteral("%1 to be loaded anew").arg(familyOf(type));
    case Kind::FamilyStarted:
        return QStringLiteral("%1 begins to load").arg(familyOf(type));
    case Kind::FamilyFinished:
        return QStringLiteral("%1 is loaded or has failed").arg(familyOf(type));
    case Kind::FamilyAsked:
        return QStringLiteral("%1: an answer is taken").arg(familyOf(type));
    case Kind::Closed:
        return QStringLiteral("end");
    default:
        return type;
    }
}

/// The lines of one journal, which knows when what was asked.
class Lines
{
public:
    QString lineOf(const JournalRecord &record)
    {
        if (record.kind == Kind::Request)
            m_asked.insert(record.envelope.id, record.time);
        const MessageBody body = bodyOf(record);
        const QString rows = record.envelope.body.isEmpty() ? QString() : QString::number(body.rows.size());
        const QString time =
            QDateTime::fromMSecsSinceEpoch(record.time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
        QString line = QStringLiteral("%1  %2  %3  %4  %5  %6")
                           .arg(QString::number(record.sequence).rightJustified(6), time,
                                QString::fromLatin1(directionOf(record.kind)), nameOf(record).leftJustified(typeWidth),
                                rows.rightJustified(5), detailOf(record, body));
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        return line;
    }

private:
    QString detailOf(const JournalRecord &record, const MessageBody &body) const
    {
        if (record.kind == Kind::Answer)
            return QStringLiteral("%1 ms %2")
                .arg(QString::number(record.time - m_asked.value(record.envelope.id, record.time)),
                     failureOf(record, body));
        const VariantRecord first = body.rows.value(0);
        return first.isEmpty() && body.values.isEmpty()
                   ? QString()
                   : jsonText(first.isEmpty() ? body.values : first).left(detailWidth);
    }

    static QString failureOf(const JournalRecord &answer, const MessageBody &body)
    {
        if (isSuccess(answer))
            return {};
        return body.values.value(Orvane_Fields::System::requestExeStatus).toString() + QLatin1Char(' ') +
               body.values.value(Orvane_Fields::System::textDescription).toString();
    }

    QHash<QString, qint64> m_asked; ///< by id of the request
};

} // namespace

bool listJournal(const QString &path, quint64 until, QString &errorText)
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    JournalReader reader(path);
    JournalRecord record;
    Lines lines;
    while (record.sequence < until && reader.next(record))
        out << lines.lineOf(record) << '\n';
    if (!reader.cutText().isEmpty())
        QTextStream(stderr) << reader.cutText() << '\n';
    errorText = reader.errorText();
    return errorText.isEmpty();
}
