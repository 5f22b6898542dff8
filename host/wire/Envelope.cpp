#include "Envelope.h"

#include "CborReader.h"
#include "CborWriter.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtCore/QDateTime>
#include <QtCore/QUuid>

#include <atomic>

namespace {

constexpr int parts = 7;

/// A random part for the process and a number: unique without asking for randomness every time.
struct Ids {
    QString process = QUuid::createUuid().toString(QUuid::WithoutBraces);
    std::atomic<quint64> last{0};
};

Ids &ids()
{
    static auto *ids = new Ids; // never deleted: other threads may send while exit() runs the destructors of statics
    return *ids;
}

QString freshId()
{
    return ids().process + QLatin1Char('.') + QString::number(++ids().last);
}

} // namespace

void Envelope::beginIds(const QString &first)
{
    ids().process = first;
    ids().last = 0;
}

QByteArray Envelope::encode() const
{
    CborWriter writer;
    writer.reserve(body.size() + 160);
    writer.array(parts);
    writer.integer(int(kind));
    writer.text(id);
    writer.text(sender);
    writer.integer(sent);
    writer.integer(validUntil);
    writer.text(type);
    writer.bytes(body);
    return writer.take();
}

bool Envelope::decode(const QByteArray &bytes, Envelope &envelope, QString &errorText)
{
    CborReader reader(bytes);
    Envelope read;
    quint64 found = 0;
    qint64 kind = 0;
    if (reader.array(found) && found != parts)
        reader.fail("array of seven expected");
    if (reader.integer(kind) && (kind < int(Kind::Request) || kind > int(Kind::Push)))
        reader.fail("unknown kind of message");
    if (!reader.text(read.id) || !reader.text(read.sender) || !reader.integer(read.sent) ||
        !reader.integer(read.validUntil) || !reader.text(read.type) || !reader.bytes(read.body) || !reader.end()) {
        errorText = reader.errorText();
        return false;
    }
    read.kind = Kind(kind);
    envelope = std::move(read);
    return true;
}

Envelope Envelope::request(const QString &type, const QString &sender, int validMs, const MessageBody &body)
{
    Envelope envelope;
    envelope.id = freshId();
    envelope.sender = sender;
    envelope.sent = QDateTime::currentMSecsSinceEpoch();
    envelope.validUntil = envelope.sent + validMs;
    envelope.type = type;
    envelope.body = body.encode();
    return envelope;
}

Envelope Envelope::answer(const MessageBody &body) const
{
    Envelope envelope;
    envelope.kind = Kind::Answer;
    envelope.id = id;
    envelope.sender = sender;
    envelope.sent = QDateTime::currentMSecsSinceEpoch();
    envelope.type = type;
    envelope.body = body.encode();
    return envelope;
}

Envelope Envelope::subscription(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                                int validMs)
{
    const VariantRecord values{{Stand_Fields::Subscription::pushType, pushType},
                               {Stand_Fields::Subscription::serviceName, serviceName}};
    return request(Stand_MsgType::SubscribeRequest, {}, validMs, {values, {filter}});
}

Envelope Envelope::push(const QString &type, const MessageBody &body)
{
    Envelope envelope;
    envelope.kind = Kind::Push;
    envelope.id = freshId();
    envelope.sent = QDateTime::currentMSecsSinceEpoch();
    envelope.type = type;
    envelope.body = body.encode();
    return envelope;
}
