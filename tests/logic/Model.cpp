#include "Model.h"

#include <algorithm>
#include <cmath>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Fields::UserAccount::userID;
namespace Security = Orvane_Fields::Security;

namespace {

const QString publicTrader = QStringLiteral("public");

struct Candidate {
    QString product;
    QString assetProp;
    QString account;
};

const QList<Candidate> &candidates()
{
    static const QList<Candidate> list{
        {"P1", "Cash", "A1"}, {"P1", "Cash", "A2"}, {"P1", "Credit", "A3"}, {"P2", "Cash", "A4"}};
    return list;
}

QString str(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

double num(const VariantRecord &row, const QString &field)
{
    return row.value(field).toDouble();
}

struct Instrument {
    QString symbol;
    int factor = 1;

    explicit Instrument(const VariantRecord &row)
    {
        static const QMap<QString, QPair<QString, int>> known{{"600000 SH", {"600000.SH", 1}},
                                                              {"300001 SZ", {"300001.SZ", 1}},
                                                              {"110001 SH", {"110001.SH", 10}},
                                                              {"00700 HHK", {"00700.HK", 100}},
                                                              {"00700 SZHK", {"00700.HK", 100}}};
        const QString id = str(row, Security::securityID) + ' ' + str(row, securityExchange);
        symbol = known.value(id).first;
        factor = known.value(id, {"", 1}).second;
    }
};

using Text = QString (*)(const VariantRecord &);

template <Text keyOf> void sortBy(RecordList &rows)
{
    std::sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return keyOf(a) < keyOf(b); });
}

/// Puts row in the place of the one with the same key, else at the end.
template <Text keyOf> void put(RecordList &rows, const VariantRecord &row)
{
    for (VariantRecord &held : rows) {
        if (keyOf(held) == keyOf(row)) {
            held = row;
            return;
        }
    }
    rows.append(row);
}

template <typename Condition> RecordList those(const RecordList &rows, Condition condition)
{
    RecordList result;
    for (const VariantRecord &row : rows) {
        if (condition(row))
            result.append(row);
    }
    return result;
}

template <typename Change> RecordList each(RecordList rows, Change change)
{
    for (VariantRecord &row : rows)
        row = change(row);
    return rows;
}

QString resourceId(const VariantRecord &row)
{
    return str(row, ResourceId);
}

QString poolId(const VariantRecord &row)
{
    return str(row, PoolDetailId);
}

/// Account, symbol and exchange: what a public pool and its partner have in common.
QString holding(const VariantRecord &row)
{
    return QStringList{str(row, tradingAccount), str(row, Security::symbol), str(row, securityExchange)}.join('_');
}

QString usageKey(const VariantRecord &row)
{
    return QStringList{str(row, T0TraderId), str(row, tradingAccount), Instrument(row).symbol,
                       str(row, securityExchange)}
        .join('_');
}

QString security(const VariantRecord &row)
{
    return str(row, Security::symbol) + str(row, securityExchange);
}

bool matches(const VariantRecord &row, const QStringList &accounts, const QString &symbol, const QString &exchange)
{
    return accounts.contains(str(row, tradingAccount)) && (symbol.isEmpty() || str(row, Security::symbol) == symbol) &&
           (exchange.isEmpty() || str(row, securityExchange) == exchange);
}

QStringList ownQuantities()
{
    return {PreUnclosedBuyLimit, PreUnclosedSellLimit, PreUnclosedBoughtQty, PreUnclosedSoldQty, DailyBuyLimit,
            DailySellLimit,      DailyBoughtQty,       DailySoldQty,         RtPoolTotalQty};
}

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

// ---- Loads -----------------------------------------------------------------------------------------------

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
            asked.append(query);
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
        asked.append(type == Products ? "products" : "traders");
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
        asked.append(query);
    else
        finish(family, false);
}

