#include "Model.h"

#include "ModelRows.h"

#include <cmath>

using namespace ModelRows;
using Orvane_Fields::UserAccount::userID;

namespace {

VariantRecord scaledResource(VariantRecord row)
{
    const Instrument instrument(row);
    row.insert(Security::symbol, instrument.symbol);
    if (instrument.factor > 1 && row.contains(ResourceQty))
        row.insert(ResourceQty, qlonglong(std::llround(num(row, ResourceQty) * instrument.factor)));
    return row;
}

VariantRecord scaledPool(VariantRecord row, bool firstLoad)
{
    const Instrument instrument(row);
    row.insert(Security::symbol, instrument.symbol);
    if (instrument.factor == 1)
        return row;
    if (row.contains(PoolTotalQty))
        row.insert(PoolTotalQty, num(row, PoolTotalQty) * instrument.factor);
    for (const QString &field : {MaxExposureQty, MaxPendExposureQty}) {
        if (!row.contains(field))
            continue;
        if (firstLoad)
            row.insert(field, num(row, field) * instrument.factor);
        else if (int(num(row, field)) != -1)
            row.insert(field, int(num(row, field)) * instrument.factor);
    }
    return row;
}

VariantRecord derivedUsage(VariantRecord row)
{
    const Instrument instrument(row);
    row.insert(Security::symbol, instrument.symbol);
    for (const QString &field : ownQuantities()) {
        if (row.contains(field))
            row.insert(field, qlonglong(std::llround(std::trunc(num(row, field) * instrument.factor))));
    }
    const auto qty = [&row](const QString &field) { return row.value(field).toLongLong(); };
    row.insert(RtTotalBuyLimit, qty(DailyBuyLimit) + qty(PreUnclosedBuyLimit));
    row.insert(RtTotalSellLimit, qty(DailySellLimit) + qty(PreUnclosedSellLimit));
    row.insert(PreOpenQty, qty(PreUnclosedBoughtQty) - qty(PreUnclosedSoldQty));
    row.insert(DailyOpenQty, qty(DailyBoughtQty) - qty(DailySoldQty));
    const qlonglong open = qty(PreOpenQty) + qty(DailyOpenQty);
    row.insert(OpenPosQty, open);
    const QString side = str(row, PreUnclosedSide);
    const double buyFee = num(row, DailyBuyTradeFee);
    const double sellFee = num(row, DailySellTradeFee);
    const double bought = num(row, DailyBoughtAmount) * (1 + buyFee) +
                          num(row, PreUnclosedBoughtAmount) * (side == "SellOpen" ? 1 + buyFee : 1);
    const double sold = num(row, DailySoldAmount) * (1 - sellFee) +
                        num(row, PreUnclosedSoldAmount) * (side == "BuyOpen" ? 1 - sellFee : 1);
    row.insert(RtRealBoughtQty, qty(DailyBoughtQty) + qty(PreUnclosedBoughtQty));
    row.insert(RtRealSoldQty, qty(DailySoldQty) + qty(PreUnclosedSoldQty));
    row.insert(RtRealBoughtAmount, bought);
    row.insert(RtRealSoldAmount, sold);
    row.insert(OpenPosSide, open > 0 ? "BuyOpen" : open < 0 ? "SellOpen" : "NoOpenPos");
    row.insert(OpenAvgPrice, open > 0   ? QVariant(bought / num(row, RtRealBoughtQty))
                             : open < 0 ? QVariant(sold / num(row, RtRealSoldQty))
                                        : QVariant(0));
    return row;
}

} // namespace

bool Model::startLoad(int family)
{
    known[family] = true;
    if (states[family] != None)
        return false;
    states[family] = Loading;
    return true;
}

void Model::finish(int family, bool success)
{
    known[family] = true;
    states[family] = success ? Done : Failed;
    events.append(QStringLiteral("inited %1").arg(family));
}

void Model::initData()
{
    for (const auto &[family, query] :
         {std::pair(Products, "products"), {Traders, "traders"}, {Priority, "priority"}}) {
        if (startLoad(family))
            ask(query);
    }
}

