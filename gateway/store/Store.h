#pragma once

#include "Books.h"
#include "Ledger.h"

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

/// A usage record as it was last sent.
struct StoredUsage {
    QString trader;
    Holding holding;
    QString modifyTime;    ///< empty: never sent
    Ledger::TraderUse use; ///< its private quantity is not kept here: it follows from the pools
    Ledger::Limits limits;
};

/// One of Master_Values::OpenPositionSide.
QString legSideText(Ledger::Side side);

/// The gateway's state: resources, pools, usage records and the time of the last change, in an SQLite database.
/// Ids are of fixed width, rise with every insertion and are never given twice.
///
/// Lives on the thread that opened it. An operation that fails leaves an error text and the database as it
/// was before the transaction.
class Store
{
public:
    ~Store();
    Q_DISABLE_COPY(Store)

    /// file empty: in memory. A new database begins with the books' opening state; an existing one keeps its
    /// own, and is refused when it was begun with other books or written by a gateway of another version.
    /// Returns nullptr and fills errorText.
    static std::unique_ptr<Store> open(const QString &file, const Books &books, QString &errorText);

    /// Whether a text looks like an id that a store gives; there may be no such row.
    static bool isResourceId(const QString &text);
    static bool isPoolId(const QString &text);

    /// The rows of one account behind the given id (empty: from the first), at most limit of them.
    QVector<StoredResource> resources(const QString &account, const QString &afterId, int limit);
    QVector<StoredPool> pools(const QString &account, const QString &afterId, int limit);
    QVector<StoredPool> allPools();

    /// Records of these traders by trader, account, security and exchange; skips the first `skip` ones.
    QVector<StoredUsage> usage(const QStringList &traders, int skip, int limit);
    QVector<StoredUsage> allUsage(); ///< by account, security, exchange and trader

    /// Inserts or replaces; to be called inside a transaction.
    bool saveUsage(const StoredUsage &usage);

    /// The market clock's yyyyMMddHHmmsszzz and a counter of three digits: 20 digits that sort behind every
    /// text given before, by this process or an earlier one with the same file, also when the clock was set
    /// back. To be called inside a transaction.
    QString nextModifyTime();

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
    bool createSchema();
    bool checkSchema();
    bool import(const Books &books);
    bool importPools(const Books &books, const QHash<Holding, qint64> &resources);
    bool importCarried(const Books &books);
    bool checkBooks(const Books &books);
    bool readClock();

    class Private;
    std::unique_ptr<Private> d;
};