void Model::answerProducts(bool success, const RecordList &rows)
{
    if (!success)
        return failed(Products, "products");
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

// ---- Reads -----------------------------------------------------------------------------------------------

QString Model::traderOf(const VariantRecord &pool) const
{
    return str(pool, poolTraderIsUser ? userID : T0TraderId);
}

QString Model::nameOf(const QString &trader) const
{
    return trader == publicTrader ? trader : traderNames.value(trader);
}

VariantRecord Model::named(VariantRecord pool) const
{
    pool.insert(T0TraderName, nameOf(str(pool, T0TraderId)));
    return pool;
}

RecordList Model::poolsByResource(const QString &id) const
{
    RecordList own =
        those(pools, [&](const auto &pool) { return resourceId(pool) == id && !orphans.contains(poolId(pool)); });
    sortBy<poolId>(own);
    return own;
}

VariantRecord Model::withSummary(VariantRecord resource) const
{
    int publicQty = 0;
    int privateQty = 0;
    QStringList ids;
    QStringList names;
    const RecordList own = poolsByResource(resourceId(resource));
    for (const VariantRecord &pool : own) {
        const bool isPrivate = pool.value(PoolType).toInt() == 1;
        (isPrivate ? privateQty : publicQty) += int(num(pool, PoolTotalQty));
        ids.append(isPrivate ? str(pool, T0TraderId) : publicTrader);
        names.append(isPrivate ? traderNames.value(ids.last()) : publicTrader);
    }
    resource.insert(PublicPoolQty, publicQty);
    resource.insert(PrivatePoolQty, privateQty);
    resource.insert(T0TraderId, ids.join(','));
    resource.insert(T0TraderName, names.join(','));
    return resource;
}

RecordList Model::allResources() const
{
    return each(resources, [&](const auto &row) { return withSummary(row); });
}

RecordList Model::resource(const QString &id) const
{
    return those(resources, [&](const auto &row) { return resourceId(row) == id; });
}

RecordList Model::resourcesOf(const QStringList &products, const QString &assetProp, const QString &symbol,
                              const QString &exchange, const QStringList &traderIds) const
{
    const QStringList of = enabledAccounts(products, assetProp);
    return those(allResources(), [&](const auto &row) {
        const RecordList own = poolsByResource(resourceId(row));
        const bool hasTrader =
            std::any_of(own.cbegin(), own.cend(), [&](const auto &pool) { return traderIds.contains(traderOf(pool)); });
        return (traderIds.isEmpty() || hasTrader) && matches(row, of, symbol, exchange);
    });
}

RecordList Model::allPools() const
{
    return each(pools, [&](const auto &pool) { return named(pool); });
}

RecordList Model::poolsOfResource(const QString &id, int type) const
{
    return those(allPools(), [&](const auto &pool) {
        return resourceId(pool) == id && !orphans.contains(poolId(pool)) &&
               (type == 3 || pool.value(PoolType).toInt() == type);
    });
}

RecordList Model::poolsById(const QStringList &ids) const
{
    RecordList rows;
    for (const QString &id : ids)
        rows += those(pools, [&](const auto &pool) { return poolId(pool) == id; });
    return rows;
}

RecordList Model::poolsOf(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                          const QString &exchange, bool withPublic) const
{
    RecordList matching =
        those(allPools(), [&](const auto &pool) { return matches(pool, accountList, symbol, exchange); });
    sortBy<poolId>(matching);
    RecordList rows;
    RecordList publicRows; // one for each holding, the last by id
    for (const VariantRecord &pool : qAsConst(matching)) {
        const QString trader = traderOf(pool);
        const bool isPublic = withPublic && trader == publicTrader;
        if (traderIds.isEmpty() ? !isPublic : !trader.isEmpty() && traderIds.contains(trader))
            rows.append(pool);
        if (isPublic)
            put<holding>(publicRows, pool);
    }
    for (VariantRecord &row : rows) {
        for (int i = publicRows.size() - 1; i >= 0; --i) {
            if (holding(publicRows.at(i)) == holding(row))
                row.insert(PublicPoolQty, publicRows.takeAt(i).value(PoolTotalQty));
        }
    }
    sortBy<holding>(publicRows);
    return rows + each(publicRows, [](VariantRecord row) {
               row.remove(T0TraderName);
               row.insert(PublicPoolQty, row.value(PoolTotalQty));
               row.insert(PoolTotalQty, 0);
               return row;
           });
}

QStringList Model::enabledAccounts(const QStringList &products, const QString &assetProp) const
{
    QStringList of;
    for (const QString &product : products) {
        for (const Candidate &candidate : candidates()) {
            if (candidate.product == product && enabled.value(product).contains(candidate.assetProp) &&
                (assetProp.isEmpty() || candidate.assetProp == assetProp))
                of.append(candidate.account);
        }
    }
    return of;
}

QStringList Model::accountsOf(const QStringList &products, const QStringList &properties) const
{
    QStringList of;
    for (const Candidate &candidate : candidates()) {
        const QStringList wanted = products.isEmpty() ? QStringList(enabled.keys()) : products;
        const QStringList props = properties.isEmpty() ? enabled.value(candidate.product) : properties;
        if (wanted.contains(candidate.product) && props.contains(candidate.assetProp))
            of.append(candidate.account);
    }
    return of;
}

RecordList Model::usageOf(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                          const QString &exchange) const
{
    return those(usage, [&](const auto &row) {
        return matches(row, accountList, symbol, exchange) &&
               (traderIds.isEmpty() || traderIds.contains(str(row, T0TraderId)));
    });
}

RecordList Model::openPositions(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                                const QString &exchange) const
{
    return those(usageOf(accountList, traderIds, symbol, exchange),
                 [](const auto &row) { return str(row, OpenPosSide) != "NoOpenPos"; });
}

qlonglong Model::ownPosition(const QString &symbol, const QString &exchange, const QStringList &accountList) const
{
    if (symbol.isEmpty() || exchange.isEmpty())
        return 0;
    qlonglong net = 0;
    for (const VariantRecord &row : usageOf(accountList, {Rows::user}, symbol, exchange))
        net += row.value(OpenPosQty).toLongLong();
    return net;
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

/// Of stock that nobody holds: what was traded today is all there is. A bond may be bought first.
double Model::allocatable(const QString &account, const QString &symbol, const QString &exchange) const
{
    if (!accounts.contains(account) || account.isEmpty() || symbol.isEmpty() || exchange.isEmpty())
        return 0;
    const bool isBond = symbol == "110001.SH";
    qlonglong held = 0;
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
    const qlonglong room = 1000000000 - used;
    const qlonglong factor = isBond ? 10 : symbol == "00700.HK" ? 100 : 1;
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
