#include "PictureCheck.h"

#include "ModelRows.h"
#include "OrderChecks.h"

#include <algorithm>
#include <cstring>

namespace {

/// A number in ten digits. Shifted a little first: the last bit must not decide how a tie of digits is rounded.
QString writtenNumber(double value)
{
    return QString::number(value * (1 + 3.14159e-9) + 0.0, 'g', 10);
}

/// A row as one text; numbers of equal value look alike, whatever their types.
QString written(const VariantRecord &row)
{
    QStringList fields;
    for (auto field = row.cbegin(); field != row.cend(); ++field) {
        const bool isText = field->type() == QVariant::String;
        fields.append(field.key() + '=' + (isText ? field->toString() : writtenNumber(field->toDouble())));
    }
    return fields.join(' ');
}

quint64 mixed(quint64 sum, uint part)
{
    return (sum ^ part) * 0x9e3779b97f4a7c15ULL;
}

/// The first ten digits or so, shifted a little first as above.
uint numberHash(double value)
{
    const double shifted = value * (1 + 3.14159e-9) + 0.0;
    quint64 bits = 0;
    std::memcpy(&bits, &shifted, sizeof bits);
    return qHash(bits >> 19);
}

/// Of a row in short; equal rows have equal ones, but for numbers at the edge of what the digits tell apart.
quint64 fingerprint(const VariantRecord &row)
{
    quint64 sum = 0;
    for (auto field = row.cbegin(); field != row.cend(); ++field) {
        const bool isText = field->type() == QVariant::String;
        sum = mixed(mixed(sum, qHash(field.key())), isText ? qHash(field->toString()) : numberHash(field->toDouble()));
    }
    return sum;
}

/// Whether two lists are the same without writing them down; false: to be seen.
bool lookAlike(const RecordList &a, const RecordList &b, bool inOrder)
{
    if (a.size() != b.size())
        return false;
    QVector<quint64> of[2];
    for (int i = 0; i < a.size(); ++i) {
        of[0].append(fingerprint(a.at(i)));
        of[1].append(fingerprint(b.at(i)));
    }
    for (QVector<quint64> &list : of) {
        if (!inOrder)
            std::sort(list.begin(), list.end());
    }
    return of[0] == of[1];
}

QStringList written(const RecordList &rows, bool inOrder)
{
    QStringList texts;
    for (const VariantRecord &row : rows)
        texts.append(written(row));
    if (!inOrder)
        texts.sort();
    return texts;
}

} // namespace

void PictureCheck::differ(const QString &what, const RecordList &found, const RecordList &expected, bool inOrder)
{
    if (lookAlike(found, expected, inOrder))
        return;
    QStringList hubs = written(found, inOrder);
    QStringList models = written(expected, inOrder);
    if (hubs == models)
        return;
    const QStringList all = hubs;
    for (const QString &row : all) {
        if (!inOrder && models.removeOne(row))
            hubs.removeOne(row);
    }
    m_differences.append(what + "\n hub:\n" + hubs.join('\n') + "\n model:\n" + models.join('\n'));
}

void PictureCheck::compareHeld()
{
    const QString byResource = QStringLiteral("the pool resource index differs from its cache");
    for (const QString &fault : HubProbe::indexFaults(m_hub)) {
        if (fault != byResource || !m_model.hasOrphans()) // those are in no resource's index
            m_differences.append(fault);
    }
    for (int type = 0; type <= 6; ++type)
        differ(QStringLiteral("state %1").arg(type), int(m_hub.GetInitStateByType(type)), int(m_model.states[type]));
    compareAlike();
    differ("accounts", m_hub.GetAllT0TradingAccountList(), m_model.accounts);
    differ("chosen", m_hub.GetCurrentTradeAccount(), m_model.chosen);
    differ("symbols", m_hub.GetCurrentTradableSymbolList(), m_model.tradableSymbols);
    differ("search texts", m_hub.GetCurrentInputSymbolList(), m_model.searchTexts());
    differ("candidates for products", m_hub.GetCandidateT0ProductAccount(), Model::productsToEnable());
    differ("T0 symbols", m_hub.GetT0Symbols(), QStringList("110001.SH"));
    differ("all pools", m_hub.GetAllSecurityPoolList(), m_model.allPools());
}

void PictureCheck::compareAlike()
{
    differ("products", m_hub.GetAllT0ProductAccount(), m_model.enabled);
    differ("traders", m_hub.GetAllT0TraderId(), m_model.traderNames);
    differ("own accounts", m_hub.GetAllT0TradingAccountListByCurUser(), m_model.ownAccounts);
    differ("all resources", m_hub.GetAllResourceList(), m_model.allResources());
}

