#include "WatchedChannel.h"

#include "core/Activity.h"

WatchedChannel::WatchedChannel(std::unique_ptr<MessageChannel> inner)
    : m_inner(std::move(inner))
{}

MessageChannel::Reply WatchedChannel::request(const Envelope &envelope, int timeoutMs)
{
    const Activity::Token token = Activity::begin();
    return m_inner->request(envelope, timeoutMs);
}

bool WatchedChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    return m_inner->send(
        envelope, timeoutMs,
        [handler = std::move(handler), token = Activity::begin()](const Reply &reply) { handler(reply); });
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
