#include "FuzzedRows.h"

#include "MasterMsgType.h"
#include "Rows.h"
#include "StandMsgType.h"

#include <limits>

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

constexpr int deepest = 10; ///< beyond what a message may hold

QStringList securities()
{
    return {"600000 SH", "110001 SH", "300001 SZ", "00700 HHK", "00700 SZHK", "999999 SH", ""};
}

/// Every field that some family reads.
QStringList fields()
{
    namespace User = Orvane_Fields::UserAccount;
    namespace Sec = Orvane_Fields::Security;
    namespace S = Stand_Fields;
    static const QStringList all{tradingAccount,
                                 User::productAccount,
                                 User::securityExchange,
                                 User::userID,
                                 User::userName,
                                 Sec::symbol,
                                 Sec::securityID,
                                 Sec::side,
                                 Sec::price,
                                 Sec::orderQty,
                                 Sec::orderID,
                                 Sec::orderStatus,
                                 Orvane_Fields::System::requestExeStatus,
                                 Orvane_Fields::System::textDescription,
                                 Master_Fields::System::ModifyTime,
                                 Master_Fields::Security::SideUnion,
                                 ResourceId,
                                 ResourceQty,
                                 PoolDetailId,
                                 PoolType,
                                 PoolTotalQty,
                                 MaxExposureQty,
                                 MaxPendExposureQty,
                                 T0TraderId,
                                 T0TraderName,
                                 PublicPoolQty,
                                 RtPoolTotalQty,
                                 DailyBuyLimit,
                                 DailySellLimit,
                                 DailyBoughtQty,
                                 DailySoldQty,
                                 DailyBoughtAmount,
                                 DailySoldAmount,
                                 DailyBuyTradeFee,
                                 DailySellTradeFee,
                                 PreUnclosedBuyLimit,
                                 PreUnclosedSellLimit,
                                 PreUnclosedBoughtQty,
                                 PreUnclosedSoldQty,
                                 PreUnclosedBoughtAmount,
                                 PreUnclosedSoldAmount,
                                 PreUnclosedSide,
                                 TransDayProfitOwner,
                                 S::Account::assetProp,
                                 S::Account::exchanges,
                                 S::Security::type,
                                 S::Security::subType,
                                 S::Security::marketSuffix,
                                 S::Security::pricePrecision,
                                 S::Security::qtyStep,
                                 S::Security::dispFactor,
                                 S::Security::tickBands,
                                 S::Position::quantity,
                                 S::Position::tradeable,
                                 S::Margin::loanState,
                                 S::Quote::lastPrice,
                                 S::Order::filledQty,
                                 S::Order::orderTime,
                                 S::Order::updateTime,
                                 S::Fill::fillID,
                                 S::Fill::fillTime,
                                 S::Market::marketTime,
                                 S::Market::phases};
    return all;
}

QStringList knownTexts()
{
    static const QStringList all = FuzzedRows::accounts() + FuzzedRows::traders() + FuzzedRows::symbols() +
                                   FuzzedRows::sides() + FuzzedRows::resourceIds() + FuzzedRows::poolIds() +
                                   QStringList{Rows::Success,
                                               Rows::Fail,
                                               Master_Values::RequestExeStatus::timeout,
                                               Master_Values::RequestExeStatus::ParticalFail,
                                               Master_Values::OpenPositionSide::BuyOpen,
                                               Master_Values::OpenPositionSide::SellOpen,
                                               Master_Values::TransDayProfitOwner::ProfitToOrg,
                                               Stand_Values::OrderStatus::Filled,
                                               QStringLiteral("u1_A1_600000.SH"),
                                               QStringLiteral("%1 %2")};
    return all;
}