void PictureCheck::compareRows()
{
    using namespace Master_Fields::ManualT0;
    const auto withoutLimits = [](RecordList pools) {
        for (VariantRecord &pool : pools) {
            pool.remove(MaxExposureQty);
            pool.remove(MaxPendExposureQty);
        }
        return pools;
    };
    const QStringList accounts{"A1", "A2", "A3", "A4"};
    compareAlike();
    differ("all pools", withoutLimits(m_hub.GetAllSecurityPoolList()), withoutLimits(m_model.allPools()));
    differ("all usage", m_hub.GetRealtimePoolDetailList(accounts, {}, {}, {}), m_model.usageOf(accounts, {}, {}, {}));
}

void PictureCheck::compareLookups(Chance &chance)
{
    const QStringList accounts = chance.some({"A1", "A2", "A3", "A4", "A9"});
    const QStringList products = chance.some({"P1", "P2", "P9"});
    const QStringList properties = chance.some({"Cash", "Credit", "Cash", "Credit", "cash"});
    const QStringList traders = chance.some({"u1", "t2", "t3", "public", "", "none"});
    const QString symbol = chance.of({"", "", "600000.SH", "110001.SH", "00700.HK", "none"});
    const QString exchange = chance.of({"", "", "SH", "HHK", "SZHK", "none"});
    const QString resource = QStringLiteral("r%1").arg(chance.upTo(12));
    const QString trader = traders.value(0);
    const QString assetProp = properties.value(0);
    const QString filter =
        QStringList{accounts.join(','), traders.join(','), symbol, exchange, products.join(','), assetProp}.join('/');

    differ("resources " + filter, m_hub.GetResourceByProductAccount(products, assetProp, symbol, exchange, traders),
           m_model.resourcesOf(products, assetProp, symbol, exchange, traders));
    for (bool withPublic : {false, true}) {
        differ("pools " + filter + (withPublic ? " with public" : ""),
               m_hub.GetSecurityPoolDetailListByTradingList(accounts, traders, symbol, exchange, withPublic),
               m_model.poolsOf(accounts, traders, symbol, exchange, withPublic), withPublic);
        differ("pools of products " + filter,
               m_hub.GetSecurityPoolDetail(products, properties, traders, symbol, exchange, withPublic),
               m_model.poolsOf(m_model.accountsOf(products, properties), traders, symbol, exchange, withPublic),
               withPublic);
    }
    const QString account = accounts.value(0);
    const RecordList own = m_model.poolsOf({account}, {trader}, symbol, exchange, false);
    differ("one trader's pools " + filter, m_hub.GetSecurityPoolDetailListByTrading(account, trader, symbol, exchange),
           own);
    differ("one trader's first pool " + filter,
           {m_hub.GetSecurityPoolDetailByTrading(account, trader, symbol, exchange)}, {own.value(0)});
    const QStringList ids{QStringLiteral("p%1").arg(chance.upTo(16)), "none", "p3", "p1", "p3"};
    differ("pools by id", m_hub.GetSecurityPoolDetailByIdList(ids), m_model.poolsById(ids), true);
    differ("pool by id", {m_hub.GetSecurityPoolDetailById(ids.first())}, {m_model.poolsById({ids.first()}).value(0)});
    differ("resource " + resource, {m_hub.GetResourceDetailById(resource)}, {m_model.resource(resource).value(0)});
    differ("usage record " + filter, {m_hub.GetRealtimePoolDetail(account, trader, symbol, exchange)},
           {m_model.usageDetail(account, trader, symbol, exchange)});
    differ("name of " + trader, m_hub.GetTraderNameByTraderId(trader), m_model.nameOf(trader));
    const QString product = products.value(0);
    const QStringList enabled = m_model.enabled.value(product);
    differ("properties of " + product, m_hub.GetProductAssetPropList(product), enabled);
    differ("property of " + product, m_hub.IsProductAndAssetPropInT0(product, assetProp), enabled.contains(assetProp));
    differ("accounts of " + product, m_hub.GetTradingAccountListByProductAndAssetProp(product, assetProp),
           m_model.enabledAccounts({product}, assetProp));
    const bool withPublicPools = chance.oneIn(2);
    differ("pools of one product " + filter,
           m_hub.GetSecurityPoolDetail(product, assetProp, trader, symbol, exchange, withPublicPools),
           product.isEmpty() || assetProp.isEmpty()
               ? RecordList()
               : m_model.poolsOf(m_model.accountsOf({product}, {assetProp}),
                                 trader.isEmpty() ? QStringList() : QStringList(trader), symbol, exchange,
                                 withPublicPools),
           withPublicPools);
    const int type = chance.upTo(4);
    differ("pools of " + resource, m_hub.GetSecurityPoolDetailByResourceId(resource, type),
           m_model.poolsOfResource(resource, type));
    differ("usage " + filter, m_hub.GetRealtimePoolDetailList(accounts, traders, symbol, exchange),
           m_model.usageOf(accounts, traders, symbol, exchange));
    differ("sums " + filter, m_hub.GetRealtimeSumListMergeBySymbolExchange(accounts, trader, symbol, exchange),
           m_model.sumsOf(accounts, trader, symbol, exchange), true);
    differ("open positions " + filter, m_hub.GetOpenPositionList(accounts, traders, symbol, exchange),
           m_model.openPositions(accounts, traders, symbol, exchange));
    const QString side = chance.of({"", "normalBuy", "normalSell", "collateralBuy", "collateralSell"});
    differ("own position " + side + ' ' + filter,
           qlonglong(m_hub.GetOpenPositionByAccountAndSymbol(symbol, exchange, side, accounts)),
           m_model.ownPosition(symbol, exchange, side, accounts));
    const qlonglong wanted = 1 + chance.upTo(500);
    for (const bool buys : {true, false})
        differ(QStringLiteral("enough quota for %1 %2").arg(wanted).arg(filter),
               m_hub
                   .CheckSingleOrderData(accounts, symbol, exchange, buys ? "normalBuy" : "normalSell", 10, wanted,
                                         OrderChecks::Quota)
                   .isEmpty(),
               m_model.quota(accounts, symbol, exchange, buys) >= wanted);
    differ("exchanges " + filter, m_hub.GetExchangeListByAccountAndSymbol(symbol, accounts),
           m_model.exchangesOf(symbol, accounts));
    differ("allocatable " + filter, m_hub.GetAllocatableQty2ResourceByTradingAccount(account, symbol, exchange),
           m_model.allocatable(account, symbol, exchange));
    differ("allocatable of products " + filter, m_hub.GetAllocatableQty2Resource(product, assetProp, symbol, exchange),
           m_model.allocatable(product, assetProp, symbol, exchange));
    const bool withT0Symbols = chance.oneIn(2);
    differ("candidates " + filter, m_hub.GetT0ResourceCandidatesList(products, assetProp, withT0Symbols),
           m_model.resourceCandidates(products, assetProp, withT0Symbols), true);
    QMap<QString, QString> productNames;
    for (const QString &enabledProduct : m_model.enabled.keys())
        productNames.insert(enabledProduct, Model::productsToEnable().contains(enabledProduct)
                                                ? "name of " + enabledProduct
                                                : QString());
    differ("T0 products", m_hub.GetT0ProductMap(), productNames);
    const VariantRecord record = m_model.usageOf(accounts, traders, symbol, exchange).value(0);
    differ("key", m_hub.GetRealtimePoolKey(record), ModelRows::usageKey(record));
    compareOrders(chance, accounts, filter);
    differ("profit " + filter, m_hub.GetProfitLossDataList(accounts, trader, symbol, exchange),
           m_model.profitOf(accounts, trader, symbol, exchange));
}

