#include "DisplayUnits.h"
#include "HostLog.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OpenPosition.h"
#include "OrderChecks.h"
#include "Quantity.h"

using namespace Master_Fields::ManualT0;

long long ManualT0LogicPrivate::GetOpenPositionByAccountAndSymbol(const QString &symbol, const QString &exchange,
                                                                  const QString &side,
                                                                  const QStringList &accounts) const
{
    if (symbol.isEmpty() || exchange.isEmpty() || accounts.isEmpty()) {
        HOST_DEBUG("ManualT0LogicPrivate",
                   "ManualT0LogicPrivate::GetOpenPositionByAccountAndSymbol" << symbol << exchange << side << accounts);
        return 0;
    }
    const QStringList matching = side.isEmpty() ? accounts : OrderChecks::matchingAccounts(accounts, side);
    qint64 net = 0;
    ReadLock lock(realtimePoolLock);
    const QVector<HeldRecord> records = ownUsage(matching, symbol, exchange);
    for (const HeldRecord record : records)
        net = Quantity::satAdd(net, OpenPosition::net(*record));
    lock.unlock();
    return side.isEmpty() ? net : OpenPosition::closedBy(net, OrderChecks::isBuy(side));
}

RecordList ManualT0LogicPrivate::GetOpenPositionList(const QStringList &accounts, const QStringList &traderIds,
                                                     const QString &symbol, const QString &exchange) const
{
    RecordList open;
    ReadLock lock(realtimePoolLock);
    const QVector<HeldRecord> records = usageLookup().find({accounts, traderIds, symbol, exchange});
    for (const HeldRecord record : records) {
        if (text(*record, OpenPosSide) != Master_Values::OpenPositionSide::NoOpenPos)
            open.append(*record);
    }
    return open;
}

QStringList ManualT0LogicPrivate::GetExchangeListByAccountAndSymbol(const QString &symbol,
                                                                    const QStringList &accounts) const
{
    if (symbol.isEmpty() || accounts.isEmpty())
        return {};
    QStringList exchanges;
    ReadLock lock(realtimePoolLock);
    // By key: which exchange appears first is the same every time.
    QVector<HeldRecord> records = usageLookup().find({accounts, {loginUserId}, symbol, QString()});
    sortById(records);
    for (const HeldRecord record : qAsConst(records))
        exchanges.append(text(*record, Orvane_Fields::UserAccount::securityExchange));
    exchanges.removeDuplicates();
    return exchanges;
}
