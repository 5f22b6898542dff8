#pragma once

#include "HostExport.h"
#include "MessageChannel.h"

#include <memory>

/// Puts faults into another channel, by message type: for tests and for the console. Thread-safe.
class T0_HOST_EXPORT FaultChannel : public MessageChannel
{
public:
    enum class Fault {
        Fail,      ///< the request is not forwarded, a refusal answers it; a push is dropped
        Timeout,   ///< the request is not forwarded, it times out at once; a push is dropped
        Delay,     ///< argument: ms by which the answer comes later, within the request's time-out, or a push,
                   ///< before which no later push comes
        Truncate,  ///< argument: the page, from 0, from which on a paged query is refused; never strikes a push
        Duplicate, ///< the answer to an asynchronous request, or a push, is handed over twice
        Lose ///< the request is forwarded and carried out, its answer is lost: it times out then; a push is dropped
    };

    explicit FaultChannel(std::unique_ptr<MessageChannel> inner);
    ~FaultChannel() override;

    /// times: how many requests or pushes it strikes, -1: all. tradingAccount: only requests with a row of
    /// this account; empty: all. Of several faults that fit, the oldest strikes. subscribe() is struck as
    /// Stand_MsgType::SubscribeRequest.
    void addFault(const QString &msgType, Fault fault, int argument, int times, const QString &tradingAccount = {});
    void clearFaults();

    /// The fault of a name: fail, timeout, delay, truncate, duplicate, lose. False for any other.
    static bool faultOfName(const QString &name, Fault &fault);

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;
    void setPushHandler(PushHandler handler) override;
    Connection connection() const override;
    QDateTime connectionSince() const override;
    void close() override;

private:
    class Private;
    std::unique_ptr<MessageChannel> m_inner;
    std::unique_ptr<Private> d;
};
