#include "Model.h"

#include "ModelRows.h"
#include "SharedDesk.h"

#include "MasterConstants.h"
#include "UserTexts.h"

#include <cmath>

using namespace ModelRows;
using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;

namespace {

const QString bond = QStringLiteral("110001.SH");
constexpr qlonglong mostOfAResource = 1000000000;

const ScriptedReference &desk()
{
    static const ScriptedReference reference = tradingDesk();
    return reference;
}

ScriptedReference::Instrument instrumentOf(const QString &symbol)
{
    for (const ScriptedReference::Instrument &instrument : desk().instruments) {
        if (instrument.symbol == symbol)
            return instrument;
    }
    return {};
}

/// What an account has or has borrowed of a security, in display units.
qlonglong sellable(const QString &account, const QString &symbol, const QString &exchange)
{
    qlonglong sum = 0;
    const auto add = [&](const ScriptedReference::Holding &holding) {
        if (holding.tradingAccount == account && holding.exchange == exchange &&
            holding.securityID == symbol.section('.', 0, 0))
            sum += holding.quantity * instrumentOf(symbol).dispFactor;
    };
    for (const ScriptedReference::Holding &position : desk().positions)
        add(position);
    for (const ScriptedReference::Holding &borrowed : desk().marginSecurities) {
        if (account == "A3" && borrowed.loanState == "InUse")
            add(borrowed);
    }
    return sum;
}

qlonglong stepOf(const QString &symbol)
{
    return qMax(1, instrumentOf(symbol).further.value(Stand_Fields::Security::qtyStep).toInt());
}

QString chineseNameOf(const QString &symbol)
{
    const QString id = instrumentOf(symbol).securityID;
    return id.isEmpty() ? QString() : "证券" + id;
}

qlonglong wantedBy(const VariantRecord &order)
{
    return order.value(Security::orderQty).toLongLong();
}

bool isBuy(const VariantRecord &order)
{
    return str(order, Master_Fields::Security::SideUnion).endsWith("Buy");
}

/// Collateral is held on credit only.
QStringList suitable(const QStringList &accounts, const QString &side)
{
    const bool anyAccount = side.startsWith("normal");
    return those(accounts,
                 [&](const QString &account) { return !account.isEmpty() && (anyAccount || account == "A3"); });
}

QStringList suitable(const VariantRecord &order)
{
    return suitable(order.value(tradingAccount).toStringList(), str(order, Master_Fields::Security::SideUnion));
}

QString reasonAgainst(const VariantRecord &order, const QStringList &accounts)
{
    if (str(order, Security::symbol).isEmpty() || str(order, securityExchange).isEmpty())
        return UserTexts::noSymbolOrExchange();
    return accounts.isEmpty() ? UserTexts::noMatchingAccount() : QString();
}

/// In sizes as the user wants them, none of them too small to be ordered.
QList<qlonglong> parts(qlonglong quantity, qlonglong size, qlonglong step, qlonglong least)
{
    if (size <= 0)
        return {quantity};
    size -= size % step;
    while (size < least || size == 0)
        size += step;
    QList<qlonglong> list;
    for (; quantity > 0; quantity -= qMin(size, quantity))
        list.append(qMin(size, quantity));
    if (list.size() > 1 && list.constLast() < least) {
        const qlonglong rest = list.takeLast();
        list.last() += rest;
    }
    return list;
}

QString security(const VariantRecord &row)
{
    return str(row, Security::symbol) + str(row, securityExchange);
}

struct Fees {
    double buy;
    double sell;
};

/// Adds the floating and the realized profit of one leg, fees as given for its open and its closed part.
void addLeg(const VariantRecord &row, const QStringList &fields, Fees open, Fees closed, double &floating,
            double &realized)
{
    const double price = 10.5;
    const double bought = num(row, fields.at(0));
    const double sold = num(row, fields.at(1));
    const double averageBuy = num(row, fields.at(2)) / bought;
    const double averageSell = num(row, fields.at(3)) / sold;
    if (bought > sold)
        floating += (price - (1 + open.buy) * averageBuy) * (bought - sold);
    if (sold > bought)
        floating += ((1 - open.sell) * averageSell - price) * (sold - bought);
    if (bought > 0 && sold > 0)
        realized += (averageSell * (1 - closed.sell) - averageBuy * (1 + closed.buy)) * std::min(bought, sold);
}

} // namespace

RecordList Model::openPositions(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                                const QString &exchange) const
{
    return those(usageOf(accountList, traderIds, symbol, exchange),
                 [](const auto &row) { return str(row, OpenPosSide) != "NoOpenPos"; });
}