void Model::refreshType(int type)
{
    if (!known[type])
        return;
    states[type] = None;
    if (type == Products) {
        accounts.clear();
        enabled.clear();
    } else if (type == Traders) {
        traderNames.clear();
    }
    if (type == Products || type == Traders) {
        startLoad(type);
        ask(type == Products ? "products" : "traders");
    } else if (type == Resources || type == Pools) {
        loadAccounts(type);
    }
}

void Model::refreshAll()
{
    for (int type = Products; type <= Priority; ++type) {
        states[type] = None;
        known[type] = false;
    }
    initData();
}

void Model::deleteResources(const QStringList &ids)
{
    resources = those(resources, [&](const auto &row) { return !ids.contains(resourceId(row)); });
    deleted.unite({ids.cbegin(), ids.cend()});
    for (const VariantRecord &pool : qAsConst(pools)) {
        if (ids.contains(resourceId(pool)))
            orphans.insert(poolId(pool));
    }
}

void Model::loadAccounts(int family)
{
    startLoad(family);
    if (family == Pools)
        orphans.clear();
    poolTraderIsUser = poolTraderIsUser || family == Pools;
    (family == Pools ? pools : resources).clear();
    QMap<QString, int> &waiting = waitingAccounts[family];
    waiting.clear();
    for (const QString &account : qAsConst(accounts))
        waiting.insert(account, 0);
    if (waiting.isEmpty())
        finish(family, true);
    for (auto account = waiting.cbegin(); account != waiting.cend(); ++account)
        asked.append((family == Pools ? "pools " : "resources ") + account.key());
}

/// Book-keeping of an answer during a load.
void Model::answersLoad(int family, const QString &account, bool success)
{
    QMap<QString, int> &waiting = waitingAccounts[family];
    if (!success && waiting.value(account) == 0) {
        waiting.insert(account, 1);
        asked.append((family == Pools ? "pools " : "resources ") + account);
    } else if (waiting.remove(account) > 0 && waiting.isEmpty()) {
        finish(family, success);
    }
}

/// The fifth failure, and every one after it, gives up.
void Model::failed(int family, const QString &query)
{
    if (++failures[family] < 5)
        ask(query);
    else
        finish(family, false);
}

void Model::ask(const QString &query)
{
    asked.append(query);
    if (query == "products")
        ++productQueries;
}

void Model::answerProducts(bool success, const RecordList &rows)
{
    if (success)
        takeProducts(rows);
    else
        failed(Products, "products");
    productQueries = qMax(0, productQueries - 1);
    if (productQueries == 0 && std::exchange(rereadsProducts, false))
        ask("products");
}

void Model::productsAltered(const RecordList &accepted)
{
    rereadsProducts = productQueries > 0;
    takeProducts(accepted);
}

void Model::productsUnknown()
{
    rereadsProducts = productQueries > 0;
    if (!rereadsProducts)
        ask("products");
}

void Model::takeProducts(const RecordList &rows)
{
    failures[Products] = 0;
    accounts.clear();
    enabled.clear();
    for (const VariantRecord &row : rows) {
        accounts.append(str(row, tradingAccount));
        QStringList &properties = enabled[str(row, Orvane_Fields::UserAccount::productAccount)];
        QString assetProp; // of an account that the host does not know: none
        for (const Candidate &candidate : candidates()) {
            if (candidate.account == accounts.last())
                assetProp = candidate.assetProp;
        }
        properties.append(assetProp);
        properties.removeDuplicates();
        properties.sort();
    }
    finish(Products, true);
    known[Resources] = known[Pools] = true;
    refreshType(Resources);
    refreshType(Pools);
}

void Model::answerTraders(bool success, const RecordList &rows, bool isManager)
{
    if (!success)
        return failed(Traders, "traders");
    traderNames.clear();
    for (const VariantRecord &row : rows)
        traderNames.insert(str(row, userID), str(row, Orvane_Fields::UserAccount::userName));
    finish(Traders, true);
    if (startLoad(Usage))
        asked.append("usage " + (isManager ? QStringList(traderNames.keys()).join(',') : Rows::user));
}

void Model::answerPriority(bool success, const QStringList &priority)
{
    if (!success)
        return;
    ownAccounts = priority;
    finish(Priority, true);
}

