#include "UsageFigures.h"

#include "CommonQuotaHandler.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

#include <QtCore/QCoreApplication>

#include <cmath>

namespace {

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

QString traderText(const VariantRecord &row)
{
    const QString id = text(row, Master_Fields::ManualT0::T0TraderId);
    const QString name = ManualT0Logic::GetTraderNameByTraderId(id);
    return name.isEmpty() || name == id ? id : name + QLatin1Char(' ') + id;
}

QString nameOfSymbol(const VariantRecord &row)
{
    return text(MasterBusinessDataInterface::GetSecurityDetailsBySymbol(text(row, Orvane_Fields::Security::symbol)),
                Orvane_Fields::Security::chineseName);
}

QString title(const char *sourceText)
{
    return QCoreApplication::translate("SharedColumns", sourceText);
}

} // namespace

std::optional<double> UsageFigures::limitQuantity(const VariantRecord &usage)
{
    using namespace Orvane_Fields;
    const VariantRecord pool = ManualT0Logic::GetSecurityPoolDetailByTrading(
        text(usage, UserAccount::tradingAccount), text(usage, Master_Fields::ManualT0::T0TraderId),
        text(usage, Security::symbol), text(usage, UserAccount::securityExchange));
    bool isSet = false;
    const double quantity = pool.value(Master_Fields::ManualT0::MaxExposureQty).toDouble(&isSet);
    return isSet && quantity >= 0 ? std::optional<double>(quantity) : std::nullopt;
}

UsageFigures UsageFigures::of(const VariantRecord &usage)
{
    return of(usage, limitQuantity(usage));
}

UsageFigures UsageFigures::of(const VariantRecord &usage, std::optional<double> limitQuantity)
{
    UsageFigures figures;
    const QString symbol = text(usage, Orvane_Fields::Security::symbol);
    const double price = CommonQuotaHandler::instance().lastPrice(symbol, 0);
    double floatProfit = 0;
    double realizeProfit = 0;
    double totalProfit = 0;
    if (!ManualT0Logic::CalcProfitLossByRealtimeMap(usage, price, floatProfit, realizeProfit, totalProfit))
        return figures;
    figures.lastPrice = price;
    figures.floatProfit = floatProfit;
    figures.realizeProfit = realizeProfit;
    figures.totalProfit = totalProfit;
    figures.exposure = std::abs(usage.value(Master_Fields::ManualT0::OpenPosQty).toDouble()) * price;
    if (limitQuantity)
        figures.limit = *limitQuantity * price;
    return figures;
}

void UsageTotals::add(const UsageFigures &figures)
{
    ++rows;
    if (!figures.lastPrice) {
        ++withoutPrice;
        return;
    }
    floatProfit += *figures.floatProfit;
    realizeProfit += *figures.realizeProfit;
    totalProfit += *figures.totalProfit;
    exposure += *figures.exposure;
    if (!figures.limit)
        return;
    limit += *figures.limit;
    limitedExposure += *figures.exposure;
}

UsageTotals &UsageTotals::operator+=(const UsageTotals &other)
{
    floatProfit += other.floatProfit;
    realizeProfit += other.realizeProfit;
    totalProfit += other.totalProfit;
    exposure += other.exposure;
    limit += other.limit;
    limitedExposure += other.limitedExposure;
    rows += other.rows;
    withoutPrice += other.withoutPrice;
    return *this;
}

Column SharedColumns::account()
{
    return {QStringLiteral("account"), title(QT_TRANSLATE_NOOP("SharedColumns", "资金账号")), CellKind::Code,
            Orvane_Fields::UserAccount::tradingAccount};
}

Column SharedColumns::symbol()
{
    return {QStringLiteral("symbol"), title(QT_TRANSLATE_NOOP("SharedColumns", "代码")), CellKind::Code,
            Orvane_Fields::Security::symbol};
}

Column SharedColumns::chineseName()
{
    return {
        QStringLiteral("name"), title(QT_TRANSLATE_NOOP("SharedColumns", "名称")), CellKind::Text, {}, nameOfSymbol};
}

Column SharedColumns::exchange()
{
    return {QStringLiteral("exchange"),
            title(QT_TRANSLATE_NOOP("SharedColumns", "市场")),
            CellKind::Text,
            Orvane_Fields::UserAccount::securityExchange,
            {},
            false,
            6};
}

Column SharedColumns::trader()
{
    return {
        QStringLiteral("trader"), title(QT_TRANSLATE_NOOP("SharedColumns", "交易员")), CellKind::Text, {}, traderText};
}
