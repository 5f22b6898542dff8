#include "PaperGateway.h"

#include "Service.h"

#include <QtCore/QThread>

#include <atomic>

class PaperGateway::Private
{
public:
    /// Runs a function on the gateway's thread, after everything that was posted before.
    template <typename Function> void post(Function function)
    {
        QMetaObject::invokeMethod(&context, function, Qt::QueuedConnection);
    }
    template <typename Function> void run(Function function)
    {
        QMetaObject::invokeMethod(&context, function, Qt::BlockingQueuedConnection);
    }

    Books books;
    QThread thread;
    QObject context; ///< lives on the thread
    std::unique_ptr<Service> service;
    std::atomic<ClientId> lastClient{0};
};

PaperGateway::PaperGateway()
    : d(new Private)
{
    d->thread.setObjectName(QStringLiteral("PaperGateway"));
    d->context.moveToThread(&d->thread);
    d->thread.start();
}

PaperGateway::~PaperGateway()
{
    // The service goes on its own thread: its database belongs to it.
    d->run([this] { d->service.reset(); });
    d->thread.quit();
    d->thread.wait();
}

std::shared_ptr<PaperGateway> PaperGateway::open(const Books &books, const QString &stateFile, QString &errorText,
                                                 const GatewayOptions &options)
{
    std::shared_ptr<PaperGateway> gateway(new PaperGateway);
    Private *d = gateway->d.get();
    d->books = books;
    bool good = false;
    d->run([&] {
        auto store = Store::open(stateFile, d->books, errorText);
        if (!store)
            return;
        const StoredMarket market = store->market();
        if (!market.exchange.isEmpty() && options.seed.value_or(market.seed) != market.seed) {
            errorText = QStringLiteral("%1: was begun with the seed %2").arg(stateFile, QString::number(market.seed));
            return;
        }
        d->service = std::make_unique<Service>(d->books, std::move(store), options);
        good = d->service->start();
        if (!good)
            errorText = d->service->errorText();
    });
    return good ? gateway : nullptr;
}

QString PaperGateway::faults() const
{
    QString found;
    d->run([&] { found = d->service->faults(); });
    return found;
}

const Books &PaperGateway::books() const
{
    return d->books;
}

PaperGateway::ClientId PaperGateway::connectClient(Client client)
{
    const ClientId id = ++d->lastClient;
    d->post([this, id, client] { d->service->connectClient(id, client); });
    return id;
}

void PaperGateway::disconnectClient(ClientId id)
{
    d->run([this, id] { d->service->disconnectClient(id); });
}

void PaperGateway::receive(ClientId id, const QByteArray &envelope)
{
    d->post([this, id, envelope] { d->service->receive(id, envelope); });
}
