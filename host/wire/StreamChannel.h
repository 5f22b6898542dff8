#pragma once

#include "MessageChannel.h"

#include <memory>

/// What channels that carry bytes share: waiters by request id, time-outs, the push handler, the connection
/// state. A concrete class moves encoded envelopes, and calls close() first in its destructor.
///
/// Late answers (after their time-out) and answers that nobody asked for are dropped.
class T0_WIRE_EXPORT StreamChannel : public MessageChannel
{
public:
    ~StreamChannel() override;

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;

    /// Stand_MsgType::SubscribeRequest with the push type and service name as values and the filter as row.
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;

    void setPushHandler(PushHandler handler) override;
    Connection connection() const override;
    QDateTime connectionSince() const override;
    void close() override;

protected:
    StreamChannel(); ///< Disconnected until setConnection says otherwise

    /// Sends one encoded envelope. False: it did not leave. Called from any thread, one call at a time.
    virtual bool transmit(const QByteArray &envelope) = 0;

    /// One encoded envelope has arrived. Called by the concrete class, one at a time and in order; runs the
    /// push handler and the handlers of send() inside. Bytes that are no envelope are logged and dropped.
    void received(const QByteArray &envelope);

    /// Disconnected ends every wait with TimedOut: the server may have executed what was sent.
    void setConnection(Connection connection);

private:
    bool transmitUnlessClosed(const Envelope &envelope);
    void receivedAnswer(const Envelope &envelope);
    void receivedPush(const Envelope &envelope);

    class Private;
    std::unique_ptr<Private> d;
};
