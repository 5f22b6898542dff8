#pragma once

#include "MessageChannel.h"

#include <memory>

/// Counts what goes through the session's channel, for HostSession::settle, tells the news of its requests, and notes
/// when the server is heard.
class WatchedChannel : public MessageChannel
{
public:
    explicit WatchedChannel(std::unique_ptr<MessageChannel> inner);

    MessageChannel &inner() { return *m_inner; } ///< without counting

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;
    void setPushHandler(PushHandler handler) override;
    Connection connection() const override;
    QDateTime connectionSince() const override;
    void close() override;

private:
    std::unique_ptr<MessageChannel> m_inner;
};
