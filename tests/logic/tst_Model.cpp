#include "LogicTest.h"
#include "Model.h"
#include "RealtimeFields.h"
#include "Tests.h"

#include <cmath>
#include <random>

using namespace Master_Fields::ManualT0;

namespace {

/// Random answers of the server, from few ids, so that they meet.
class Chance
{
public:
    explicit Chance(unsigned seed)
        : m_engine(seed)
    {}

    int upTo(int limit) { return int(m_engine() % unsigned(limit)); }
    bool oneIn(int n) { return upTo(n) == 0; }
    QString of(const QStringList &texts) { return texts.at(upTo(texts.size())); }

    QStringList some(const QStringList &texts)
    {
        QStringList result;
        for (int i = upTo(4); i > 0; --i)
            result.append(of(texts));
        return result;
    }

    QString account() { return of({"A1", "A2", "A3", "A4"}); }
    QString security()
    {
        return of({"600000 SH", "300001 SZ", "110001 SH", "00700 HHK", "00700 SZHK", "999998 SH", "999999 SH"});
    }
    QString trader() { return of({"u1", "t2", "t3", "public", "public", ""}); }
    QVariant quantity() { return oneIn(3) ? QVariant(upTo(400) / 2.0) : QVariant(upTo(200)); }
    QVariant limit() { return oneIn(2) ? QVariant(-1) : quantity(); }

    /// Rows of an answer for one account; few of them belong to another one.
    template <typename Make> RecordList rows(const QString &account, Make make)
    {
        RecordList result;
        for (int i = upTo(7); i > 0; --i)
            result.append(make(oneIn(15) ? this->account() : account));
        return result;
    }

    VariantRecord resource(const QString &account)
    {
        return Rows::resource(QStringLiteral("r%1").arg(upTo(12)), account, security(), quantity());
    }

    VariantRecord pool(const QString &account)
    {
        VariantRecord row = Rows::pool(QStringLiteral("p%1").arg(upTo(16)), account, security(), trader(), quantity(),
                                       QStringLiteral("r%1").arg(upTo(12)));
        if (oneIn(8))
            row.insert(Orvane_Fields::UserAccount::userID, trader());
        if (oneIn(8))
            row.insert(PoolType, upTo(3));
        row.insert(MaxExposureQty, limit());
        row.insert(MaxPendExposureQty, limit());
        return row;
    }

    VariantRecord usage(const QString &account)
    {
        VariantRecord row = Rows::usage(account, of({"u1", "u1", "t2", "t3", ""}), security(),
                                        QStringLiteral("%1").arg(++m_clock / 8 - upTo(4), 8, 10, QLatin1Char('0')));
        for (const QString &field : RealtimeFields::scaledQty()) {
            if (!oneIn(6))
                row.insert(field, quantity());
        }
        for (const QString &field : RealtimeFields::summedAmount())
            row.insert(field, upTo(100000) / 4.0);
        row.insert(DailyBuyTradeFee, upTo(3) / 8.0);
        row.insert(DailySellTradeFee, upTo(3) / 8.0);
        row.insert(PreUnclosedSide, of({"BuyOpen", "SellOpen", "NoOpenPos", ""}));
        row.insert(TransDayProfitOwner, of({"ProfitToOrg", ""}));
        if (oneIn(4))
            row.insert(Orvane_Fields::Security::symbol, "sent"); // the host's symbol counts
        return row;
    }

private:
    std::mt19937 m_engine;
    int m_clock = 100;
};

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

QStringList written(const RecordList &rows, bool inOrder)
{
    QStringList texts;
    for (const VariantRecord &row : rows)
        texts.append(written(row));
    if (!inOrder)
        texts.sort();
    return texts;
}

int stepCount()
{
    const int steps = qEnvironmentVariableIntValue("T0_MODEL_STEPS");
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
    return steps > 0 ? steps : 400;
#else
    return steps > 0 ? steps : 3000;
#endif
}

} // namespace

/// The hub against a model made of plain lists, over random answers, pushes, refreshes and choices.
class ModelTest : public LogicTest
{
    Q_OBJECT

private slots:
    void hubAnswersAsTheModelDoes_data();
    void hubAnswersAsTheModelDoes();

private:
    void step(Chance &chance);
    void answerSomeAccount(Chance &chance);
    void answerSomeUsage(Chance &chance);
    void compareState();
    void compareLookups(Chance &chance);
    void differ(const QString &what, const RecordList &found, const RecordList &expected, bool inOrder = false);
    template <typename T> void differ(const QString &what, const T &found, const T &expected);

    Model model;
    QString lastStep;
    QStringList differences;
};

