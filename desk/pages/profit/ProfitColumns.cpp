#include "ProfitColumns.h"

#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <QtCore/QCoreApplication>

using namespace Master_Fields::ManualT0;

namespace {

/// Only to give the texts a context.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ProfitColumns)
};

QVariant productOf(const VariantRecord &row)
{
    const QString account = row.value(Orvane_Fields::UserAccount::tradingAccount).toString();
    return MasterBusinessDataInterface::GetAccountInfoByTradingAccount(account, 1).accountText;
}

Column column(const char *id, const QString &title, CellKind kind, const QString &field, int width = 0)
{
    return {QString::fromLatin1(id), title, kind, field, {}, false, width};
}

Column profit(const char *id, const QString &title, const QString &field)
{
    return {QString::fromLatin1(id), title, CellKind::Money, field, {}, true, 10};
}

/// So narrow that a row of details fits into a window of usual width.
Column narrow(Column column, int width)
{
    column.width = width;
    return column;
}

Columns namesOf(ProfitRows::Group group)
{
    using namespace SharedColumns;
    const Column product{QStringLiteral("accountText"), Texts::tr("账户名称"), CellKind::Text, {}, productOf};
    switch (group) {
    case ProfitRows::Group::Detail:
        return {narrow(trader(), 10), narrow(account(), 8), narrow(symbol(), 9), narrow(chineseName(), 9),
                narrow(exchange(), 5)};
    case ProfitRows::Group::Symbol:
        return {symbol(), chineseName(), exchange()};
    case ProfitRows::Group::Trader:
        return {trader()};
    case ProfitRows::Group::Account:
        return {account(), product};
    }
    return {};
}

Columns quantities()
{
    return {column("bought", Texts::tr("买入量"), CellKind::Quantity, RtRealBoughtQty, 7),
            column("sold", Texts::tr("卖出量"), CellKind::Quantity, RtRealSoldQty, 7),
            {QStringLiteral("open"), Texts::tr("敞口量"), CellKind::Quantity, OpenPosQty, {}, true, 7},
            column("average", Texts::tr("均价"), CellKind::Price, OpenAvgPrice, 8),
            column("last", Texts::tr("现价"), CellKind::Price, Stand_Fields::Quote::lastPrice, 8)};
}

Columns amounts()
{
    return {column("boughtAmount", Texts::tr("买入额"), CellKind::Money, RtRealBoughtAmount),
            column("soldAmount", Texts::tr("卖出额"), CellKind::Money, RtRealSoldAmount)};
}

Columns figures()
{
    return {profit("float", Texts::tr("浮动盈亏"), FloatProfit),
            profit("realized", Texts::tr("已实现"), RealizeProfit),
            profit("total", Texts::tr("总盈亏"), TotalProfit),
            column("exposure", Texts::tr("敞口金额"), CellKind::Money, ProfitFields::exposure(), 10),
            column("limit", Texts::tr("敞口限额"), CellKind::Money, ProfitFields::limit(), 10),
            column("share", Texts::tr("占限额"), CellKind::Bar, ProfitFields::limitShare(), 8)};
}

Columns counts()
{
    return {column("records", Texts::tr("行数"), CellKind::Quantity, ProfitFields::records(), 6),
            column("withoutPrice", Texts::tr("无行情"), CellKind::Quantity, ProfitFields::withoutPrice(), 7)};
}

} // namespace

Columns ProfitColumns::of(ProfitRows::Group group)
{
    const bool isOneSecurity = group == ProfitRows::Group::Detail || group == ProfitRows::Group::Symbol;
    const Columns traded = isOneSecurity ? quantities() : amounts();
    const Columns shown = namesOf(group) + traded + figures();
    return group == ProfitRows::Group::Detail ? shown : shown + counts();
}
