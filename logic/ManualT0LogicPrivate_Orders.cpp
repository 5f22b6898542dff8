#include "ChangeRows.h"
#include "DisplayUnits.h"
#include "HostLog.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "MasterTradeLogic.h"
#include "MasterValues.h"
#include "OrderChecks.h"
#include "OrvaneValues.h"
#include "Quantity.h"
#include "RealtimeFields.h"
#include "VantaKeys.h"

using namespace Master_Fields::ManualT0;

namespace {

OrderRequestList newRequestList(const QString &tradingAccount, const QString &remark)
{
    OrderRequestList list;
    MasterLogic::OrderCommonInfo &common = list.getOrderCommonInfo();
    common.tradingAccount = tradingAccount;
    common.businessName = Vanta_Keys::BusinessName::ManualT0Trade;
    common.businessType = Master_Values::VantaBusiType::ManualT0Order;
    common.confirmed = true;
    if (!remark.isEmpty())
        common.remark = remark;
    return list;
}

/// One list a trading account. Every order is a limit order, whatever its row says.
QMap<QString, OrderRequestList> requestLists(const RecordList &orders, const QString &remark)
{
    QMap<QString, OrderRequestList> lists;
    for (const VariantRecord &order : orders) {
        const QString account = text(order, Orvane_Fields::UserAccount::tradingAccount);
        if (!lists.contains(account))
            lists.insert(account, newRequestList(account, remark));
        lists[account].AddSymbol(text(order, Orvane_Fields::Security::symbol),
                                 Quantity::toQty(order.value(Orvane_Fields::Security::orderQty)),
                                 Orvane_Values::PriceType::limit, text(order, Orvane_Fields::Security::price),
                                 text(order, Master_Fields::Security::SideUnion),
                                 text(order, Orvane_Fields::UserAccount::securityExchange));
    }
    return lists;
}

int failures(const RecordList &results)
{
    return int(std::count_if(results.cbegin(), results.cend(), [](const VariantRecord &result) {
        return text(result, Orvane_Fields::System::requestExeStatus) != Orvane_Values::RequestExeStatus::success;
    }));
}

} // namespace

QString ManualT0LogicPrivate::CheckSingleOrderData(const QStringList &tradingAccounts, const QString &symbol,
                                                   const QString &exchange, const QString &sideUnion, double price,
                                                   long long qty, int checkFlags) const
{
    OrderChecks::Order order;
    order.accounts = OrderChecks::matchingAccounts(tradingAccounts, sideUnion);
    order.symbol = symbol;
    order.exchange = exchange;
    order.sideUnion = sideUnion;
    order.price = price;
    order.quantity = qty;
    order.isBuy = OrderChecks::isBuy(sideUnion);
    order.quota = [&] { return quota(order.accounts, symbol, exchange, order.isBuy); };
    return OrderChecks::check(order, checkFlags);
}

QString ManualT0LogicPrivate::CheckOrderData(const RecordList &orderList, RecordList &resultList, int checkFlags) const
{
    using Orvane_Fields::System::requestExeStatus;
    if (orderList.isEmpty())
        return Orvane_Values::RequestExeStatus::fail;
    int failed = 0;
    const RecordList orders = orderList; // the caller may give one list as both
    for (const VariantRecord &order : orders) {
        const QString failure = CheckSingleOrderData( // a single text is a list of one
            order.value(Orvane_Fields::UserAccount::tradingAccount).toStringList(),
            text(order, Orvane_Fields::Security::symbol), text(order, Orvane_Fields::UserAccount::securityExchange),
            text(order, Master_Fields::Security::SideUnion),
            Quantity::toNum(order.value(Orvane_Fields::Security::price)),
            Quantity::toQty(order.value(Orvane_Fields::Security::orderQty)), checkFlags);
        HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::CheckOrderData" << failure);
        VariantRecord result = order;
        if (failure.isEmpty()) {
            result.insert(requestExeStatus, Orvane_Values::RequestExeStatus::success);
        } else {
            ++failed;
            result.insert(requestExeStatus, Orvane_Values::RequestExeStatus::fail);
            result.insert(Orvane_Fields::System::textDescription, failure);
        }
        resultList.append(result);
    }
    return ChangeRows::overallCode(failed, orders.size());
}

QString ManualT0LogicPrivate::Order(const RecordList &orders, RecordList &results, const QString &extraText) const
{
    QMap<QString, OrderRequestList> lists = requestLists(orders, extraText);
    const QStringList accounts = GetAllT0TradingAccountListByCurUser();
    // deliberate: a list of an account that is not the user's is not submitted and leaves no result
    for (const QString &account : accounts) {
        if (!lists.contains(account))
            continue;
        const OrderRequestList list = lists.take(account); // once, also when the priority names the account twice
        QVariant answer;
        MasterTradeLogic::instance()->orders(list, answer);
        results += MasterTradeLogic::transOrderRsp(list, answer);
    }
    // deliberate: what the caller's list held before counts too
    return ChangeRows::overallCode(failures(results), results.size());
}

qint64 ManualT0LogicPrivate::quota(const QStringList &tradingAccounts, const QString &symbol, const QString &exchange,
                                   bool isBuy) const
{
    qint64 sum = 0;
    const QString &field = isBuy ? RtTotalBuyLimit : RtTotalSellLimit;
    ReadLock lock(realtimePoolLock);
    const QVector<HeldRecord> records = ownUsage(tradingAccounts, symbol, exchange);
    for (const HeldRecord record : records)
        sum = Quantity::satAdd(sum, Quantity::toQty(record->value(field)));
    return sum;
}

QVector<HeldRecord> ManualT0LogicPrivate::ownUsage(const QStringList &tradingAccounts, const QString &symbol,
                                                   const QString &exchange) const
{
    if (symbol.isEmpty() || exchange.isEmpty())
        return {}; // here an empty key is not "any"
    // A user without an id has no records: his key is that of nobody's.
    QStringList accounts = tradingAccounts;
    accounts.removeDuplicates();
    QVector<HeldRecord> records;
    for (const QString &account : qAsConst(accounts)) {
        const HeldRecord record =
            realtimePoolCache.constFind(RealtimeFields::key(account, loginUserId, symbol, exchange));
        // An id with the separator in it can make the key of another account.
        if (record != realtimePoolCache.cend() && text(*record, Orvane_Fields::UserAccount::tradingAccount) == account)
            records.append(record);
    }
    return records;
}
