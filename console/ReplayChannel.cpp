#include "ReplayChannel.h"

#include "StandMsgType.h"

#include <algorithm>

using Kind = JournalRecord::Kind;

namespace {

MessageChannel::Reply replyOf(const JournalRecord &end, const Envelope &request)
{
    MessageChannel::Reply reply;
    reply.outcome = end.kind == Kind::Answer     ? MessageChannel::Outcome::Answered
                    : end.kind == Kind::TimedOut ? MessageChannel::Outcome::TimedOut
                                                 : MessageChannel::Outcome::NotSent;
    reply.envelope = end.envelope;
    reply.envelope.id = request.id;
    return reply;
}

} // namespace

ReplayChannel::ReplayChannel(const RecordedDay &day)
    : m_day(day)
{
    m_thread.setObjectName(QStringLiteral("ReplayChannel"));
    m_context.moveToThread(&m_thread);
    m_thread.start();
    setConnection(Connection::Connected);
}

ReplayChannel::~ReplayChannel()
{
    close();
    m_thread.quit();
    m_thread.wait();
}

template <typename Call> void ReplayChannel::onOwnThread(Call call)
{
    QMetaObject::invokeMethod(&m_context, call, Qt::BlockingQueuedConnection);
}

ReplayChannel::Reply ReplayChannel::request(const Envelope &envelope, int)
{
    Reply reply;
    if (envelope.type != Stand_MsgType::EchoRequest && connection() != Connection::Closed)
        onOwnThread([&] { reply = repliesTo(envelope).constFirst(); });
    return reply;
}

bool ReplayChannel::send(const Envelope &envelope, int, ReplyHandler handler)
{
    if (connection() == Connection::Closed)
        return false;
    const auto answer = [this, envelope, handler = std::move(handler)] {
        const QVector<Reply> replies = repliesTo(envelope);
        for (const Reply &reply : replies)
            handler(reply);
    };
    return QMetaObject::invokeMethod(&m_context, answer, Qt::QueuedConnection);
}

void ReplayChannel::pushUntil(int record)
{
    onOwnThread([&] { push(record + 1); });
}

bool ReplayChannel::isRepeated(int request)
{
    bool isRepeated = false;
    onOwnThread([&] { isRepeated = m_repeated.contains(request); });
    return isRepeated;
}

void ReplayChannel::expect(int request)
{
    onOwnThread([&] { m_expected = request; });
}

QStringList ReplayChannel::unanswered()
{
    QStringList types;
    onOwnThread([&] { types = m_unanswered; });
    return types;
}

/// The request of the day that says the same, has an end and was not repeated: the expected one, else the first.
int ReplayChannel::find(const Envelope &envelope) const
{
    QVector<int> open = m_day.requestsLike(envelope);
    const auto isClosed = [this](int request) {
        return m_repeated.contains(request) || m_day.endsOf(request).isEmpty();
    };
    open.erase(std::remove_if(open.begin(), open.end(), isClosed), open.end());
    return open.contains(m_expected) ? m_expected : open.value(0, RecordedDay::nothing);
}

QVector<ReplayChannel::Reply> ReplayChannel::repliesTo(const Envelope &envelope)
{
    Reply timedOut;
    timedOut.outcome = Outcome::TimedOut;
    const int request = find(envelope);
    if (request == RecordedDay::nothing) {
        m_unanswered.append(envelope.type);
        return {timedOut};
    }
    m_repeated.insert(request);
    QVector<Reply> replies;
    const QVector<int> ends = m_day.endsOf(request);
    push(ends.constFirst());
    for (const int end : ends)
        replies.append(replyOf(m_day.records().at(end), envelope));
    return replies;
}

void ReplayChannel::push(int end)
{
    for (; m_nextPush < end; ++m_nextPush) {
        const JournalRecord &record = m_day.records().at(m_nextPush);
        if (record.kind == Kind::Push)
            received(record.envelope.encode());
        else if (record.kind == Kind::Connection && record.envelope.type != QLatin1String(JournalRecord::closed))
            setConnection(record.envelope.type == QLatin1String(JournalRecord::connected) ? Connection::Connected
                                                                                          : Connection::Disconnected);
    }
}