void ModelTest::hubAnswersAsTheModelDoes_data()
{
    QTest::addColumn<unsigned>("seed");
    const unsigned given = qEnvironmentVariable("T0_MODEL_SEED").toUInt();
    const unsigned first = given ? given : std::random_device()();
    for (unsigned seed = first; seed < first + 4; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void ModelTest::hubAnswersAsTheModelDoes()
{
    QFETCH(unsigned, seed);
    close();
    open(Mode::ByHand, {600000, 600000, 0, 600000});
    model = Model();
    Chance chance(seed);
    for (int type = 0; type <= 6; ++type)
        hub->RefreshDataByType(type); // nothing was started yet
    for (int i = 0; i < stepCount() / 4; ++i) {
        step(chance);
        compareState();
        compareLookups(chance);
        const QString where = QStringLiteral("seed %1, step %2 (%3):\n").arg(seed).arg(i).arg(lastStep);
        QVERIFY2(differences.isEmpty(), qPrintable(where + differences.join('\n')));
    }
    takeAsked();
}

void ModelTest::step(Chance &chance)
{
    const int kind = chance.upTo(44);
    const bool success = kind < 35 ? !chance.oneIn(5) : chance.oneIn(2); // five failures in a row must be met
    const QString code = success ? Rows::Success : chance.of({"fail", "timeout"});
    if (kind < 20) {
        answerSomeAccount(chance);
    } else if (kind < 30) {
        answerSomeUsage(chance);
    } else if (kind < 32) {
        const QStringList accounts = chance.some({"A1", "A2", "A3", "A9"});
        lastStep = "choose " + accounts.join(',');
        hub->SetCurrentTradeAccount(accounts);
        model.choose(accounts);
    } else if (kind < 35) {
        const int type = chance.upTo(7);
        lastStep = QStringLiteral("refresh %1").arg(type);
        hub->RefreshDataByType(type);
        model.refreshType(type);
    } else if (kind < 38) {
        RecordList rows;
        for (int i = chance.upTo(6); i > 0; --i) {
            const QString account = chance.account();
            rows.append(Rows::product(chance.oneIn(9) ? "P7" : account == "A4" ? "P2" : "P1", account));
        }
        lastStep = "products " + code;
        answerProducts(rows, code);
        model.answerProducts(success, rows);
    } else if (kind < 40) {
        lastStep = "InitData";
        hub->InitData();
        model.initData();
    } else if (kind < 42) {
        const QStringList accounts = chance.some({"A1", "A2", "A3"});
        lastStep = "priority " + code;
        answerPriority(accounts, code);
        model.answerPriority(success, accounts);
    } else {
        RecordList rows;
        for (const QString &id : chance.some({"u1", "t2", "t3", "t4"}))
            rows.append(Rows::trader(id, id + QString::number(chance.upTo(3))));
        lastStep = "traders " + code;
        const bool isManager = chance.oneIn(2);
        answerTraders(rows, isManager, code);
        model.answerTraders(success, rows, isManager);
    }
}

void ModelTest::answerSomeAccount(Chance &chance)
{
    const QString account = chance.account();
    const bool success = !chance.oneIn(5);
    const QString code = success ? Rows::Success : Rows::Fail;
    if (chance.oneIn(2)) {
        lastStep = "resources " + account + ' ' + code;
        const bool cover = !chance.oneIn(3);
        const RecordList rows = chance.rows(account, [&](const QString &of) { return chance.resource(of); });
        answerResources(account, rows, code, cover);
        model.answerResources(account, success, rows, cover);
        return;
    }
    lastStep = "pools " + account + ' ' + code;
    const RecordList rows = chance.rows(account, [&](const QString &of) { return chance.pool(of); });
    answerPools(account, rows, code);
    model.answerPools(account, success, rows);
    if (!chance.oneIn(3))
        return;
    answerPools(account, rows, code); // the same again: no news, where it is a later answer both times
    model.answerPools(account, success, rows);
}

void ModelTest::answerSomeUsage(Chance &chance)
{
    const bool loading = model.states[Model::Usage] == Model::Loading;
    if (!chance.oneIn(3)) {
        const VariantRecord row = chance.usage(chance.account());
        lastStep = "push " + written(row);
        push(row);
        model.push(row);
        return;
    }
    const bool success = loading || !chance.oneIn(5); // a failed first load waits for a timer
    lastStep = QStringLiteral("usage %1").arg(success);
    const RecordList rows = chance.rows(chance.account(), [&](const QString &of) { return chance.usage(of); });
    answerUsage(rows, success ? Rows::Success : Rows::Fail);
    model.answerUsage(success, rows);
}

void ModelTest::differ(const QString &what, const RecordList &found, const RecordList &expected, bool inOrder)
{
    const QStringList hubs = written(found, inOrder);
    const QStringList models = written(expected, inOrder);
    if (hubs != models)
        differences.append(what + "\n hub:\n" + hubs.join('\n') + "\n model:\n" + models.join('\n'));
}

template <typename T> void ModelTest::differ(const QString &what, const T &found, const T &expected)
{
    if (found == expected)
        return;
    QString difference;
    QDebug(&difference) << what << "\n hub:  " << found << "\n model:" << expected;
    differences.append(difference);
}

void ModelTest::compareState()
{
    differences = HubProbe::indexFaults(*hub);
    QStringList asked = takeAsked();
    asked.sort();
    model.asked.sort();
    differ("asked", asked, std::exchange(model.asked, {}));
    differ("events", takeEvents(), std::exchange(model.events, {}));
    for (int type = 0; type <= 6; ++type)
        differ(QStringLiteral("state %1").arg(type), int(hub->GetInitStateByType(type)), int(model.states[type]));
    differ("accounts", hub->GetAllT0TradingAccountList(), model.accounts);
    differ("products", hub->GetAllT0ProductAccount(), model.enabled);
    differ("traders", hub->GetAllT0TraderId(), model.traderNames);
    differ("own accounts", hub->GetAllT0TradingAccountListByCurUser(), model.ownAccounts);
    differ("chosen", hub->GetCurrentTradeAccount(), model.chosen);
    differ("symbols", hub->GetCurrentTradableSymbolList(), model.tradableSymbols);
    differ("all resources", hub->GetAllResourceList(), model.allResources());
    differ("all pools", hub->GetAllSecurityPoolList(), model.allPools());
}

void ModelTest::compareLookups(Chance &chance)
{
    for (int i = 0; i < 6; ++i) {
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
            QStringList{accounts.join(','), traders.join(','), symbol, exchange, products.join(','), assetProp}.join(
                '/');

        differ("resources " + filter, hub->GetResourceByProductAccount(products, assetProp, symbol, exchange, traders),
               model.resourcesOf(products, assetProp, symbol, exchange, traders));
        for (bool withPublic : {false, true}) {
            differ("pools " + filter + (withPublic ? " with public" : ""),
                   hub->GetSecurityPoolDetailListByTradingList(accounts, traders, symbol, exchange, withPublic),
                   model.poolsOf(accounts, traders, symbol, exchange, withPublic), withPublic);
            differ("pools of products " + filter,
                   hub->GetSecurityPoolDetail(products, properties, traders, symbol, exchange, withPublic),
                   model.poolsOf(model.accountsOf(products, properties), traders, symbol, exchange, withPublic),
                   withPublic);
        }
        const QString account = accounts.value(0);
        const RecordList own = model.poolsOf({account}, {trader}, symbol, exchange, false);
        differ("one trader's pools " + filter,
               hub->GetSecurityPoolDetailListByTrading(account, trader, symbol, exchange), own);
        differ("one trader's first pool " + filter,
               {hub->GetSecurityPoolDetailByTrading(account, trader, symbol, exchange)}, {own.value(0)});
        const QStringList ids{QStringLiteral("p%1").arg(chance.upTo(16)), "none", "p3", "p1", "p3"};
        differ("pools by id", hub->GetSecurityPoolDetailByIdList(ids), model.poolsById(ids), true);
        differ("pool by id", {hub->GetSecurityPoolDetailById(ids.first())}, {model.poolsById({ids.first()}).value(0)});
        differ("resource " + resource, {hub->GetResourceDetailById(resource)}, {model.resource(resource).value(0)});
        differ("usage record " + filter, {hub->GetRealtimePoolDetail(account, trader, symbol, exchange)},
               {model.usageDetail(account, trader, symbol, exchange)});
        differ("name of " + trader, hub->GetTraderNameByTraderId(trader), model.nameOf(trader));
        const QString product = products.value(0);
        const QStringList enabled = model.enabled.value(product);
        differ("properties of " + product, hub->GetProductAssetPropList(product), enabled);
        differ("property of " + product, hub->IsProductAndAssetPropInT0(product, assetProp),
               enabled.contains(assetProp));
        differ("accounts of " + product, hub->GetTradingAccountListByProductAndAssetProp(product, assetProp),
               model.enabledAccounts({product}, assetProp));
        differ("pools of one product " + filter,
               hub->GetSecurityPoolDetail(product, assetProp, trader, symbol, exchange, true),
               product.isEmpty() || assetProp.isEmpty()
                   ? RecordList()
                   : model.poolsOf(model.accountsOf({product}, {assetProp}),
                                   trader.isEmpty() ? QStringList() : QStringList(trader), symbol, exchange, true),
               true);
        const int type = chance.upTo(4);
        differ("pools of " + resource, hub->GetSecurityPoolDetailByResourceId(resource, type),
               model.poolsOfResource(resource, type));
        differ("usage " + filter, hub->GetRealtimePoolDetailList(accounts, traders, symbol, exchange),
               model.usageOf(accounts, traders, symbol, exchange));
        differ("sums " + filter, hub->GetRealtimeSumListMergeBySymbolExchange(accounts, trader, symbol, exchange),
               model.sumsOf(accounts, trader, symbol, exchange), true);
        differ("profit " + filter, hub->GetProfitLossDataList(accounts, trader, symbol, exchange),
               model.profitOf(accounts, trader, symbol, exchange));
    }
}

T0_REGISTER_TEST(ModelTest)

#include "tst_Model.moc"
