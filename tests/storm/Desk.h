#pragma once

#include "HubClient.h"
#include "HubQueries.h"
#include "PaperGateway.h"

#include <atomic>
#include <random>

class FaultChannel;

/// A manager who trades, at a gateway in memory that fills orders: what several threads may do with one client at once.
/// Every operation may be called from any thread, with a random engine of the caller's own.
class Desk
{
public:
    using Random = std::mt19937;

    Desk();
    ~Desk();

    void read(Random &random); ///< every query once, narrowed somehow
    void refresh(Random &random);
    void change(Random &random); ///< some change of a manager, some of which is refused
    void trade(Random &random);  ///< an order, or cancels
    void choose(Random &random); ///< accounts and settings
    void moveMarket(Random &random);
    void disturb(Random &random); ///< the next request of some type fails, times out or loses its answer

    /// Everything is loaded again, without faults; then what differs: indexes from their caches, the client from the
    /// server, the gateway from itself.
    QString faultsWhenQuiet();

    std::atomic<qint64> answers{0}; ///< of queries
    std::atomic<int> rounds{0};     ///< of all queries
    std::atomic<int> changes{0};    ///< that were carried out
    std::atomic<int> orders{0};     ///< that were accepted
    std::atomic<int> events{0};

private:
    HubFilter filter(Random &random) const;
    RecordList poolsOf(Random &random, const VariantRecord &resource) const;
    void control(const QString &command, int count);
    QString differences();

    const Books m_books;
    std::shared_ptr<PaperGateway> m_gateway;
    FaultChannel *m_faults = nullptr; ///< of the client's session
    std::unique_ptr<HubClient> m_client;
    std::unique_ptr<QObject> m_listener;
    ManualT0LogicPrivate *m_hub = nullptr; ///< the client's
};
