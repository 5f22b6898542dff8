#pragma once

#include "Changes.h"
#include "Envelope.h"
#include "Exchange.h"
#include "FlowWindow.h"
#include "PaperGateway.h"
#include "Store.h"
#include "UsageGroup.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QSet>
#include <QtCore/QTimer>

#include <map>

class ChangeRow;

/// One client's connection and what it may see.
struct ClientSession {
    PaperGateway::Client client;
    const User *user = nullptr; ///< fixed by the login
    QSet<QString> usageOf;      ///< traders whose usage it subscribed
    QSet<QString> subscribed;   ///< the other types of pushes
    bool reconnected = false;   ///< its login said that an earlier connection was lost
};

/// A request that is being answered.
struct Request {
    ClientSession &session;
    QString id; ///< the envelope's
    QString type;
    VariantRecord values;
    VariantRecord row; ///< the query or the header of a change: the body's first row
    RecordList rows;   ///< the data of a change: the body's other rows

    const User &user() const { return *session.user; }
    QString text(const QString &field) const; ///< of the row

    /// Whose orders and fills its user sees; empty: everybody's.
    QString seenUser() const;
};

/// The gateway's business: who may, what is answered, what is pushed. Lives on the gateway's thread.
class Service
{
public:
    Service(const Books &books, std::unique_ptr<Store> store, const GatewayOptions &options);

    /// Brings the state up to date with the books: makes the usage records that pools and legs ask for, corrects
    /// those whose limits have changed, goes on with the market. False: errorText() says why.
    bool start();

    /// What contradicts itself in the state, a sentence a line; empty when nothing does.
    QString faults();

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

    struct Push {
        Envelope envelope;
        QString about;                       ///< a trader, of positions an account; empty: everybody's
        const ClientSession *only = nullptr; ///< the one client that gets it; nullptr: all that subscribed
    };
    void push(const QString &type, const VariantRecord &row, const QString &about = QString(),
              const ClientSession *only = nullptr);
    bool wants(const ClientSession &session, const Push &push) const;
    bool isWanted(const QString &pushType) const;

    // Service_Transaction.cpp

    /// Executes a change once for a user and id, whole or not at all: the change, the usage records that follow
    /// from it, its audit and its answer are one transaction. A handler only checks and writes, through m_changes or
    /// as orders and the market do; nothing of what it did stays when it refuses or the store fails. A repeated id
    /// gets the answer of the first.
    MessageBody changeOnce(ClientSession &session, const Envelope &envelope, const Route &route);
    MessageBody firstAnswer(ClientSession &session, const Envelope &envelope, const Route &route);

    /// What any change is refused for, before its handler; empty: nothing.
    QString refusalOfChange(const Request &request, Kind kind) const;
    struct Memory;
    void undo(const Memory &before);
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

    /// Why what a trader may use of a holding cannot be taken away from him: he has an open position or a live
    /// order there. An empty trader stands for all. Empty: it can.
    QString standsAgainst(const Holding &holding, const QString &trader);
    QString liveAgainst(const Holding &holding, const QString &trader); ///< the same for live orders alone

    // Service_Orders.cpp
    MessageBody placeOrders(const Request &request);
    MessageBody cancelOrders(const Request &request);
    MessageBody queryRequestFate(const Request &request);
    MessageBody queryOrders(const Request &request);
    MessageBody queryFills(const Request &request);
    struct OrderGuards;
    VariantRecord placeOrder(const Request &request, const VariantRecord &row, const OrderGuards &guards);
    QString cancel(const Request &request, const StoredOrder &order, const SafetyRules &rules); ///< why not
    void pushOrder(const StoredOrder &order, const ClientSession *only = nullptr);
    void pushFill(const StoredFill &fill, const ClientSession *only = nullptr);

    // Service_OrderChecks.cpp: why orders are refused; empty: they are not.
    QString refusalOfList(const Request &request) const;
    QString readOrder(const VariantRecord &row, StoredOrder &order) const;
    QString refusalOfSide(const StoredOrder &order) const;
    QString refusalOfMarket(const StoredOrder &order) const;

    /// Splits the quantity of an order that the ledger accepts, and takes it from the limits.
    QString accept(StoredOrder &order, UsageGroup &group, bool reduceOnly);

    // Service_Safety.cpp: what traders are held to besides their limits.
    MessageBody querySafety(const Request &request);
    MessageBody alterSafety(const Request &request);
    VariantRecord safetyRow(const QString &trader);
    QVector<QString> tradersSeen(const Request &request) const; ///< whose rules its user sees

    /// What the orders of one request are held to.
    struct OrderGuards {
        SafetyRules rules;
        QString lastBefore; ///< the last order of earlier requests
    };

