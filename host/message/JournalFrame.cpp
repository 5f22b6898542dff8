#include "JournalFrame.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDataStream>
#include <QtCore/QtEndian>

namespace {

constexpr auto streamVersion = QDataStream::Qt_5_15;
constexpr int lengthBytes = 4;

} // namespace

QByteArray JournalFrame::firstLine()
{
    return QByteArrayLiteral("T0 journal 1\n");
}

QByteArray JournalFrame::firstHash()
{
    return QCryptographicHash::hash(firstLine(), QCryptographicHash::Sha256);
}

QByteArray JournalFrame::nextHash(const QByteArray &hash, const QByteArray &content)
{
    QCryptographicHash next(QCryptographicHash::Sha256);
    next.addData(hash);
    next.addData(content);
    return next.result();
}

QByteArray JournalFrame::head(quint32 length)
{
    QByteArray head(headBytes, Qt::Uninitialized);
    qToBigEndian(length, head.data());
    qToBigEndian(~length, head.data() + lengthBytes);
    return head;
}

bool JournalFrame::lengthOf(const QByteArray &head, quint32 &length)
{
    length = qFromBigEndian<quint32>(head.constData());
    return length <= maxContent && qFromBigEndian<quint32>(head.constData() + lengthBytes) == ~length;
}

QByteArray JournalFrame::encode(const JournalRecord &record)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << record.sequence << record.time << quint8(record.kind) << record.envelope.encode();
    return content;
}

bool JournalFrame::decode(const QByteArray &content, JournalRecord &record)
{
    QDataStream stream(content);
    stream.setVersion(streamVersion);
    quint8 kind = 0;
    QByteArray envelope;
    QString errorText;
    stream >> record.sequence >> record.time >> kind >> envelope;
    record.kind = JournalRecord::Kind(kind);
    return stream.status() == QDataStream::Ok && stream.atEnd() && kind <= quint8(JournalRecord::Kind::Closed) &&
           Envelope::decode(envelope, record.envelope, errorText);
}
