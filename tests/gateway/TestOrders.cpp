#include "TestOrders.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"

namespace {

namespace Market_ = Stand_Fields::Market;
namespace Order_ = Stand_Fields::Order;
namespace Security_ = Orvane_Fields::Security;
namespace UserAccount_ = Orvane_Fields::UserAccount;
using Master_Fields::Security::SideUnion;

} // namespace

VariantRecord TestOrders::headerOf(const QString &account)
{
    return {{UserAccount_::tradingAccount, account},
            {Order_::businessName, "ManualT0Trade"},
            {Master_Fields::Security::VantaBusiType, Master_Values::VantaBusiType::ManualT0Order}};
}

VariantRecord TestOrders::orderOf(const QString &symbol, const QString &exchange, const QString &side,
                                  const QString &price, const QVariant &quantity)
{
    return {{Security_::symbol, symbol},
            {UserAccount_::securityExchange, exchange},
            {SideUnion, side},
            {Security_::price, price},
            {Security_::orderQty, quantity},
            {Order_::priceType, Orvane_Values::PriceType::limit}};
}

VariantRecord TestOrders::control(const QString &command, qint64 count)
{
    return {{Market_::command, command}, {Market_::count, count}};
}

QString TestOrders::textOf(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}
