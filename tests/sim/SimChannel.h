#pragma once

#include "Faults.h"
#include "ModelGateway.h"
#include "World.h"

#include "MessageChannel.h"

/// The network between a client and the model gateway, in the time of the simulation. Messages to the client come in
/// the order they were sent, faults apart.
class SimChannel : public MessageChannel
{
public:
    SimChannel(World &world, ModelGateway &gateway, Faults &faults);

    void setFaults(bool on); ///< off at first; turned off, the connection is there again

    /// Loses the connection; it comes back after a while. False: there is none.
    bool cut();

    /// A push from the gateway; false: it is lost.
    bool push(const VariantRecord &usage);

    bool isQuiet() const { return m_pending.isEmpty() && m_underWay == 0; }
    std::function<void(const QString &requestId)> changeSent; ///< called with every request that changes something
    bool wasUnanswered(const QString &requestId) const { return m_unanswered.contains(requestId); } ///< a change
    bool spoiltProducts = false; ///< since it was set to false: an answer to a products query was no true one

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;
    void setPushHandler(PushHandler handler) override { m_pushHandler = std::move(handler); }
    Connection connection() const override { return m_connection; }
    QDateTime connectionSince() const override { return m_since; }
    void close() override;

private:
    void arrive(const Envelope &request);
    void spoilAnswer(const Envelope &request, MessageBody &answer);
    void answered(const QString &requestId, const Reply &reply);
    void deliver(World::Ms delay, bool overtakes, std::function<void()> handOver);
    void connect();
    void endAll(Outcome outcome, bool cut);
    bool happens(int oneIn);
    bool strikes(Fault fault, int oneIn);
    void tradeNow(Fault fault, int oneIn);
    static bool isChange(const QString &type);

    World &m_world;
    ModelGateway &m_gateway;
    Faults &m_faults;
    PushHandler m_pushHandler;
    QMap<QString, ReplyHandler> m_pending; ///< by request id
    struct Subscription {
        QString pushType;
        VariantRecord filter;
    };
    QVector<Subscription> m_subscriptions;
    Connection m_connection = Connection::Connected;
    QDateTime m_since;
    int m_session = 0;     ///< what was under way in an earlier connection is lost
    int m_underWay = 0;    ///< messages
    int m_pushed = 0;      ///< were sent
    qint64 m_linkFree = 0; ///< us; the next message to the client comes no earlier
    bool m_hasFaults = false;
    QSet<QString> m_unanswered;
};
