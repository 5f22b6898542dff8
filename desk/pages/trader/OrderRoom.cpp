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

std::optional<double> sum(const std::optional<double> &one, const std::optional<double> &other)
{
    return one && other ? std::optional<double>(*one + *other) : std::nullopt;
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
    using namespace Master_Fields::ManualT0;
    const RecordList usage = ManualT0Logic::GetRealtimePoolDetailList(accounts, {CBusinessDataBase::GetLoginAccount()},
                                                                      wish.symbol, wish.exchange);
    room.exposure = 0;
    if (!usage.isEmpty())
        room.limit = 0;
    for (const VariantRecord &record : usage) {
        room.quota += record.value(wish.isBuy() ? RtTotalBuyLimit : RtTotalSellLimit).toLongLong();
        const std::optional<double> limitQuantity = UsageFigures::limitQuantity(record);
        const UsageFigures figures = UsageFigures::of(record, limitQuantity);
        room.isUnlimited = room.isUnlimited || !limitQuantity;
        room.exposure = sum(room.exposure, figures.exposure);
        room.limit = sum(room.limit, figures.limit);
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
