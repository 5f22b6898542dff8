#pragma once

#include "Changes.h"
#include "Envelope.h"
#include "PaperGateway.h"
#include "Store.h"

#include <QtCore/QSet>

#include <functional>

class ChangeRow;

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
    VariantRecord row; ///< the query or the header of a change: the body's first row
    RecordList rows;   ///< the data of a change: the body's other rows

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

    /// What a type of request does to the state, and so what surrounds its handler.
    enum class Kind {
        Query,
        Control, ///< a change that everybody may make
        Change   ///< a change that needs a manager
    };
    struct Route {
        Handler handler = nullptr;
        Kind kind = Kind::Query;
    };
    static const QHash<QString, Route> &routes();

    MessageBody answerTo(ClientSession &session, const Envelope &envelope);
    MessageBody execute(ClientSession &session, const Envelope &envelope, const Route &route);
    void deliverPushes();

    // Service_Transaction.cpp

    /// Executes a change once for a user and id, whole or not at all: the change, the usage records that follow
    /// from it, its audit and its answer are one transaction. A handler only checks and writes through m_changes;
    /// nothing of what it did stays when it refuses or the store fails. A repeated id gets the answer of the first.
    MessageBody changeOnce(ClientSession &session, const Envelope &envelope, const Route &route);
    MessageBody firstAnswer(ClientSession &session, const Envelope &envelope, const Route &route);

    /// What any change is refused for, before its handler; empty: nothing.
    QString refusalOfChange(const Request &request, Kind kind) const;
    bool refreshTouched();
    bool record(const QString &user, const Envelope &envelope, const MessageBody &answer);

    // Service_Resources.cpp
    MessageBody alterProducts(const Request &request);
    MessageBody addResources(const Request &request);
    MessageBody alterResources(const Request &request);
    MessageBody deleteResources(const Request &request);

    // Service_Pools.cpp
    MessageBody allocatePools(const Request &request);
    MessageBody alterPools(const Request &request);
    MessageBody deletePools(const Request &request);
    MessageBody addResourcesAndPools(const Request &request);
    struct Addition;
    StoredPool allocationOf(ChangeRow &row, const StoredResource &resource);
    MessageBody replacePools(const QVector<StoredPool> &before, const QVector<StoredPool> &wanted);
    void readAddition(ChangeRow &row, Addition &addition);
    QVector<StoredPool> poolsLeftOut(const Addition &addition);
    QString removalStandsAgainst(const StoredPool &pool, const Addition &addition);
    MessageBody saveAddition(const Addition &addition, const QVector<StoredPool> &leftOut);

    // Service_ChangeChecks.cpp: what several changes ask of a row. They refuse the row and give something empty.
    void checkAddable(ChangeRow &row, const QString &account);
    Holding holdingOf(ChangeRow &row, const QString &account);
    StoredResource resourceOf(ChangeRow &row);
    StoredPool poolOf(ChangeRow &row);

    /// Who a row gives a part of the account to; publicTrader() for everybody.
    QString traderOf(ChangeRow &row, const QString &account);
    qint64 factorOf(const Holding &holding) const;
    qint64 allocated(const Holding &holding);

    /// Why what a trader may use of a holding cannot be taken away from him: he has an open position there. An
    /// empty trader stands for all. Empty: it can.
    QString standsAgainst(const Holding &holding, const QString &trader);

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

    /// Computes whole holdings anew from all their records and pools; saves and pushes the records that are new or
    /// different. To be called inside a transaction.
    bool refreshUsage(const QVector<StoredUsage> &records, const QVector<StoredPool> &pools);

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
    Changes m_changes;      ///< of the request in work

    std::function<void()> m_atCommit; ///< of the request in work: what changes beside the store once it is in force

    QStringList m_quoted; ///< symbols in the order of their first quote
    QHash<QString, double> m_lastPrices;

    /// What a handler changes while it works; goes back with a transaction that is undone.
    struct Memory {
        QSet<QString> enabled; ///< trading accounts, as in the store
    };
    Memory m_memory;
};