void PictureCheck::compareOrders(Chance &chance, const QStringList &accounts, const QString &filter)
{
    const QString symbol = chance.of({"600000.SH", "300001.SZ", "110001.SH", "00700.HK", ""});
    const QString exchange = chance.of({"SH", "SZ", "HHK", "SZHK", ""});
    const QStringList users = chance.some({"u1", "t2", "none"});
    const QString side = chance.of({"", "buy", "sell"});
    differ("cancelable orders " + filter,
           m_hub.GetCancelableOrderList(accounts, symbol, exchange, users, side, chance.oneIn(2)),
           m_model.cancelable(accounts, symbol, exchange, users, side));

    const auto kind = [&chance] {
        return chance.of(
                   {"600000.SH SH", "600000.SH SH", "300001.SZ SZ", "110001.SH SH", "00700.HK HHK", "none SH", " SH"}) +
               ' ' + chance.of({"normalBuy", "normalSell", "normalBuy", "normalSell", "collateralBuy"}) + ' ';
    };
    const QString oneKind = kind(); // orders of the same kind take from each other
    RecordList orders;
    for (int i = chance.upTo(4); i > 0; --i) {
        const int quantity = chance.oneIn(3) ? chance.upTo(800) : chance.upTo(80) - 2;
        orders.append(Rows::order(chance.some({"A1", "A2", "A3", "A9"}).join(',') + ' ' +
                                  (chance.oneIn(4) ? kind() : oneKind) + QString::number(quantity) + " 10.5"));
    }
    const QString what = "of " + QStringLiteral("%1 orders, the first of ").arg(orders.size()) +
                         orders.value(0).value(Orvane_Fields::Security::symbol).toString();
    RecordList found;
    RecordList expected;
    differ("confirmation " + what, m_hub.GetOrderConfirmMap(orders, found), m_model.confirmation(orders, expected),
           true);
    differ("the rest " + what, found, expected, true);
    found.clear();
    expected.clear();
    using namespace OrderChecks;
    differ("result " + what, m_hub.CheckOrderData(orders, found, Accounts | SymbolAndExchange | Quantity | Quota),
           m_model.check(orders, expected));
    differ("results " + what, found, expected, true);

    bool isKnown = false;
    differ("settings of " + symbol, {m_hub.GetSymbolTradeSettings(symbol, &isKnown)}, {m_model.settings.value(symbol)});
    differ("known settings of " + symbol, isKnown, m_model.settings.contains(symbol));
}
