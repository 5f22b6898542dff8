#pragma once

#include "SafetyRules.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

/// What the gateway is told by its operator. Plain data: every quantity is in display units, every price
/// and amount is money, every list keeps the order of its file.

struct TickBand {
    double from = 0;
    double to = 0; ///< 0: no upper end
    double tick = 0;
};

/// One security on one exchange.
struct Instrument {
    QString exchange;
    QString securityID;
    QString symbol; ///< securityID and marketSuffix; a Hong Kong share has one symbol on two exchanges
    QString chineseName;
    QString spellCode;
    QString type;
    QString subType;
    QString marketSuffix;
    double preClose = 0;
    double upLimit = 0;   ///< 0: no price limits
    double downLimit = 0; ///< 0: no price limits
    QString tickTable;    ///< a number or the name of a tick table
    int pricePrecision = 0;
    qint64 qtyStep = 1;
    qint64 minQty = 1;
    qint64 maxQty = 1;
    qint64 lotSize = 1;
    qint64 dispFactor = 1; ///< display units of one server unit
    bool t0 = false;
    QStringList marks;
};

struct SessionPhase {
    QString market; ///< an exchange
    QString phase;
    QString from; ///< hh:mm:ss
    QString to;
    bool cancel = true; ///< orders may be cancelled
};

struct Account {
    QString productAccount;
    QString productName;
    QString tradingAccount;
    QString accountText;
    QString assetProp;
    QStringList exchanges;
    bool enabled = false;
    QString profitOwner;
    double buyFee = 0; ///< fraction of the amount
    double sellFee = 0;
};

struct User {
    QString userID;
    QString userName;
    QString organCode;
    QStringList roles;
    QStringList accounts; ///< best first

    bool isManager() const;
    bool isTrader() const;
};

/// A security in an account: what quantities are counted by.
struct Holding {
    QString account;
    QString securityID;
    QString exchange;

    bool operator==(const Holding &other) const;
    bool operator<(const Holding &other) const;
};
uint qHash(const Holding &holding, uint seed = 0);

struct Position {
    Holding holding;
    qint64 quantity = 0;
    qint64 tradeable = 0;
};

struct MarginSecurity {
    Holding holding;
    qint64 quantity = 0;
    QString loanState;
};

struct OpeningResource {
    Holding holding;
    qint64 quantity = 0;
};

struct OpeningPool {
    QString trader; ///< publicTrader() for a public pool
    Holding holding;
    qint64 quantity = 0;
    qint64 maxExposure = -1; ///< -1: none
    qint64 maxPendExposure = -1;
};

struct CarriedLeg {
    QString trader;
    Holding holding;
    QString side; ///< Master_Values::OpenPositionSide
    qint64 quantity = 0;
    double amount = 0;
};

struct OpeningSafety {
    QString trader;
    SafetyRules rules;
};

struct OpeningQuote {
    QString symbol;
    double last = 0; ///< 0: none yet
};

/// One thing that is wrong in the books.
struct BookError {
    QString file;
    int row = 0; ///< line in the file, from 1; 0: the file as a whole
    QString column;
    QString value;
    QString expected;

    /// file:row: column: value "…": expected …
    QString toText() const;
};

class Books
{
public:
    QMap<QString, QVector<TickBand>> tickTables;
    QVector<Instrument> instruments;
    QVector<SessionPhase> sessions;
    QVector<Account> accounts;
    QVector<User> users;
    QVector<Position> positions;
    QVector<MarginSecurity> margin;
    QVector<OpeningResource> resources;
    QVector<OpeningPool> pools;
    QVector<CarriedLeg> carried;
    QVector<OpeningSafety> safety; ///< of traders; those without a row begin with SafetyRules()
    QVector<OpeningQuote> quotes;

    struct Loaded;

    /// Reads the twelve files of a folder. Either the books or every error, in the order of files and rows.
    static Loaded load(const QString &dir);

    /// What a pool's trader is called when every trader of the account may use it; never a user.
    static QString publicTrader();

    /// The finders return nullptr when there is none; the pointers live as long as the books are not changed.
    const Instrument *instrument(const QString &securityID, const QString &exchange) const;
    const Instrument *listed(const QString &symbol, const QString &exchange) const;
    const Account *account(const QString &tradingAccount) const;
    const User *user(const QString &userID) const;
    bool hasSymbol(const QString &symbol) const;

    /// The first manager of the users' file; nullptr without one.
    const User *firstManager() const;

    /// Traders who may trade an account, in the order of the users' file.
    QStringList tradersOf(const QString &tradingAccount) const;

    /// Trading accounts of a product, in the order of the accounts' file.
    QStringList accountsOf(const QString &productAccount) const;

    /// To be called after the lists were filled by hand or changed; the finders use what it builds.
    void buildIndexes();

private:
    QHash<QPair<QString, QString>, int> m_instruments;
    QHash<QPair<QString, QString>, int> m_listed;
    QHash<QString, int> m_accounts;
    QHash<QString, int> m_users;
    QHash<QString, int> m_symbols;
    QHash<QString, QStringList> m_traders;
    QHash<QString, QStringList> m_ofProduct;
};

struct Books::Loaded {
    std::optional<Books> books; ///< empty when there is any error
    QVector<BookError> errors;
};
