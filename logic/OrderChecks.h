#pragma once

#include <QtCore/QStringList>

#include <functional>

/// The checks an order passes before it is sent. Each returns the text a user reads, empty when it passes.
namespace OrderChecks {

/// Bits of the mask that selects checks, by value. They run in this order.
enum Flag { Accounts = 1, SymbolAndExchange = 2, Price = 4, Quantity = 8, Quota = 16 };

struct Order {
    QStringList accounts; ///< those that suit the direction
    QString symbol;
    QString exchange;
    QString sideUnion;
    double price = 0;
    qint64 quantity = 0; ///< shares or bonds
    bool isBuy = false;
    std::function<qint64()> quota; ///< what the accounts may still trade in the order's direction
};

/// The text of the first selected check that fails. Other bits of flags are ignored.
QString check(const Order &order, int flags);

/// Whether a side buys.
bool isBuy(const QString &sideUnion);

/// The accounts, in their order, that may trade in a direction: all of them by the two ordinary sides, credit
/// accounts by any other. Empty texts are no accounts.
QStringList matchingAccounts(const QStringList &accounts, const QString &sideUnion);

} // namespace OrderChecks
