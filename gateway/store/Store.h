#pragma once

#include "Books.h"
#include "Ledger.h"
#include "SafetyRules.h"

#include <QtCore/QSet>

#include <functional>
#include <memory>

struct StoredResource {
    QString id;
    Holding holding;
    qint64 quantity = 0;
};

struct StoredPool {
    QString id;
    QString resourceId;
    QString trader; ///< Books::publicTrader() for a public pool
    Holding holding;
    qint64 quantity = 0;
    qint64 maxExposure = -1; ///< -1: none
    qint64 maxPendExposure = -1;
};

struct StoredLive {
    QString user;
    bool buy = false;
    Ledger::Parts open;
};

/// A usage record as it was last sent.
struct StoredUsage {
    QString trader;
    Holding holding;
    QString modifyTime;    ///< empty: never sent
    Ledger::TraderUse use; ///< its private quantity is not kept here: it follows from the pools
    Ledger::Limits limits;
};

/// What an account holds of a security.
struct StoredPosition {
    QString id; ///< empty: not stored yet
    Holding holding;
    Ledger::Stock stock;
    qint64 whenFlat = 0; ///< what it would hold, borrowed securities included, with no trader's position open
};

struct StoredOrder {
    QString id;
    QString user; ///< the trader
    Holding holding;
    QString symbol;
    QString sideUnion;
    bool buy = false;
    double price = 0;
    qint64 quantity = 0;
    Ledger::Parts open; ///< zeros when the order has ended, however it did
    qint64 filled = 0;
    double amount = 0; ///< of the fills
    QString status;    ///< one of Stand_Values::OrderStatus
    QString businessType;
    QString remark;
    QString request;     ///< the envelope's id
    QString text;        ///< why it ended unfilled
    qint64 placedMs = 0; ///< of the market clock, like all its times
    qint64 changedMs = 0;
    qint64 receivedMs = 0; ///< of the gateway's clock

    bool isLive() const { return open.total() > 0; }
};

struct StoredFill {
    QString id;
    StoredOrder order;
    qint64 quantity = 0;
    double price = 0;
    qint64 ms = 0;
};

/// The paper market between two starts.
struct StoredMarket {
    qint64 ms = 0; ///< the market clock
    quint64 seed = 0;
    bool held = false;
    QByteArray exchange; ///< empty: it has never run
};

/// One line of the audit: a field and what a request made of it, or a request that was refused.
struct AuditEntry {
    qint64 realMs = 0;   ///< the gateway's clock, ms since the epoch, UTC
    qint64 marketMs = 0; ///< the market clock: ms since 1970 of its local time
    QString user;
    QString type;
    QString request; ///< the envelope's id
    QString object;  ///< what kind of thing; empty when a whole request was refused
    QString objectId;
    Holding holding;
    QString trader;
    QString field;
    QString from; ///< empty: it did not exist; quantities are in display units
    QString to;   ///< empty: it does not exist any more
    QString refusal;
};

/// Which lines of the audit are asked for.
struct AuditFilter {
    qint64 sinceMs = 0; ///< of the gateway's clock
    QString user;       ///< empty: everybody
};

/// One of Master_Values::OpenPositionSide.
QString legSideText(Ledger::Side side);

/// The gateway's state in an SQLite database: enabled accounts, resources, pools, usage records, positions, orders,
/// fills, what traders are held to, the market, the time of the last change, the answers to change requests and the
/// audit. What was committed survives the end of the process at any moment. Ids are of fixed width, rise with every
/// insertion and are never given twice.
///
/// Lives on the thread that opened it. An operation that fails leaves an error text and the database as it
/// was before the transaction.
class Store
{
public:
    ~Store();
    Q_DISABLE_COPY(Store)

    /// file empty: in memory. A new database begins with the books' opening state; an existing one keeps its
    /// own, and is refused when it was begun with other books, written by a gateway of another version or used by
    /// another gateway.
    /// Returns nullptr and fills errorText.
    static std::unique_ptr<Store> open(const QString &file, const Books &books, QString &errorText);

    /// Whether a text looks like an id that a store gives; there may be no such row.
    static bool isResourceId(const QString &text);
    static bool isPoolId(const QString &text);
    static bool isPositionId(const QString &text);
    static bool isOrderId(const QString &text);
    static bool isFillId(const QString &text);

    QSet<QString> enabledAccounts();

    /// One resource or pool; its id is empty when there is none.
    StoredResource resource(const QString &id);
    StoredResource resourceOf(const Holding &holding);
    StoredPool pool(const QString &id);

