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
        const QString id = str(row, Security::securityID);
        const QString exchange = str(row, securityExchange);
        if (id == "600000" && exchange == "SH")
            symbol = "600000.SH";
        else if (id == "300001" && exchange == "SZ")
            symbol = "300001.SZ";
        else if (id == "110001" && exchange == "SH")
            symbol = "110001.SH", factor = 10;
        else if (id == "00700" && (exchange == "HHK" || exchange == "SZHK"))
            symbol = "00700.HK", factor = 100;
    }
};

/// Puts row in the place of the one with the same value of field, else at the end.
void put(RecordList &rows, const VariantRecord &row, const QString &field)
{
    for (VariantRecord &held : rows) {
        if (str(held, field) == str(row, field)) {
            held = row;
            return;
        }
    }
    rows.append(row);
}

bool matches(const VariantRecord &row, const QStringList &accounts, const QString &symbol, const QString &exchange)
{
    return accounts.contains(str(row, tradingAccount)) && (symbol.isEmpty() || str(row, Security::symbol) == symbol) &&
           (exchange.isEmpty() || str(row, securityExchange) == exchange);
}

void sortBy(RecordList &rows, const QString &field)
{
    std::sort(rows.begin(), rows.end(),
              [&field](const VariantRecord &a, const VariantRecord &b) { return str(a, field) < str(b, field); });
}

VariantRecord scaledResource(VariantRecord row)
{
    const Instrument instrument(row);
    row.insert(Security::symbol, instrument.symbol);
    if (instrument.factor > 1)
        row.insert(ResourceQty, qlonglong(std::llround(num(row, ResourceQty) * instrument.factor)));
    return row;
}

