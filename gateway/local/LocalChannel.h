#pragma once

#include "PaperGateway.h"
#include "StreamChannel.h"

/// A channel to a gateway in this process. Several may share one gateway. What the gateway sends is handed
/// over on a thread of the channel's own, so that a slow receiver does not stop the gateway. Messages are
/// encoded as on any other channel. Disconnected when the gateway has dropped it for bytes that are no message.
class LocalChannel : public StreamChannel
{
public:
    explicit LocalChannel(std::shared_ptr<PaperGateway> gateway);
    ~LocalChannel() override;

    /// Afterwards the gateway sends nothing more and, unless called by a handler on the channel's thread,
    /// that thread has ended.
    void close() override;

protected:
    bool transmit(const QByteArray &envelope) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
