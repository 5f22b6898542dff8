#include "TradeColumns.h"

#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "UsageFigures.h"

namespace {

Column withWidth(Column column, int characters)
{
    column.width = characters;
    return column;
}

} // namespace

QString TradeTexts::side(const QString &sideUnion)
{
    namespace Side = Master_Values::SideUnion;
    if (sideUnion == Side::normalBuy)
        return tr("买入");
    if (sideUnion == Side::normalSell)
        return tr("卖出");
    if (sideUnion == Side::collateralBuy)
        return tr("担保品买入");
    return sideUnion == Side::collateralSell ? tr("担保品卖出") : sideUnion;
}

QString TradeTexts::orderStatus(const QString &status)
{
    namespace Status = Stand_Values::OrderStatus;
    if (status == Status::Accepted)
        return tr("已报");
    if (status == Status::PartlyFilled)
        return tr("部成");
    if (status == Status::Filled)
        return tr("已成");
    if (status == Status::Cancelled)
        return tr("已撤");
    return status == Status::Expired ? tr("已失效") : status;
}

Column TradeColumns::account()
{
    return withWidth(SharedColumns::account(), 7);
}

Column TradeColumns::symbol()
{
    return withWidth(SharedColumns::symbol(), 8);
}

Column TradeColumns::name()
{
    return withWidth(SharedColumns::chineseName(), 8);
}

Column TradeColumns::time(const QString &field)
{
    return {QStringLiteral("time"), tr("时间"), CellKind::Time, field, {}, false, 7};
}

Column TradeColumns::side()
{
    Column column{QStringLiteral("side"), tr("方向")};
    column.value = [](const VariantRecord &row) {
        return TradeTexts::side(row.value(Master_Fields::Security::SideUnion).toString());
    };
    column.sign = [](const VariantRecord &row) {
        const QString side = row.value(Master_Fields::Security::SideUnion).toString();
        return Master_Values::SideUnion::buyItemList.contains(side) ? 1 : -1;
    };
    column.width = 9;
    return column;
}

Column TradeColumns::price()
{
    return {QStringLiteral("price"), tr("价格"), CellKind::Price, Orvane_Fields::Security::price, {}, false, 6};
}

Column TradeColumns::quantity(const QString &field)
{
    return {QStringLiteral("quantity"), tr("数量"), CellKind::Quantity, field, {}, false, 6};
}

Column TradeColumns::filledQuantity()
{
    return {QStringLiteral("filled"), tr("已成量"), CellKind::Quantity, Stand_Fields::Order::filledQty, {}, false, 6};
}

Column TradeColumns::orderStatus()
{
    Column column{QStringLiteral("status"), tr("状态")};
    column.value = [](const VariantRecord &row) {
        return TradeTexts::orderStatus(row.value(Orvane_Fields::Security::orderStatus).toString());
    };
    column.width = 6;
    return column;
}

Column TradeColumns::orderId()
{
    return {QStringLiteral("id"), tr("委托号"), CellKind::Code, Orvane_Fields::Security::orderID, {}, false, 9};
}

Column TradeColumns::remark(std::function<QVariant(const VariantRecord &row)> value)
{
    return {QStringLiteral("remark"), tr("说明"), CellKind::Text, {}, std::move(value), false, 22};
}