/// side: what of it such an order closes; empty: all, negative for a short one.
qlonglong Model::ownPosition(const QString &symbol, const QString &exchange, const QString &side,
                             const QStringList &accountList) const
{
    if (symbol.isEmpty() || exchange.isEmpty())
        return 0;
    const QStringList of = side.isEmpty() ? accountList : suitable(accountList, side);
    qlonglong net = 0;
    for (const VariantRecord &row : usageOf(of, {Rows::user}, symbol, exchange))
        net += row.value(OpenPosQty).toLongLong();
    return side.isEmpty() ? net : qMax(0LL, side.endsWith("Buy") ? -net : net);
}

qlonglong Model::quota(const QStringList &accountList, const QString &symbol, const QString &exchange, bool buys) const
{
    qlonglong sum = 0;
    if (symbol.isEmpty() || exchange.isEmpty())
        return sum;
    for (const VariantRecord &row : usageOf(accountList, {Rows::user}, symbol, exchange))
        sum += row.value(buys ? RtTotalBuyLimit : RtTotalSellLimit).toLongLong();
    return sum;
}

QStringList Model::exchangesOf(const QString &symbol, const QStringList &accountList) const
{
    QStringList exchanges;
    RecordList rows = symbol.isEmpty() ? RecordList() : usageOf(accountList, {Rows::user}, symbol, "");
    sortBy<usageKey>(rows);
    for (const VariantRecord &row : qAsConst(rows))
        exchanges.append(str(row, securityExchange));
    exchanges.removeDuplicates();
    return exchanges;
}

double Model::allocatable(const QString &account, const QString &symbol, const QString &exchange) const
{
    if (!accounts.contains(account) || account.isEmpty() || symbol.isEmpty() || exchange.isEmpty())
        return 0;
    const bool isBond = symbol == bond;
    qlonglong held = sellable(account, symbol, exchange);
    for (const VariantRecord &row : usageOf({account}, {}, symbol, exchange)) {
        const auto qty = [&row](const QString &field) { return row.value(field).toLongLong(); };
        const QString side = str(row, PreUnclosedSide);
        held += qty(DailySoldQty) - (isBond ? qty(DailyBoughtQty) : 0);
        if (side == "BuyOpen")
            held -= qty(PreOpenQty);
        else if (side == "SellOpen")
            held += qty(PreUnclosedSoldQty) - (isBond ? qty(PreUnclosedBoughtQty) : 0);
    }
    qlonglong used = 0;
    for (const VariantRecord &row : resources) {
        if (matches(row, {account}, symbol, exchange))
            used += qlonglong(std::trunc(num(row, ResourceQty)));
    }
    const qlonglong room = mostOfAResource - used;
    const qlonglong factor = instrumentOf(symbol).dispFactor;
    const qlonglong free = held <= 0 && isBond && exchange == "SH" ? room : qMin(held - used, room);
    return double(qMax<qlonglong>(0, free) / factor * factor);
}

VariantRecord Model::usageDetail(const QString &account, const QString &trader, const QString &symbol,
                                 const QString &exchange) const
{
    if (account.isEmpty() || trader.isEmpty() || symbol.isEmpty() || exchange.isEmpty())
        return {};
    return usageOf({account}, {trader}, symbol, exchange).value(0);
}

RecordList Model::sumsOf(const QStringList &accountList, const QString &trader, const QString &symbol,
                         const QString &exchange) const
{
    RecordList rows;
    if (!trader.isEmpty())
        rows = usageOf(accountList, {trader}, symbol, exchange);
    sortBy<usageKey>(rows);
    QMap<QString, VariantRecord> sums;
    for (const VariantRecord &row : qAsConst(rows)) {
        if (!sums.contains(security(row))) {
            sums.insert(security(row), row);
            continue;
        }
        VariantRecord &sum = sums[security(row)];
        for (const QString &field :
             ownQuantities() + QStringList{RtTotalBuyLimit, RtTotalSellLimit, PreUnclosedBoughtAmount,
                                           PreUnclosedSoldAmount, DailyBoughtAmount, DailySoldAmount})
            sum.insert(field, num(sum, field) + num(row, field));
    }
    return sums.values();
}

