#include "FuzzedServer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

namespace {

bool isInputsThread()
{
    return QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace

FuzzedServer::FuzzedServer(Input &input)
    : m_input(input)
{}

void FuzzedServer::setGood(bool good)
{
    m_good = good;
}

void FuzzedServer::push(const QString &msgType)
{
    Envelope push = Envelope::push(msgType, {});
    push.body = m_input.oneIn(16) ? m_input.bytes() : MessageBody{{}, {FuzzedRows::row(m_input, msgType)}}.encode();
    if (m_pushHandler)
        m_pushHandler(push);
}

MessageChannel::Reply FuzzedServer::request(const Envelope &envelope, int)
{
    if (!isInputsThread() || m_closed)
        return {Outcome::NotSent, {}, QStringLiteral("closed")};
    Envelope answer = envelope.answer({});
    if (m_good) {
        answer.body = FuzzedRows::goodAnswer(envelope.type);
        return {Outcome::Answered, answer, {}};
    }
    const int fate = m_input.below(32);
    if (fate >= 30)
        return {fate == 31 ? Outcome::TimedOut : Outcome::NotSent, {}, QStringLiteral("no answer")};
    MessageBody request;
    QString errorText;
    require(MessageBody::decode(envelope.body, request, errorText), "a request cannot be decoded:", errorText);
    answer.body = FuzzedRows::answer(m_input, envelope.type, request);
    return {Outcome::Answered, answer, {}};
}

bool FuzzedServer::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    const Reply reply = request(envelope, timeoutMs);
    if (reply.outcome == Outcome::NotSent)
        return false;
    handler(reply); // nobody who sends holds a lock that the answer takes
    return true;
}

bool FuzzedServer::subscribe(const QString &, const VariantRecord &, const QString &, int)
{
    return m_good || !isInputsThread() || !m_input.oneIn(8);
}

void FuzzedServer::setPushHandler(PushHandler handler)
{
    m_pushHandler = std::move(handler);
}

MessageChannel::Connection FuzzedServer::connection() const
{
    return m_closed ? Connection::Closed : Connection::Connected;
}

QDateTime FuzzedServer::connectionSince() const
{
    return {};
}

void FuzzedServer::close()
{
    m_closed = true;
}
