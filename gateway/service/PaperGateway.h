#pragma once

#include "Books.h"

#include <QtCore/QByteArray>

#include <functional>
#include <memory>
#include <optional>

struct GatewayOptions {
    std::optional<quint64> seed;   ///< of the paper market; without it that of the state, in a new one 1
    bool immediate = false;        ///< orders that can be filled are filled whole, at once
    int slippage = 0;              ///< ticks to the disadvantage of an order that takes
    std::function<qint64()> clock; ///< the gateway's, ms since the epoch; without one the system's. Runs on its thread
};

/// A trading server on paper: books, state and the answers to every message, on a thread of its own that
/// serves any number of clients. Destroying it ends every client; its thread is gone afterwards.
///
/// Every operation may be called from any thread but the gateway's own.
class PaperGateway
{
public:
    using ClientId = quint64;

    /// What a client gets. Both run on the gateway's thread, must return at once and never call back.
    struct Client {
        std::function<void(const QByteArray &envelope)> deliver; ///< answers and pushes, in their order
        std::function<void()> dropped;                           ///< it has sent what is no message
    };

    /// Opens the state (an empty file name: in memory) on the new thread and brings its usage records up to
    /// date with the books. Returns nullptr and fills errorText.
    static std::shared_ptr<PaperGateway> open(const Books &books, const QString &stateFile, QString &errorText,
                                              const GatewayOptions &options = GatewayOptions());

    ~PaperGateway();
    PaperGateway(const PaperGateway &) = delete;
    PaperGateway &operator=(const PaperGateway &) = delete;

    const Books &books() const;

    ClientId connectClient(Client client);

    /// Returns when neither of the client's functions is running any more, nor ever will again.
    void disconnectClient(ClientId id);

    /// One encoded envelope from a client; handled in the order of the calls. Unknown clients are ignored.
    void receive(ClientId id, const QByteArray &envelope);

    /// What contradicts itself in orders, usage and positions, a sentence a line; empty when nothing does.
    QString faults() const;

private:
    PaperGateway();

    class Private;
    std::unique_ptr<Private> d;
};