QVariant number(Input &input)
{
    using Limits = std::numeric_limits<qint64>;
    using Real = std::numeric_limits<double>;
    static const QVariantList odd{Limits::max(),
                                  Limits::min(),
                                  qint64(std::numeric_limits<int>::max()) + 1,
                                  -1,
                                  (qint64(1) << 53) + 1,
                                  std::numeric_limits<quint64>::max(),
                                  Real::quiet_NaN(),
                                  Real::infinity(),
                                  -Real::infinity(),
                                  Real::max(),
                                  Real::denorm_min(),
                                  -0.0,
                                  0.5,
                                  1e19,
                                  QStringLiteral("150.0"),
                                  QStringLiteral("1e400"),
                                  QStringLiteral("0x1F"),
                                  QStringLiteral(" 7 "),
                                  QStringLiteral("-9223372036854775809"),
                                  QStringLiteral("nan")};
    return odd.at(input.below(odd.size()));
}

QVariantList list(Input &input, int depth)
{
    QVariantList items;
    for (int i = input.below(4); i > 0; --i)
        items.append(FuzzedRows::value(input, depth + 1));
    return items;
}

QVariantMap map(Input &input, int depth)
{
    QVariantMap entries;
    for (int i = input.below(4); i > 0; --i) {
        const QString key = input.of(fields());
        entries.insert(key, FuzzedRows::value(input, depth + 1));
    }
    return entries;
}

VariantRecord instrument(const QString &symbol, const QString &security, const char *type, const char *subType,
                         int dispFactor)
{
    VariantRecord row = Rows::ofSecurity({}, security);
    row.remove(tradingAccount);
    row.insert(Orvane_Fields::Security::symbol, symbol);
    row.insert(Orvane_Fields::Security::chineseName, QStringLiteral("证券"));
    row.insert(Orvane_Fields::Security::spellCode, QStringLiteral("ZQ"));
    row.insert(Stand_Fields::Security::type, QString::fromLatin1(type));
    row.insert(Stand_Fields::Security::subType, QString::fromLatin1(subType));
    row.insert(Stand_Fields::Security::marketSuffix, symbol.mid(symbol.indexOf(QLatin1Char('.'))));
    row.insert(Stand_Fields::Security::dispFactor, dispFactor);
    row.insert(Stand_Fields::Security::qtyStep, 100);
    row.insert(Stand_Fields::Security::tickBands, QVariantList{0.0, 10.0, 0.01, 10.0, 0.0, 0.05});
    return row;
}

VariantRecord account(const QString &id)
{
    return {{tradingAccount, id},
            {Orvane_Fields::UserAccount::productAccount, id == QLatin1String("A4") ? "P2" : "P1"},
            {Stand_Fields::Account::productName, "name"},
            {Stand_Fields::Account::accountText, "text"},
            {Stand_Fields::Account::assetProp, id == QLatin1String("A3") ? "Credit" : "Cash"},
            {Stand_Fields::Account::exchanges, FuzzedRows::exchanges()},
            {Stand_Fields::Account::enabled, true}};
}

RecordList referenceRows(const QString &msgType)
{
    using namespace Stand_MsgType;
    if (msgType == LoginRequest)
        return {{{Orvane_Fields::UserAccount::userID, Rows::user}, {Orvane_Fields::UserAccount::organCode, "org"}}};
    if (msgType == QueryAccountsRequest)
        return {account("A1"), account("A2"), account("A3"), account("A4")};
    if (msgType == QueryInstrumentsRequest)
        return {instrument("600000.SH", "600000 SH", "StockType", "MainBoardStock", 1),
                instrument("300001.SZ", "300001 SZ", "StockType", "GrowthBoardStock", 1),
                instrument("110001.SH", "110001 SH", "BondType", "Convertiblebond", 10),
                instrument("00700.HK", "00700 HHK", "FundType", "HKShares", 100),
                instrument("00700.HK", "00700 SZHK", "FundType", "HKShares", 100)};
    return {};
}

VariantRecord holding(Input &input, const QString &of)
{
    VariantRecord row = Rows::ofSecurity(of, input.of(securities()));
    row.insert(Stand_Fields::Position::quantity, input.byte());
    row.insert(Stand_Fields::Position::tradeable, input.byte());
    row.insert(Stand_Fields::Margin::loanState, Master_Values::LoanState::InUse);
    return row;
}

