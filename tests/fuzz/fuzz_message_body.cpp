// Any bytes, read as an envelope and as a body: refused with a text, or understood so that what they say survives
// being encoded and read again.
#include "Envelope.h"
#include "Input.h"

namespace {

void checkBody(const QByteArray &bytes)
{
    MessageBody body;
    body.rows.append(VariantRecord{{QStringLiteral("untouched"), true}});
    const MessageBody before = body;
    QString error;
    if (!MessageBody::decode(bytes, body, error)) {
        require(!error.isEmpty(), "a body was refused without a text");
        require(body.rows == before.rows && body.values == before.values, "a refused body was changed");
        return;
    }
    const QByteArray encoded = body.encode();
    MessageBody again;
    require(MessageBody::decode(encoded, again, error), "an encoded body was refused");
    require(again.encode() == encoded, "a body did not survive a round trip"); // bytes: a NaN differs from itself
}

void checkEnvelope(const QByteArray &bytes)
{
    Envelope envelope;
    QString error;
    if (!Envelope::decode(bytes, envelope, error)) {
        require(!error.isEmpty(), "an envelope was refused without a text");
        return;
    }
    const QByteArray encoded = envelope.encode();
    Envelope again;
    require(Envelope::decode(encoded, again, error), "an encoded envelope was refused");
    require(again.encode() == encoded, "an envelope did not survive a round trip");
    checkBody(envelope.body);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    checkBody(bytes);
    checkEnvelope(bytes);
    return 0;
}
