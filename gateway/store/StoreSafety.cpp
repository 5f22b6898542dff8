#include "StorePrivate.h"

SafetyRules Store::safetyOf(const QString &trader)
{
    return d->row<SafetyRules>(QStringLiteral("SELECT trade_switch, orders_per_second, cancels_per_minute, "
                                              "duplicate_ms, refuse_self_match FROM safety WHERE trader = ?"),
                               {trader}, [](const QSqlQuery &row) {
                                   return SafetyRules{row.value(0).toString(), row.value(1).toInt(),
                                                      row.value(2).toInt(), row.value(3).toInt(),
                                                      row.value(4).toBool()};
                               });
}

bool Store::saveSafety(const QString &trader, const SafetyRules &rules)
{
    return d->execute(QStringLiteral("INSERT OR REPLACE INTO safety (trader, trade_switch, orders_per_second, "
                                     "cancels_per_minute, duplicate_ms, refuse_self_match) VALUES (?, ?, ?, ?, ?, ?)"),
                      {trader, rules.tradeSwitch, rules.ordersPerSecond, rules.cancelsPerMinute, rules.duplicateMs,
                       int(rules.refuseSelfMatch)});
}

bool Store::importSafety(const Books &books)
{
    for (const OpeningSafety &safety : books.safety)
        if (!saveSafety(safety.trader, safety.rules))
            return false;
    return true;
}
