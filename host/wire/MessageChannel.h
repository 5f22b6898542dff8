#pragma once

#include "Envelope.h"

#include <QtCore/QDateTime>

#include <functional>

/// The border to the trading server. One channel belongs to one login.
///
/// Every answer carries in its body's values Orvane_Fields::System::requestExeStatus and, when that is not
/// success, Orvane_Fields::System::textDescription. Answers and pushes arrive on one ordered path: a push is
/// handed over after every answer that the server sent before it.
///
/// Every operation may be called from any thread. Nothing is called back while a caller is inside.
class T0_WIRE_EXPORT MessageChannel
{
public:
    enum class Outcome {
        Answered, ///< the envelope holds the answer, whatever its status says
        TimedOut, ///< no answer in time: the server may or may not have executed the request
        NotSent   ///< nothing left this process: closed, disconnected, refused by the encoder
    };
    struct Reply {
        Outcome outcome = Outcome::NotSent;
        Envelope envelope;
        QString errorText;   ///< empty when answered
        bool wasCut = false; ///< the connection ended while the answer was awaited
    };
    enum class Connection { Connected, Disconnected, Closed };

    using ReplyHandler = std::function<void(const Reply &)>;
    using PushHandler = std::function<void(const Envelope &)>;

    MessageChannel() = default;
    virtual ~MessageChannel(); ///< the concrete class closes first
    MessageChannel(const MessageChannel &) = delete;
    MessageChannel &operator=(const MessageChannel &) = delete;

    /// Blocks the caller, on a waiter of its own, until the answer, the time-out or close(); never runs an
    /// event loop. The request is valid for as long as the caller waits. A caller whose QThread is asked to
    /// stop (requestInterruption) waits no longer: TimedOut.
    virtual Reply request(const Envelope &envelope, int timeoutMs) = 0;

    /// Returns at once. handler runs exactly once, on the channel's thread, with the answer or the time-out.
    /// False: not sent, handler will not run.
    virtual bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) = 0;

    /// Asks the server for pushes of a type, narrowed by the filter's fields; true when it accepts.
    /// Blocks for at most timeoutMs, ended as request() is. Subscribing again is harmless.
    virtual bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                           int timeoutMs) = 0;

    /// Who gets the pushes, on the channel's thread, in the order they came; empty: nobody. Returns when the
    /// former handler is not running any more.
    virtual void setPushHandler(PushHandler handler) = 0;

    virtual Connection connection() const = 0;

    /// When connection() last changed; each change has a time of its own.
    virtual QDateTime connectionSince() const = 0;

    /// Ends every wait with NotSent, refuses what comes after; callable twice.
    virtual void close() = 0;
};