    /// The rows of one account behind the given id (empty: from the first), at most limit of them.
    QVector<StoredResource> resources(const QString &account, const QString &afterId, int limit);
    QVector<StoredPool> pools(const QString &account, const QString &afterId, int limit);
    QVector<StoredPool> poolsOf(const Holding &holding);
    QVector<StoredPool> allPools();

    /// Records of these traders by trader, account, security and exchange; skips the first `skip` ones.
    QVector<StoredUsage> usage(const QStringList &traders, int skip, int limit);
    QVector<StoredUsage> usageOf(const Holding &holding);        ///< by trader
    QVector<StoredUsage> usageOfAccount(const QString &account); ///< by security, exchange and trader
    QVector<StoredUsage> allUsage();                             ///< by account, security, exchange and trader

    QVector<StoredPosition> positions(const QString &afterId, int limit);
    StoredPosition positionOf(const Holding &holding); ///< without an id when there is none

    StoredOrder order(const QString &id); ///< without an id when there is none

    /// In the order in which they were placed.
    /// What a trader's live orders of one direction have open together, of one holding.
    QVector<StoredLive> liveOf(const Holding &holding);
    QVector<StoredOrder> liveOrders();
    QVector<StoredOrder> liveOrdersOf(const Holding &holding);
    QVector<StoredOrder> liveOrdersOfAccount(const QString &account);

    /// Of the trading day and this user (empty: everybody), behind the given id.
    QVector<StoredOrder> ordersOfDay(const QString &user, const QString &afterId, int limit);
    QVector<StoredFill> fillsOfDay(const QString &user, const QString &afterId, int limit);

    QString lastOrderId(); ///< empty: there was none yet

    /// The last order up to an id that repeats this one: of the same user, holding, side, price and quantity.
    /// Without an id when there is none.
    StoredOrder lastEqual(const StoredOrder &order, const QString &upToId);

    /// The account's live order of the other side that an order would meet first; without an id when it would meet
    /// none.
    StoredOrder meeting(const StoredOrder &order, const QString &account);

    SafetyRules safetyOf(const QString &trader);

    StoredMarket market();

    // What changes the state is to be called inside a transaction.

    bool setEnabled(const QString &account, bool enabled);

    /// Without an id a new one, which the result tells; else the quantity, or quantity and limits, of the one that
    /// there is. Empty: failed.
    QString saveResource(const StoredResource &resource);
    QString savePool(const StoredPool &pool);

    bool removeResource(const QString &id); ///< with its pools
    bool removePool(const QString &id);

    /// Inserts or replaces.
    bool saveUsage(const StoredUsage &usage);

    /// Without an id: a new one. Return the id; empty: failed.
    QString savePosition(const StoredPosition &position);
    QString saveOrder(const StoredOrder &order);
    QString addFill(const StoredFill &fill);

    bool saveSafety(const QString &trader, const SafetyRules &rules);

    /// The market clock; kept when the market is saved.
    void moveClock(qint64 marketMs);
    bool saveMarket(const StoredMarket &market);

    /// The orders and fills that there are belong to an earlier day from now on.
    bool beginDay();

    /// The market clock's yyyyMMddHHmmsszzz and a counter of three digits: 20 digits that sort behind every
    /// text given before, by this process or an earlier one with the same file, also when the clock was set
    /// back.
    QString nextModifyTime();

    /// The answer that was given to a user's request, as MessageBody::encode(); empty: none.
    QByteArray answerTo(const QString &user, const QString &requestId);
    bool saveAnswer(const QString &user, const QString &requestId, qint64 validUntil, const QByteArray &answer);
    bool forgetAnswers(qint64 validBefore);

    bool addAudit(const AuditEntry &entry);

    /// Reads the audit of a state file in the order of its writing, also while a gateway uses the file; changes
    /// nothing. Empty, or what went wrong.
    static QString readAudit(const QString &file, const AuditFilter &filter,
                             const std::function<void(const AuditEntry &)> &each);

    qint64 marketMs() const;

    bool begin();
    bool commit(); ///< false: everything since begin() was undone
    void rollback();

    /// What the last operation that failed ran into; stays until it is cleared. Queries that failed give no
    /// rows, so whoever answers with rows has to look here.
    QString errorText() const;
    void clearError();

private:
    Store();
    bool prepare(const QString &file);
    bool lock(const QString &file);
    bool createSchema();
    bool import(const Books &books);
    bool importAccounts(const Books &books);
    bool importPools(const Books &books);
    bool importCarried(const Books &books);
    bool importPositions(const Books &books);
    bool importSafety(const Books &books);
    bool checkBooks(const Books &books);
    bool readClock();

    class Private;
    std::unique_ptr<Private> d;
};
