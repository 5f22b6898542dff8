#include "WatchedChannel.h"

#include "business/NewsDesk.h"
#include "business/PictureStep.h"
#include "core/Activity.h"

#include <QtCore/QElapsedTimer>

namespace {

/// Tells the news of a request when it has ended.
class Watch
{
public:
    explicit Watch(const QString &msgType)
        : m_request{msgType, QDateTime::currentDateTime(), 0, MessageChannel::Outcome::NotSent}
    {
        m_clock.start();
    }

    void end(MessageChannel::Outcome outcome)
    {
        m_request.durationMs = int(m_clock.elapsed());
        m_request.outcome = outcome;
        if (outcome == MessageChannel::Outcome::Answered)
            PictureStep::heard();
        NewsDesk::request(m_request);
    }

private:
    FinishedRequest m_request;
    QElapsedTimer m_clock;
};

} // namespace

WatchedChannel::WatchedChannel(std::unique_ptr<MessageChannel> inner)
    : m_inner(std::move(inner))
{}

MessageChannel::Reply WatchedChannel::request(const Envelope &envelope, int timeoutMs)
{
    const Activity::Token token = Activity::begin();
    Watch watch(envelope.type);
    Reply reply = m_inner->request(envelope, timeoutMs);
    watch.end(reply.outcome);
    return reply;
}

bool WatchedChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    return m_inner->send(envelope, timeoutMs,
                         [handler = std::move(handler), token = Activity::begin(),
                          watch = Watch(envelope.type)](const Reply &reply) mutable {
                             watch.end(reply.outcome);
                             handler(reply);
                         });
}

bool WatchedChannel::subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                               int timeoutMs)
{
    const Activity::Token token = Activity::begin();
    return m_inner->subscribe(pushType, filter, serviceName, timeoutMs);
}

void WatchedChannel::setPushHandler(PushHandler handler)
{
    if (!handler) {
        m_inner->setPushHandler({});
        return;
    }
    m_inner->setPushHandler([handler = std::move(handler)](const Envelope &envelope) {
        const Activity::Token token = Activity::begin();
        PictureStep::heard();
        handler(envelope);
    });
}

MessageChannel::Connection WatchedChannel::connection() const
{
    return m_inner->connection();
}

QDateTime WatchedChannel::connectionSince() const
{
    return m_inner->connectionSince();
}

void WatchedChannel::close()
{
    m_inner->close();
}
