#include "OwnOrders.h"

#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "MasterBusiUtils.h"
#include "OrvaneFields.h"

using Orvane_Fields::Security::orderStatus;
using Orvane_Fields::UserAccount::loginUserId;

namespace {

RecordList ordersOf(const VariantRecord &filter)
{
    int total = 0;
    BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, 1, {}, {}); // tells how many there are
    const int count = total;
    return BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, count, {}, {});
}

} // namespace

QString OwnOrders::user()
{
    return CBusinessDataBase::GetLoginAccount();
}

bool OwnOrders::isOwn(const VariantRecord &orderOrFill)
{
    return orderOrFill.value(loginUserId).toString() == user();
}

bool OwnOrders::isLive(const VariantRecord &order)
{
    return MasterBusiUtils::GetCancelableOrderStatusList().contains(order.value(orderStatus).toString());
}

RecordList OwnOrders::all()
{
    return ordersOf({{loginUserId, user()}});
}

RecordList OwnOrders::live(const QString &symbol)
{
    return ordersOf({{loginUserId, user()},
                     {Orvane_Fields::Security::symbol, symbol},
                     {orderStatus, MasterBusiUtils::GetCancelableOrderStatusList()}});
}

RecordList OwnOrders::fills()
{
    return BusinessDataInterface::GetFillList({{loginUserId, user()}});
}
