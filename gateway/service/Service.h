#pragma once

#include "Envelope.h"
#include "PaperGateway.h"
#include "Store.h"

#include <QtCore/QSet>

/// One client's connection and what it may see.
struct ClientSession {
    PaperGateway::Client client;
    const User *user = nullptr; ///< fixed by the login
    QSet<QString> usageOf;      ///< traders whose usage it subscribed
    bool reconnected = false;   ///< its login said that an earlier connection was lost
    bool quotes = false;
};

/// A request that is being answered.
struct Request {
    ClientSession &session;
    QString type;
    VariantRecord values;
    VariantRecord row; ///< the query: the body's first row

    const User &user() const { return *session.user; }
    QString text(const QString &field) const; ///< of the row
};

/// The gateway's business: who may, what is answered, what is pushed. Lives on the gateway's thread.
class Service
{
public:
    Service(const Books &books, std::unique_ptr<Store> store);

    /// Makes the usage records that pools and legs ask for, and corrects those whose limits have changed.
    /// False: the store's errorText() says why.
    bool bringUsageUpToDate();

    void connectClient(PaperGateway::ClientId id, PaperGateway::Client client);
    void disconnectClient(PaperGateway::ClientId id);
    void receive(PaperGateway::ClientId id, const QByteArray &bytes);

    QString errorText() const;

private:
    using Handler = MessageBody (Service::*)(const Request &request);
    static const QHash<QString, Handler> &handlers();

    MessageBody answerTo(ClientSession &session, const Envelope &envelope);
    MessageBody answerTo(const Request &request);
    void deliverPushes();

    // Service_Session.cpp
    MessageBody login(const Request &request);
    MessageBody subscribe(const Request &request);
    MessageBody subscribeUsage(const Request &request);
    MessageBody echo(const Request &request);

    // Service_Reference.cpp
    MessageBody queryAccounts(const Request &request);
    MessageBody queryInstruments(const Request &request);
    MessageBody queryPositions(const Request &request);
    MessageBody queryMarginSecurities(const Request &request);
    MessageBody queryQuotes(const Request &request);
    MessageBody setQuote(const Request &request);
    bool mayTrade(const Request &request, const QString &account) const;
    double dispFactor(const Holding &holding) const;

    // Service_T0.cpp
    MessageBody queryProducts(const Request &request);
    MessageBody queryUsersByRole(const Request &request);
    MessageBody queryResources(const Request &request);
    MessageBody queryPools(const Request &request);
    MessageBody queryAccountPriority(const Request &request);

    // Service_Usage.cpp
    MessageBody queryUsage(const Request &request);
    /// A record as it is, to those who subscribed its trader. Any logged-in user may: it is a control of the
    /// console and changes no record.
    MessageBody pushUsage(const Request &request);

    /// Pushes what is known of a trader to the client that asks: it may have missed changes.
    void pushSnapshot(const Request &request, const QString &trader);
    VariantRecord usageRow(const StoredUsage &usage) const;

    // Service_Picture.cpp
    MessageBody picture(const Request &request);
    QVariantList pictureOfProducts() const;
    QVariantList pictureOfResources(const QString &account);
    QVariantList pictureOfPools(const QString &account);
    QVariantList pictureOfUsage();
    VariantRecord securityRow(const Holding &holding) const;

    struct Push {
        Envelope envelope;
        QString trader;                      ///< empty: a quote
        const ClientSession *only = nullptr; ///< the one client that gets it; nullptr: all that subscribed
    };

    const Books &m_books;
    const std::unique_ptr<Store> m_store;
    QHash<PaperGateway::ClientId, ClientSession> m_sessions;
    QVector<Push> m_pushes; ///< caused by the request in work, sent behind its answer
    QStringList m_quoted;   ///< symbols in the order of their first quote
    QHash<QString, double> m_lastPrices;
};