void Model::answerResources(const QString &account, bool success, const RecordList &rows, bool cover)
{
    const bool loading = states[Resources] == Loading;
    if (success && !loading && cover)
        resources = those(resources, [&](const auto &row) { return str(row, tradingAccount) != account; });
    if (success) {
        for (const VariantRecord &row : rows) {
            if (!deleted.contains(resourceId(row)))
                put<resourceId>(resources, scaledResource(row));
        }
    }
    if (loading)
        answersLoad(Resources, account, success);
    else if (success)
        events.append("resources " + account);
}

void Model::answerPools(const QString &account, bool success, const RecordList &rows)
{
    const bool loading = states[Pools] == Loading;
    RecordList fresh;
    for (const VariantRecord &row : rows)
        put<poolId>(fresh, scaledPool(row, loading));
    if (success && !loading)
        announceChanges(account, fresh);
    if (success) {
        for (const VariantRecord &row : qAsConst(fresh)) {
            put<poolId>(pools, row);
            orphans.remove(poolId(row));
        }
    }
    if (loading)
        answersLoad(Pools, account, success);
}

/// A later answer: takes what it does not list any more out of the account.
void Model::announceChanges(const QString &account, const RecordList &fresh)
{
    const QStringList listed = Rows::texts(fresh, PoolDetailId);
    QStringList changed = listed;
    QStringList deleted;
    for (const VariantRecord &held : qAsConst(pools)) {
        if (str(held, tradingAccount) == account && !listed.contains(poolId(held)))
            deleted.append(poolId(held));
        if (str(held, tradingAccount) == account && fresh.contains(held))
            changed.removeAll(poolId(held));
    }
    pools = those(pools, [&](const auto &row) { return !deleted.contains(poolId(row)); });
    if (poolTraderIsUser)
        orphans.clear(); // the index is made anew, for another field
    poolTraderIsUser = false;
    deleted.sort();
    if (!changed.isEmpty())
        events.append("pools " + changed.join(','));
    if (!deleted.isEmpty())
        events.append("deleted " + deleted.join(','));
}

void Model::answerUsage(bool success, const RecordList &rows)
{
    if (!success)
        return;
    if (states[Usage] == Loading) {
        usage.clear();
        for (const VariantRecord &row : rows)
            put<usageKey>(usage, derivedUsage(row));
        finish(Usage, true);
        return;
    }
    const RecordList taken = those(rows, [&](const auto &row) { return merge(row); });
    QStringList changed;
    for (const VariantRecord &row : taken)
        changed.append(usageKey(row));
    events.append("usage " + changed.join(','));
    if (bringsSymbol(taken))
        recomputeSymbols();
}

void Model::push(const VariantRecord &row)
{
    if (!merge(row))
        return;
    events.append("usage " + usageKey(row));
    if (bringsSymbol({row}) && !gathersSymbols)
        recomputeSymbols();
}

bool Model::merge(const VariantRecord &row)
{
    using Master_Fields::System::ModifyTime;
    const auto isHeldSince = [&](const auto &held) {
        return usageKey(held) == usageKey(row) && !(str(held, ModifyTime) < str(row, ModifyTime));
    };
    const bool isNews = those(usage, isHeldSince).isEmpty();
    if (isNews)
        put<usageKey>(usage, derivedUsage(row));
    return isNews;
}

bool Model::bringsSymbol(const RecordList &taken) const
{
    return std::any_of(taken.cbegin(), taken.cend(), [&](const auto &row) {
        return str(row, T0TraderId) == Rows::user && chosen.contains(str(row, tradingAccount)) &&
               !tradableSymbols.contains(Instrument(row).symbol);
    });
}

void Model::recomputeSymbols()
{
    choose(QStringList(chosen));
    events.last() = "symbols";
}

void Model::choose(const QStringList &accountsNow)
{
    chosen = accountsNow;
    tradableSymbols = Rows::texts(usageOf(chosen, {Rows::user}, "", ""), Security::symbol);
    tradableSymbols.removeDuplicates();
    events.append("accounts " + chosen.join(','));
}