RecordList Model::profitOf(const QStringList &accountList, const QString &trader, const QString &symbol,
                           const QString &exchange) const
{
    RecordList rows;
    const RecordList records =
        usageOf(accountList, trader.isEmpty() ? QStringList() : QStringList(trader), symbol, exchange);
    for (const VariantRecord &record : records) {
        VariantRecord row;
        for (const QString &field : {tradingAccount, Security::symbol, securityExchange})
            row.insert(field, record.value(field));
        if (str(record, Security::symbol) == "600000.SH") {
            const Fees fees{num(record, DailyBuyTradeFee), num(record, DailySellTradeFee)};
            const QString side = str(record, PreUnclosedSide);
            const Fees closing = side.isEmpty() ? fees : side == "BuyOpen" ? Fees{0, fees.sell} : Fees{fees.buy, 0};
            double floating = 0;
            double carried = 0;
            double realized = 0;
            addLeg(record, {PreUnclosedBoughtQty, PreUnclosedSoldQty, PreUnclosedBoughtAmount, PreUnclosedSoldAmount},
                   side.isEmpty() ? fees : Fees{0, 0}, closing, floating, carried);
            addLeg(record, {DailyBoughtQty, DailySoldQty, DailyBoughtAmount, DailySoldAmount}, fees, fees, floating,
                   realized);
            if (str(record, TransDayProfitOwner) == "ProfitToOrg" && carried > 0)
                carried = 0;
            row.insert(FloatProfit, floating);
            row.insert(RealizeProfit, carried + realized);
            row.insert(TotalProfit, floating + carried + realized);
        }
        rows.append(row);
    }
    return rows;
}

double Model::allocatable(const QString &product, const QString &assetProp, const QString &symbol,
                          const QString &exchange) const
{
    QStringList of = enabledAccounts({product}, assetProp);
    of.removeDuplicates();
    double sum = 0;
    for (const QString &account : qAsConst(of))
        sum += allocatable(account, symbol, exchange);
    return qMin(sum, double(mostOfAResource));
}

RecordList Model::resourceCandidates(const QStringList &products, const QString &assetProp, bool withT0Symbols) const
{
    RecordList rows;
    const auto add = [&](const QString &product, const QString &account, const QString &exchange,
                         const QString &symbol) {
        const qlonglong quantity = qMax(0LL, sellable(account, symbol, exchange));
        const bool isBond = symbol == bond && exchange == "SH";
        if (quantity == 0 && !(withT0Symbols && isBond))
            return;
        RecordList held = those(resources, [&](const auto &row) { return matches(row, {account}, symbol, exchange); });
        sortBy<resourceId>(held);
        rows.append({{Orvane_Fields::UserAccount::productAccount, product},
                     {tradingAccount, account},
                     {Security::securityID, symbol.section('.', 0, 0)},
                     {securityExchange, exchange},
                     {Security::symbol, symbol},
                     {Security::chineseName, chineseNameOf(symbol)},
                     {ResourceQty, quantity},
                     {T0SymbolFlag, symbol == bond},
                     {ResourceId, resourceId(held.value(0))}});
    };
    QStringList seen;
    for (const QString &product : products) {
        for (const QString &account : enabledAccounts({product}, assetProp)) {
            for (const char *exchange : {"SH", "SZ", "BJ", "HHK", "SZHK"}) {
                for (const char *symbol : {"00700.HK", "110001.SH", "300001.SZ", "600000.SH"}) {
                    if (!seen.contains(account))
                        add(product, account, exchange, symbol);
                }
            }
            seen.append(account);
        }
    }
    return rows;
}

QString Model::check(const RecordList &orders, RecordList &results) const
{
    int right = 0;
    for (VariantRecord order : orders) {
        const QStringList of = suitable(order);
        const QString symbol = str(order, Security::symbol);
        const qlonglong room = quota(of, symbol, str(order, securityExchange), isBuy(order));
        QString reason = of.isEmpty() ? UserTexts::noMatchingAccount() : reasonAgainst(order, of);
        if (reason.isEmpty() && wantedBy(order) <= 0)
            reason = UserTexts::quantityNotPositive();
        if (reason.isEmpty() && isBuy(order) && wantedBy(order) % stepOf(symbol) != 0)
            reason = UserTexts::quantityNotMultiple(int(stepOf(symbol)));
        if (reason.isEmpty() && room < wantedBy(order))
            reason = UserTexts::quotaTooSmall(room, wantedBy(order));
        right += reason.isEmpty() ? 1 : 0;
        order.insert(Orvane_Fields::System::requestExeStatus, reason.isEmpty() ? Rows::Success : Rows::Fail);
        if (!reason.isEmpty())
            order.insert(Orvane_Fields::System::textDescription, reason);
        results.append(order);
    }
    if (right == 0)
        return Rows::Fail;
    return right == orders.size() ? Rows::Success : Master_Values::RequestExeStatus::ParticalFail;
}