    /// Why an order that everything else allows is not placed; empty: it is.
    QString refusalOfGuards(const StoredOrder &order, const OrderGuards &guards);
    QString refusalOfRepetition(const StoredOrder &order, const OrderGuards &guards);
    QString refusalOfSelfMatch(const StoredOrder &order);

    // Service_Fills.cpp
    void applyFills(const QVector<Fill> &fills);
    void applyFill(const Fill &fill);
    void endOrder(StoredOrder order, const QString &status, const QString &text);
    void pushPosition(const StoredPosition &position, const ClientSession *only = nullptr);
    void nextDay();

    // Service_Market.cpp: the clock, and what is known of prices.
    MessageBody queryQuotes(const Request &request);
    MessageBody setQuote(const Request &request);
    MessageBody controlMarket(const Request &request);
    QString carryOut(const QString &command, const VariantRecord &row); ///< why not; empty: done
    QString stepBy(const QVariant &count);
    QString runWith(const QVariant &speed);
    void advance(int seconds);
    void setTimer();
    void tick();
    void touch(const QString &symbol); ///< of which something has changed in the exchange
    void touchAll();
    bool saveMarket();
    VariantRecord marketRow() const;
    VariantRecord quoteRow(const QString &symbol) const;

    /// Quotes that look different from what was pushed last, and the market when it does.
    void pushMarket();
    void pushQuotes();

    /// To be called when nobody is pushed quotes yet: those that differ from now on are.
    void rememberQuotes();

    // Service_Session.cpp
    MessageBody login(const Request &request);
    MessageBody subscribe(const Request &request);
    MessageBody subscribeUsage(const Request &request);
    MessageBody echo(const Request &request);

    /// Pushes to the client that asks what it may have missed of a type.
    void pushMissed(const Request &request, const QString &type);

    // Service_Reference.cpp
    MessageBody queryAccounts(const Request &request);
    MessageBody queryInstruments(const Request &request);
    MessageBody queryPositions(const Request &request);
    MessageBody queryMarginSecurities(const Request &request);
    bool mayTrade(const User &user, const QString &account) const;
    VariantRecord positionRow(const StoredPosition &position) const;
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

    /// Computes whole holdings anew from all their records, pools and live orders; saves and pushes the records
    /// that are new or different. To be called inside a transaction, as the three below it.
    struct UsageParts {
        QVector<StoredUsage> records;
        QVector<StoredPool> pools;
        QVector<StoredOrder> orders;
    };
    bool refreshUsage(const UsageParts &parts);
    UsageGroup groupOf(const Holding &holding);

    /// Saves and pushes the records that are new or whose limits have changed, and that of the touched trader.
    void saveGroup(const UsageGroup &group, const QString &touched = QString());
    void saveUsage(StoredUsage &usage);
    void setTerms(UsageGroup &group) const;

    // Service_Picture.cpp
    MessageBody picture(const Request &request);
    QVariantList pictureOfProducts() const;
    QVariantList pictureOfResources(const QString &account);
    QVariantList pictureOfPools(const QString &account);
    QVariantList pictureOfUsage();
    VariantRecord securityRow(const Holding &holding) const;

    const Books &m_books;
    const std::unique_ptr<Store> m_store;
    const quint64 m_seed;
    QHash<PaperGateway::ClientId, ClientSession> m_sessions;
    QVector<Push> m_pushes; ///< caused by the request in work, sent behind its answer
    Changes m_changes;      ///< of the request in work

    /// What a handler changes while it works; goes back with a transaction that is undone.
    struct Memory {
        QSet<QString> enabled; ///< trading accounts, as in the store
        Exchange exchange;
        double speed = 0;   ///< above 0, the clock runs: seconds of the market in one real second
        bool moved = false; ///< the exchange is to be saved
    };
    Memory m_memory;

    /// What a trader has sent on to the exchange. Not in the store: a minute after a restart it is forgotten anyway.
    struct Flow {
        FlowWindow orders{1'000};
        FlowWindow cancels{60'000};
    };
    std::map<QString, Flow> m_flows;
    const std::function<qint64()> m_clock; ///< ms since the epoch

    QVector<QString> m_symbols; ///< in the order of the books

    // While the market's clock runs.
    double m_due = 0; ///< its seconds that have not been stepped yet
    QElapsedTimer m_sinceTick;
    QTimer m_timer;

    // What clients may see otherwise than it is.
    QSet<QString> m_staleQuotes;
    bool m_allStale = false;

    // As they were pushed last.
    QHash<QString, VariantRecord> m_shownQuotes;
    VariantRecord m_shownMarket;
};
