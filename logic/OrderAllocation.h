#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/// Distributes an order over trading accounts and into parts. Pure functions; shares or bonds.
namespace OrderAllocation {

/// One account in the order of priority.
struct Account {
    QString id;
    qint64 quota = 0; ///< what it may still trade in the order's direction
    qint64 close = 0; ///< what of its open position the order closes
};

struct Share {
    QString account;
    qint64 quantity = 0;
};

/// First every account closes its own open position, then the rest is opened in the order of priority, within the
/// quotas. step: what a buy must be a multiple of. Accounts that get nothing are left out.
QVector<Share> distribute(qint64 quantity, bool isBuy, qint64 step, const QVector<Account> &accounts);

constexpr int MaxParts = 1000;

/// Equal parts of about partQty (0: one part), a multiple of step and not below minQty, the remainder last. A
/// remainder below minQty joins the part before it; more than MaxParts parts become larger ones.
QVector<qint64> split(qint64 quantity, qint64 partQty, qint64 step, qint64 minQty);

} // namespace OrderAllocation