QMap<QString, qlonglong> Model::distributed(const VariantRecord &order, const QStringList &of, Taken &taken) const
{
    const QString symbol = str(order, Security::symbol);
    const QString exchange = str(order, securityExchange);
    const bool buys = isBuy(order);
    const auto takenOf = [&](const QString &account) -> qlonglong & {
        return taken[QStringList{account, symbol, exchange, buys ? "buy" : "sell"}.join(' ')];
    };
    QMap<QString, qlonglong> given;
    qlonglong left = wantedBy(order);
    for (const bool closes : {true, false}) {
        for (const QString &account : of) {
            const VariantRecord usage = usageDetail(account, Rows::user, symbol, exchange);
            const qlonglong limit = usage.value(buys ? RtTotalBuyLimit : RtTotalSellLimit).toLongLong();
            const qlonglong open = usage.value(OpenPosQty).toLongLong() * (buys ? -1 : 1);
            const qlonglong room = qMax(0LL, limit - takenOf(account)) - given.value(account);
            const qlonglong most = closes ? qMin(room, qMax(0LL, open - takenOf(account))) : room;
            qlonglong quantity = qMax(0LL, qMin(left, most));
            if (buys || (quantity != left && quantity != room))
                quantity -= quantity % stepOf(symbol);
            given[account] += quantity;
            left -= quantity;
        }
    }
    for (const QString &account : of)
        takenOf(account) += given.value(account);
    return given;
}

RecordList Model::confirmation(const RecordList &orders, RecordList &rest) const
{
    RecordList rows;
    Taken taken;
    for (VariantRecord order : orders) {
        const QStringList chosenAccounts = suitable(order);
        QStringList of = those(ownAccounts, [&](const QString &account) { return chosenAccounts.contains(account); });
        of.removeDuplicates();
        QString reason = wantedBy(order) <= 0 ? UserTexts::quantityNotPositive() : reasonAgainst(order, of);
        const QMap<QString, qlonglong> given =
            reason.isEmpty() ? distributed(order, of, taken) : QMap<QString, qlonglong>();
        qlonglong placed = 0;
        for (const QString &account : qAsConst(of)) {
            placed += given.value(account);
            rows += confirmed(order, account, given.value(account));
        }
        if (reason.isEmpty() && placed < wantedBy(order))
            reason = UserTexts::quotaTooSmall(placed, wantedBy(order));
        if (reason.isEmpty())
            continue;
        order.insert(Security::orderQty, wantedBy(order) - placed);
        order.insert(Orvane_Fields::System::requestExeStatus, Rows::Fail);
        order.insert(Orvane_Fields::System::textDescription, reason);
        rest.append(order);
    }
    return rows;
}

/// What an account gets of an order, in the user's parts.
RecordList Model::confirmed(VariantRecord order, const QString &account, qlonglong quantity) const
{
    RecordList rows;
    const QString symbol = str(order, Security::symbol);
    const qlonglong least = instrumentOf(symbol).further.value(Stand_Fields::Security::minQty).toLongLong();
    const qlonglong partSize = settings.value(symbol).value(TradeCustQty).toLongLong();
    order.insert(tradingAccount, account);
    order.insert(Security::chineseName, chineseNameOf(symbol));
    if (account == "A3")
        order.insert(Master_Fields::Security::SideUnion, isBuy(order) ? "collateralBuy" : "collateralSell");
    for (const qlonglong part : parts(quantity, partSize, stepOf(symbol), least)) {
        order.insert(Security::orderQty, part);
        if (part > 0)
            rows.append(order);
    }
    return rows;
}

RecordList Model::cancelable(const QStringList &accountList, const QString &symbol, const QString &exchange,
                             const QStringList &users, const QString &side) const
{
    return those(desk().orders, [&](const auto &order) {
        const QString status = str(order, Security::orderStatus);
        return matches(order, accountList, symbol, exchange) && (status == "Accepted" || status == "PartlyFilled") &&
               (users.isEmpty() || users.contains(str(order, Orvane_Fields::UserAccount::loginUserId))) &&
               (side.isEmpty() || side == str(order, Security::side)) &&
               str(order, Master_Fields::Security::VantaBusiType) == "ManualT0Order";
    });
}

QStringList Model::searchTexts() const
{
    QStringList texts;
    for (const QString &symbol : tradableSymbols) {
        const QString id = instrumentOf(symbol).securityID;
        texts.append(QStringList{symbol, chineseNameOf(symbol), id.isEmpty() ? QString() : "ZQ" + id}.join(
            Constants::SymbolSearch_Split));
    }
    return texts;
}

QMap<QString, QStringList> Model::productsToEnable()
{
    QMap<QString, QStringList> products;
    for (const Candidate &candidate : candidates()) {
        if (!products[candidate.product].contains(candidate.assetProp))
            products[candidate.product].append(candidate.assetProp);
    }
    return products;
}
