#include "OrderRoom.h"

#include "CBusinessDataBase.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "UsageFigures.h"

namespace {

/// Credit accounts alone know collateral.
QStringList suitingAccounts(const OrderWish &wish)
{
    namespace Side = Master_Values::SideUnion;
    if (wish.sideUnion == Side::normalBuy || wish.sideUnion == Side::normalSell)
        return wish.accounts;
    QStringList suiting;
    for (const QString &account : wish.accounts) {
        if (MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(account) ==
            Master_Values::FundAccountType::Credit)
            suiting.append(account);
    }
    return suiting;
}

} // namespace

OrderRoom OrderRoom::of(const OrderWish &wish)
{
    OrderRoom room;
    const QStringList accounts = suitingAccounts(wish);
    if (wish.symbol.isEmpty() || wish.exchange.isEmpty() || accounts.isEmpty())
        return room;
    room.closable =
        ManualT0Logic::GetOpenPositionByAccountAndSymbol(wish.symbol, wish.exchange, wish.sideUnion, accounts);
    room.limit = 0;
    using namespace Master_Fields::ManualT0;
    const RecordList usage = ManualT0Logic::GetRealtimePoolDetailList(accounts, {CBusinessDataBase::GetLoginAccount()},
                                                                      wish.symbol, wish.exchange);
    for (const VariantRecord &record : usage) {
        room.quota += record.value(wish.isBuy() ? RtTotalBuyLimit : RtTotalSellLimit).toLongLong();
        const UsageFigures figures = UsageFigures::of(record);
        room.exposure += figures.exposure.value_or(0);
        if (room.limit && figures.limit)
            room.limit = *room.limit + *figures.limit;
        else
            room.limit.reset();
    }
    return room;
}

qint64 QuickQuantity::of(Kind kind, const OrderRoom &room, bool isBuy, qint64 step, qint64 lot)
{
    const auto whole = [step](qint64 quantity) { return step > 0 ? quantity / step * step : quantity; };
    switch (kind) {
    case Third:
        return whole(room.quota / 3);
    case Half:
        return whole(room.quota / 2);
    case All:
        return isBuy ? whole(room.quota) : room.quota;
    case OneLot:
        return lot;
    case TenLots:
        return lot * 10;
    case Close:
        return room.closable;
    }
    return 0;
}
