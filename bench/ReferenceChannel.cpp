#include "ReferenceChannel.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandMsgType.h"

ReferenceChannel::ReferenceChannel(const QString &user, const RecordList &instruments)
    : m_user(user)
    , m_instruments(instruments)
    , m_since(QDateTime::currentDateTimeUtc())
{}

MessageChannel::Reply ReferenceChannel::request(const Envelope &envelope, int)
{
    MessageBody body;
    body.values.insert(Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::success);
    body.rows = rowsFor(envelope.type);
    return {Outcome::Answered, envelope.answer(body), {}};
}

bool ReferenceChannel::send(const Envelope &, int, ReplyHandler)
{
    return false; // no presenter runs here, so nothing is sent asynchronously
}

bool ReferenceChannel::subscribe(const QString &, const VariantRecord &, const QString &, int)
{
    return true;
}

void ReferenceChannel::setPushHandler(PushHandler) {}

MessageChannel::Connection ReferenceChannel::connection() const
{
    return Connection::Connected;
}

QDateTime ReferenceChannel::connectionSince() const
{
    return m_since;
}

void ReferenceChannel::close() {}

RecordList ReferenceChannel::rowsFor(const QString &msgType) const
{
    if (msgType == Stand_MsgType::LoginRequest)
        return {{{Orvane_Fields::UserAccount::userID, m_user}}};
    if (msgType == Stand_MsgType::QueryInstrumentsRequest)
        return m_instruments;
    return {};
}
