#include "JournalChannel.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandMsgType.h"

#include <QtCore/QMutexLocker>

namespace {

using Kind = JournalRecord::Kind;

bool isTakenDown(const Envelope &request)
{
    return request.type != Stand_MsgType::EchoRequest;
}

void takeDownEnd(JournalSink &journal, const Envelope &request, const MessageChannel::Reply &reply)
{
    Envelope end = reply.envelope;
    if (reply.outcome != MessageChannel::Outcome::Answered) {
        end = request;
        end.body.clear();
    }
    journal.append(reply.outcome == MessageChannel::Outcome::Answered   ? Kind::Answer
                   : reply.outcome == MessageChannel::Outcome::TimedOut ? Kind::TimedOut
                                                                        : Kind::NotSent,
                   end);
}

Envelope noteOf(const QString &text)
{
    Envelope note;
    note.type = text;
    return note;
}

QString nameOf(MessageChannel::Connection connection)
{
    using Connection = MessageChannel::Connection;
    return QString::fromLatin1(connection == Connection::Connected      ? JournalRecord::connected
                               : connection == Connection::Disconnected ? JournalRecord::disconnected
                                                                        : JournalRecord::closed);
}

} // namespace

JournalChannel::JournalChannel(std::unique_ptr<MessageChannel> inner, std::shared_ptr<JournalSink> journal)
    : m_journal(std::move(journal))
    , m_inner(std::move(inner))
{}

MessageChannel::Reply JournalChannel::request(const Envelope &envelope, int timeoutMs)
{
    if (!isTakenDown(envelope))
        return m_inner->request(envelope, timeoutMs);
    m_journal->append(Kind::Request, envelope);
    const Reply reply = m_inner->request(envelope, timeoutMs);
    takeDownEnd(*m_journal, envelope, reply);
    return reply;
}

bool JournalChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    if (!isTakenDown(envelope))
        return m_inner->send(envelope, timeoutMs, std::move(handler));
    m_journal->append(Kind::Request, envelope);
    const auto taken = [journal = m_journal, envelope, handler = std::move(handler)](const Reply &reply) {
        takeDownEnd(*journal, envelope, reply);
        handler(reply);
    };
    const bool isSent = m_inner->send(envelope, timeoutMs, taken);
    if (!isSent)
        takeDownEnd(*m_journal, envelope, {});
    return isSent;
}

bool JournalChannel::subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                               int timeoutMs)
{
    const Envelope request = Envelope::subscription(pushType, filter, serviceName, timeoutMs);
    m_journal->append(Kind::Request, request);
    const bool isAccepted = m_inner->subscribe(pushType, filter, serviceName, timeoutMs);
    const QString &status =
        isAccepted ? Orvane_Values::RequestExeStatus::success : Orvane_Values::RequestExeStatus::fail;
    m_journal->append(Kind::Answer, request.answer({{{Orvane_Fields::System::requestExeStatus, status}}, {}}));
    return isAccepted;
}

void JournalChannel::setPushHandler(PushHandler handler)
{
    if (!handler) {
        m_inner->setPushHandler({});
        return;
    }
    m_inner->setPushHandler([journal = m_journal, handler = std::move(handler)](const Envelope &envelope) {
        journal->append(Kind::Push, envelope);
        handler(envelope);
    });
}

MessageChannel::Connection JournalChannel::connection() const
{
    QMutexLocker lock(&m_mutex); // before the look: who looked first notes first
    const Connection now = m_inner->connection();
    if (now != m_noted)
        m_journal->append(Kind::Connection, noteOf(nameOf(now)));
    m_noted = now;
    return now;
}

QDateTime JournalChannel::connectionSince() const
{
    return m_inner->connectionSince();
}

void JournalChannel::close()
{
    m_inner->close();
}