VariantRecord scaledPool(VariantRecord row, bool firstLoad)
{
    const Instrument instrument(row);
    row.insert(Security::symbol, instrument.symbol);
    if (instrument.factor == 1)
        return row;
    row.insert(PoolTotalQty, num(row, PoolTotalQty) * instrument.factor);
    for (const QString &field : {MaxExposureQty, MaxPendExposureQty}) {
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
    for (const QString &field : {PreUnclosedBuyLimit, PreUnclosedSellLimit, PreUnclosedBoughtQty, PreUnclosedSoldQty,
                                 DailyBuyLimit, DailySellLimit, DailyBoughtQty, DailySoldQty, RtPoolTotalQty}) {
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

QString usageKey(const VariantRecord &row)
{
    return QStringList{str(row, T0TraderId), str(row, tradingAccount), Instrument(row).symbol,
                       str(row, securityExchange)}
        .join('_');
}

/// Floating and realized profit of one leg at a price, fees as given for the open and the closed part.
void addLeg(double bought, double sold, double boughtAmount, double soldAmount, double price, double openBuyFee,
            double openSellFee, double closedBuyFee, double closedSellFee, double &floating, double &realized)
{
    if (bought > sold)
        floating += (price - (1 + openBuyFee) * boughtAmount / bought) * (bought - sold);
    if (sold > bought)
        floating += ((1 - openSellFee) * soldAmount / sold - price) * (sold - bought);
    if (bought > 0 && sold > 0)
        realized += (soldAmount / sold * (1 - closedSellFee) - boughtAmount / bought * (1 + closedBuyFee)) *
                    std::min(bought, sold);
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
    if (startLoad(Products))
        asked.append("products");
    if (startLoad(Traders))
        asked.append("traders");
    if (startLoad(5))
        asked.append("priority");
}

void Model::refreshType(int type)
{
    if (!known[type])
        return;
    states[type] = None;
    if (type == Products) {
        accounts.clear();
        enabled.clear();
        startLoad(type);
        asked.append("products");
    } else if (type == Traders) {
        traderNames.clear();
        startLoad(type);
        asked.append("traders");
    } else if (type == Resources) {
        loadAccounts(type, resources, waitingResources, "resources ");
    } else if (type == Pools) {
        poolTraderIsUser = true;
        loadAccounts(type, pools, waitingPools, "pools ");
    }
}

void Model::loadAccounts(int family, RecordList &rows, QMap<QString, int> &waiting, const QString &query)
{
    startLoad(family);
    rows.clear();
    waiting.clear();
    for (const QString &account : qAsConst(accounts))
        waiting.insert(account, 0);
    if (waiting.isEmpty())
        finish(family, true);
    for (auto account = waiting.cbegin(); account != waiting.cend(); ++account)
        asked.append(query + account.key());
}

/// Book-keeping of an answer during a load; whether its rows are to be taken.
bool Model::answersLoad(int family, const QString &account, bool success, QMap<QString, int> &waiting,
                        const QString &query)
{
    if (!success && waiting.value(account) == 0) {
        waiting.insert(account, 1);
        asked.append(query + account);
    } else if (waiting.remove(account) > 0 && waiting.isEmpty()) {
        finish(family, success);
    }
    return success;
}

void Model::answerProducts(bool success, const RecordList &rows)
{
    if (!success) {
        if (++productFailures < 5)
            asked.append("products");
        else
            finish(Products, false);
        return;
    }
    productFailures = 0;
    accounts.clear();
    enabled.clear();
    for (const VariantRecord &row : rows) {
        accounts.append(str(row, tradingAccount));
        QStringList &properties = enabled[str(row, Orvane_Fields::UserAccount::productAccount)];
        for (const Candidate &candidate : candidates()) {
            if (candidate.account == accounts.last())
                properties.append(candidate.assetProp);
        }
        properties.removeDuplicates();
        properties.sort();
    }
    finish(Products, true);
    known[Resources] = known[Pools] = true;
    refreshType(Resources);
    refreshType(Pools);
}

void Model::answerTraders(bool success, const RecordList &rows, bool manager)
{
    if (!success) {
        if (++traderFailures < 5)
            asked.append("traders");
        else
            finish(Traders, false);
        return;
    }
    traderNames.clear();
    for (const VariantRecord &row : rows)
        traderNames.insert(str(row, userID), str(row, Orvane_Fields::UserAccount::userName));
    isManager = manager;
    finish(Traders, true);
    if (startLoad(Usage))
        asked.append("usage " + (isManager ? QStringList(traderNames.keys()).join(',') : Rows::user));
}

void Model::answerResources(const QString &account, bool success, const RecordList &rows, bool cover)
{
    const bool loading = states[Resources] == Loading;
    if (!success && !loading)
        return;
    if (success && !loading && cover) {
        const RecordList before = resources;
        resources.clear();
        for (const VariantRecord &held : before) {
            if (str(held, tradingAccount) != account)
                resources.append(held);
        }
    }
    if (success) {
        for (const VariantRecord &row : rows)
            put(resources, scaledResource(row), ResourceId);
    }
    if (loading)
        answersLoad(Resources, account, success, waitingResources, "resources ");
    else
        events.append("resources " + account);
}

void Model::answerPools(const QString &account, bool success, const RecordList &rows)
{
    if (states[Pools] == Loading) {
        if (success) {
            for (const VariantRecord &row : rows)
                put(pools, scaledPool(row, true), PoolDetailId);
        }
        answersLoad(Pools, account, success, waitingPools, "pools ");
        return;
    }
    if (!success)
        return;
    RecordList fresh;
    for (const VariantRecord &row : rows)
        put(fresh, scaledPool(row, false), PoolDetailId);
    QStringList changed = Rows::texts(fresh, PoolDetailId);
    QStringList deleted;
    RecordList left;
    for (const VariantRecord &held : qAsConst(pools)) {
        const QString id = str(held, PoolDetailId);
        const bool ofAccount = str(held, tradingAccount) == account;
        const bool listed = Rows::texts(fresh, PoolDetailId).contains(id);
        if (ofAccount && !listed)
            deleted.append(id);
        else
            left.append(held);
        if (ofAccount && fresh.contains(held))
            changed.removeAll(id);
    }
    pools = left;
    for (const VariantRecord &row : qAsConst(fresh))
        put(pools, row, PoolDetailId);
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
        for (const VariantRecord &row : rows) {
            RecordList others;
            for (const VariantRecord &held : qAsConst(usage)) {
                if (usageKey(held) != usageKey(row))
                    others.append(held);
            }
            usage = others << derivedUsage(row);
        }
        finish(Usage, true);
        return;
    }
    QStringList changed;
    bool news = false;
    for (const VariantRecord &row : rows) {
        if (!merge(row))
            continue;
        changed.append(usageKey(row));
        news = news || isNews(row);
    }
    events.append("usage " + changed.join(','));
    if (news)
        announceSymbols();
}

void Model::push(const VariantRecord &row)
{
    if (!merge(row))
        return;
    events.append("usage " + usageKey(row));
    if (isNews(row))
        announceSymbols();
}

bool Model::merge(VariantRecord row)
{
    for (VariantRecord &held : usage) {
        if (usageKey(held) != usageKey(row))
            continue;
        if (!(str(held, Master_Fields::System::ModifyTime) < str(row, Master_Fields::System::ModifyTime)))
            return false;
        held = derivedUsage(row);
        return true;
    }
    usage.append(derivedUsage(row));
    return true;
}

bool Model::isNews(const VariantRecord &row) const
{
    return str(row, T0TraderId) == Rows::user && chosen.contains(str(row, tradingAccount)) &&
           !tradableSymbols.contains(Instrument(row).symbol);
}

void Model::announceSymbols()
{
    const QStringList accountsNow = chosen;
    choose(accountsNow);
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

VariantRecord Model::withSummary(VariantRecord resource) const
{
    RecordList own;
    for (const VariantRecord &pool : pools) {
        if (str(pool, ResourceId) == str(resource, ResourceId))
            own.append(pool);
    }
    sortBy(own, PoolDetailId);
    int publicQty = 0;
    int privateQty = 0;
    QStringList ids;
    QStringList names;
    for (const VariantRecord &pool : qAsConst(own)) {
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

VariantRecord Model::named(VariantRecord pool) const
{
    const QString trader = str(pool, T0TraderId);
    pool.insert(T0TraderName, trader == publicTrader ? trader : traderNames.value(trader));
    return pool;
}

RecordList Model::allResources() const
{
    RecordList rows;
    for (const VariantRecord &resource : resources)
        rows.append(withSummary(resource));
    return rows;
}

RecordList Model::resourcesOf(const QStringList &products, const QString &assetProp, const QString &symbol,
                              const QString &exchange, const QStringList &traderIds) const
{
    QStringList of;
    for (const Candidate &candidate : candidates()) {
        if (products.contains(candidate.product) && enabled.value(candidate.product).contains(candidate.assetProp) &&
            (assetProp.isEmpty() || candidate.assetProp == assetProp))
            of.append(candidate.account);
    }
    RecordList rows;
    for (const VariantRecord &resource : resources) {
        bool hasTrader = traderIds.isEmpty();
        for (const VariantRecord &pool : pools)
            hasTrader =
                hasTrader || (str(pool, ResourceId) == str(resource, ResourceId) && traderIds.contains(traderOf(pool)));
        if (hasTrader && matches(resource, of, symbol, exchange))
            rows.append(withSummary(resource));
    }
    return rows;
}

RecordList Model::allPools() const
{
    RecordList rows;
    for (const VariantRecord &pool : pools)
        rows.append(named(pool));
    return rows;
}

RecordList Model::poolsOfResource(const QString &resourceId, int type) const
{
    RecordList rows;
    for (const VariantRecord &pool : pools) {
        if (str(pool, ResourceId) == resourceId && (type == 3 || pool.value(PoolType).toInt() == type))
            rows.append(named(pool));
    }
    return rows;
}

RecordList Model::poolsOf(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                          const QString &exchange, bool withPublic) const
{
    RecordList rows;
    RecordList publicRows; // one for each account, symbol and exchange, the last by id
    RecordList all = pools;
    sortBy(all, PoolDetailId);
    const auto sameHolding = [](const VariantRecord &a, const VariantRecord &b) {
        return matches(a, {str(b, tradingAccount)}, str(b, Security::symbol), str(b, securityExchange)) &&
               str(a, Security::symbol) == str(b, Security::symbol);
    };
    for (const VariantRecord &pool : qAsConst(all)) {
        if (!matches(pool, accountList, symbol, exchange))
            continue;
        const QString trader = traderOf(pool);
        const bool isPublic = trader == publicTrader;
        if (traderIds.isEmpty() ? !(withPublic && isPublic) : !trader.isEmpty() && traderIds.contains(trader))
            rows.append(named(pool));
        if (!withPublic || !isPublic)
            continue;
        for (int i = publicRows.size() - 1; i >= 0; --i) {
            if (sameHolding(publicRows.at(i), pool))
                publicRows.removeAt(i);
        }
        publicRows.append(pool);
    }
    for (VariantRecord &row : rows) {
        for (int i = publicRows.size() - 1; i >= 0; --i) {
            if (sameHolding(publicRows.at(i), row))
                row.insert(PublicPoolQty, publicRows.takeAt(i).value(PoolTotalQty));
        }
    }
    for (VariantRecord row : qAsConst(publicRows)) {
        row.insert(PublicPoolQty, row.value(PoolTotalQty));
        row.insert(PoolTotalQty, 0);
        rows.append(row);
    }
    return rows;
}

QStringList Model::accountsOf(const QStringList &products, const QStringList &properties) const
{
    QStringList of;
    for (const Candidate &candidate : candidates()) {
        const bool wanted =
            products.isEmpty() ? enabled.contains(candidate.product) : products.contains(candidate.product);
        const QStringList props = properties.isEmpty() ? enabled.value(candidate.product) : properties;
        if (wanted && props.contains(candidate.assetProp))
            of.append(candidate.account);
    }
    return of;
}

RecordList Model::usageOf(const QStringList &accountList, const QStringList &traderIds, const QString &symbol,
                          const QString &exchange) const
{
    RecordList rows;
    for (const VariantRecord &record : usage) {
        if (matches(record, accountList, symbol, exchange) &&
            (traderIds.isEmpty() || traderIds.contains(str(record, T0TraderId))))
            rows.append(record);
    }
    return rows;
}

RecordList Model::sumsOf(const QStringList &accountList, const QString &trader, const QString &symbol,
                         const QString &exchange) const
{
    if (trader.isEmpty())
        return {};
    RecordList rows = usageOf(accountList, {trader}, symbol, exchange);
    std::sort(rows.begin(), rows.end(),
              [](const VariantRecord &a, const VariantRecord &b) { return usageKey(a) < usageKey(b); });
    RecordList sums;
    const auto group = [](const VariantRecord &row) { return str(row, Security::symbol) + str(row, securityExchange); };
    for (const VariantRecord &row : qAsConst(rows)) {
        const auto sum = std::find_if(sums.begin(), sums.end(),
                                      [&](const VariantRecord &held) { return group(held) == group(row); });
        if (sum == sums.end()) {
            sums.append(row);
            continue;
        }
        for (const QString &field :
             {PreUnclosedBuyLimit, PreUnclosedSellLimit, PreUnclosedBoughtQty, PreUnclosedSoldQty, DailyBuyLimit,
              DailySellLimit, DailyBoughtQty, DailySoldQty, RtPoolTotalQty, RtTotalBuyLimit, RtTotalSellLimit,
              PreUnclosedBoughtAmount, PreUnclosedSoldAmount, DailyBoughtAmount, DailySoldAmount})
            sum->insert(field, num(*sum, field) + num(row, field));
    }
    std::sort(sums.begin(), sums.end(),
              [&](const VariantRecord &a, const VariantRecord &b) { return group(a) < group(b); });
    return sums;
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
            const double price = 10.5;
            const double buyFee = num(record, DailyBuyTradeFee);
            const double sellFee = num(record, DailySellTradeFee);
            const QString side = str(record, PreUnclosedSide);
            const bool today = side.isEmpty();
            double floating = 0;
            double carried = 0;
            double realized = 0;
            addLeg(num(record, PreUnclosedBoughtQty), num(record, PreUnclosedSoldQty),
                   num(record, PreUnclosedBoughtAmount), num(record, PreUnclosedSoldAmount), price, today ? buyFee : 0,
                   today ? sellFee : 0, side == "BuyOpen" ? 0 : buyFee, today || side == "BuyOpen" ? sellFee : 0,
                   floating, carried);
            addLeg(num(record, DailyBoughtQty), num(record, DailySoldQty), num(record, DailyBoughtAmount),
                   num(record, DailySoldAmount), price, buyFee, sellFee, buyFee, sellFee, floating, realized);
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
