#include "OrderWish.h"

#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"

bool OrderWish::operator==(const OrderWish &other) const
{
    return accounts == other.accounts && symbol == other.symbol && exchange == other.exchange &&
           sideUnion == other.sideUnion && price == other.price && quantity == other.quantity;
}

bool OrderWish::isBuy() const
{
    return Master_Values::SideUnion::buyItemList.contains(sideUnion);
}

QString OrderWish::check(int checks) const
{
    return ManualT0Logic::CheckSingleOrderData(accounts, symbol, exchange, sideUnion, price, quantity, checks);
}

VariantRecord OrderWish::record() const
{
    using namespace Orvane_Fields;
    return {{UserAccount::tradingAccount, accounts},
            {Security::symbol, symbol},
            {UserAccount::securityExchange, exchange},
            {Master_Fields::Security::SideUnion, sideUnion},
            {Security::price, price},
            {Security::orderQty, quantity}};
}