VariantRecord order(Input &input, const QString &of)
{
    using namespace Orvane_Fields::Security;
    VariantRecord row = Rows::ofSecurity(of, input.of(securities()));
    row.insert(orderID, QString::number(input.below(4)));
    row.insert(symbol, input.of(FuzzedRows::symbols()));
    row.insert(orderQty, input.byte());
    row.insert(price, input.byte() / 8.0);
    row.insert(Master_Fields::Security::SideUnion, input.of(FuzzedRows::sides()));
    row.insert(orderStatus,
               input.oneIn(2) ? Stand_Values::OrderStatus::Accepted : Stand_Values::OrderStatus::Cancelled);
    row.insert(Orvane_Fields::UserAccount::userID, input.of(FuzzedRows::traders()));
    row.insert(Stand_Fields::Order::filledQty, input.below(8));
    row.insert(Stand_Fields::Order::updateTime, QStringLiteral("2024-01-0%1").arg(input.below(10)));
    row.insert(Stand_Fields::Fill::fillID, QString::number(input.below(8)));
    row.insert(Orvane_Fields::System::requestExeStatus, input.oneIn(4) ? Rows::Fail : Rows::Success);
    return row;
}

VariantRecord quote(Input &input)
{
    return {{Orvane_Fields::Security::symbol, input.of(FuzzedRows::symbols())},
            {Stand_Fields::Quote::lastPrice, input.byte() / 4.0}};
}

VariantRecord market(Input &input)
{
    return {{Stand_Fields::Market::marketTime, QStringLiteral("2024-01-0%1 10:00:00").arg(input.below(10))}};
}

VariantRecord resource(Input &input, const QString &of)
{
    return Rows::resource(input.of(FuzzedRows::resourceIds()), of, input.of(securities()), input.byte());
}

VariantRecord pool(Input &input, const QString &of)
{
    return Rows::pool(input.of(FuzzedRows::poolIds()), of, input.of(securities()), input.of(FuzzedRows::traders()),
                      input.byte(), input.of(FuzzedRows::resourceIds()));
}

VariantRecord usage(Input &input, const QString &of)
{
    VariantRecord row = Rows::usage(of, input.of(FuzzedRows::traders()), input.of(securities()),
                                    QStringLiteral("20240102%1").arg(input.below(8)));
    row.insert(DailyBuyLimit, input.byte());
    row.insert(DailySellLimit, input.byte());
    row.insert(DailyBoughtQty, input.byte());
    row.insert(DailySoldQty, input.byte());
    row.insert(DailyBoughtAmount, input.byte() / 2.0);
    row.insert(PreUnclosedBoughtQty, input.byte());
    row.insert(PreUnclosedBoughtAmount, input.byte() / 2.0);
    row.insert(PreUnclosedSide, input.oneIn(2) ? Master_Values::OpenPositionSide::BuyOpen : QString());
    return row;
}

/// As a good server would send it.
VariantRecord goodRow(Input &input, const QString &msgType, const QString &of)
{
    using namespace Stand_MsgType;
    if (msgType == QueryManualT0ProductsRequest || msgType == QueryManualT0TraderAccountPriorityRequest)
        return Rows::product(input.of(FuzzedRows::products()), of);
    if (msgType == QueryUserIdByUserRoleRequest)
        return Rows::trader(input.of(FuzzedRows::traders()), QStringLiteral("name"));
    if (msgType == QueryManualT0ResourceRequest)
        return resource(input, of);
    if (msgType == QueryManualT0SecurityPoolRequest)
        return pool(input, of);
    if (msgType == QueryManualT0RealTimePoolUsageRequest || msgType == ManualT0RealTimePoolUsagePush)
        return usage(input, of);
    if (msgType == QueryPositionsRequest || msgType == QueryMarginSecuritiesRequest || msgType == PositionPush)
        return holding(input, of);
    if (msgType == QueryQuotesRequest || msgType == QuotePush)
        return quote(input);
    if (msgType == MarketPush || msgType == ExchangeControlRequest)
        return market(input);
    const RecordList reference = referenceRows(msgType);
    return reference.isEmpty() ? order(input, of) : reference.at(input.below(reference.size()));
}

} // namespace

