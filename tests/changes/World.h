#pragma once

#include "Books.h"
#include "VariantRecord.h"

/// The desk of the changes: manager "m"; traders t1 (every account), t2 (A1, A3) and t3 (A2); "x", who is no trader.
/// Products P1 with the cash account A1 and the credit account A2, which does not trade in Hong Kong, and P2 with the
/// cash account A3. Nothing is set aside at the start.
namespace World {

/// Of a row's securityID and securityExchange; the symbol is empty when there is no such security.
struct Security {
    QString securityID;
    QString exchange;
    QString symbol;
    int factor = 1;
};

Books books();
const QVector<Security> &securities();
Security securityOf(const VariantRecord &row);

QString accountText(const QString &account);
bool mayHold(const QString &account, const Security &security);
bool mayTrade(const QString &trader, const QString &account); ///< also the public trader

} // namespace World
