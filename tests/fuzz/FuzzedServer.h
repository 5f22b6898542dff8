#pragma once

#include "FuzzedRows.h"
#include "MessageChannel.h"

/// A server whose answers are made of an input, at once and on the caller's thread: that of the input. Who asks from
/// another thread is not answered.
class FuzzedServer : public MessageChannel
{
public:
    explicit FuzzedServer(Input &input);

    /// Whether what is asked is answered as by a good server, for a session to open.
    void setGood(bool good);

    void push(const QString &msgType);

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;
    void setPushHandler(PushHandler handler) override;
    Connection connection() const override;
    QDateTime connectionSince() const override;
    void close() override;

private:
    Input &m_input;
    bool m_good = false;
    bool m_closed = false;
    PushHandler m_pushHandler;
};