QStringList FuzzedRows::accounts()
{
    return {"A1", "A2", "A3", "A4", "A9", ""};
}

QStringList FuzzedRows::products()
{
    return {"P1", "P2", "P9", ""};
}

QStringList FuzzedRows::assetProps()
{
    return {"Cash", "Credit", ""};
}

QStringList FuzzedRows::traders()
{
    return {Rows::user, "t2", "public", ""};
}

QStringList FuzzedRows::symbols()
{
    return {"600000.SH", "110001.SH", "00700.HK", "none", ""};
}

QStringList FuzzedRows::exchanges()
{
    return {"SH", "SZ", "HHK", "SZHK", ""};
}

QStringList FuzzedRows::sides()
{
    using namespace Master_Values::SideUnion;
    return {normalBuy, normalSell, collateralBuy, collateralSell, Stand_Values::Side::sell, QString()};
}

QStringList FuzzedRows::resourceIds()
{
    return {"r1", "r2", "r3", ""};
}

QStringList FuzzedRows::poolIds()
{
    return {"p1", "p2", "p3", "p4", ""};
}

QStringList FuzzedRows::pushTypes()
{
    using namespace Stand_MsgType;
    return {ManualT0RealTimePoolUsagePush, OrderPush, FillPush, PositionPush, QuotePush, MarketPush};
}

QVariant FuzzedRows::value(Input &input, int depth)
{
    switch (input.below(9)) {
    case 1:
        return input.of(knownTexts());
    case 2:
        return number(input);
    case 3:
        return input.oneIn(2);
    case 4:
        return QVariant();
    case 5:
        return QString::fromUtf8(input.bytes());
    case 6:
        return input.bytes();
    case 7:
        return depth < deepest ? QVariant(list(input, depth)) : QVariant();
    case 8:
        return depth < deepest ? QVariant(map(input, depth)) : QVariant();
    default:
        return input.byte();
    }
}

VariantRecord FuzzedRows::row(Input &input, const QString &msgType, const QString &account)
{
    VariantRecord row = goodRow(input, msgType, account.isEmpty() ? input.of(accounts()) : account);
    while (input.oneIn(5)) {
        const QString field = input.oneIn(4) ? input.of(fields()) : input.of(row.keys() + QStringList(tradingAccount));
        if (input.oneIn(3))
            row.remove(field);
        else
            row.insert(field, value(input));
    }
    return row;
}

QByteArray FuzzedRows::answer(Input &input, const QString &msgType, const MessageBody &request)
{
    const int kind = input.below(16);
    if (kind == 15)
        return input.bytes(); // no body at all
    MessageBody body;
    body.values.insert(Orvane_Fields::System::requestExeStatus, kind == 14   ? Rows::Fail
                                                                : kind == 13 ? value(input)
                                                                             : Rows::Success);
    if (kind >= 13)
        body.values.insert(Orvane_Fields::System::textDescription, value(input));
    if (kind >= 10) { // another page follows, or is said to
        body.values.insert(Stand_Fields::Paging::hasMore, value(input));
        body.values.insert(Stand_Fields::Paging::position, value(input));
    }
    if (msgType == QueryManualT0ProductsRequest && kind != 9)
        body.rows = request.rows;
    const QString account = input.oneIn(4) ? QString() : request.rows.value(0).value(tradingAccount).toString();
    for (int i = input.below(6); i > 0; --i)
        body.rows.append(row(input, msgType, account));
    return body.encode();
}

QByteArray FuzzedRows::goodAnswer(const QString &msgType)
{
    MessageBody body{{{Orvane_Fields::System::requestExeStatus, Rows::Success}}, referenceRows(msgType)};
    return body.encode();
}
