#include "DisplayUnits.h"
#include "ManualT0Logic.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "ReferencePools.h"
#include "ReferenceUsage.h"
#include "Tests.h"

#include <QtTest/QtTest>

#include <algorithm>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::UserAccount::tradingAccount;
using Records::Filter;
using Records::Keys;

namespace {

constexpr int HeldRecords = 3000;
constexpr int Questions = 200;
constexpr int EveryCheck = 31;

/// The keys of a hub whose accounts and traders often share a symbol, with public pools beside private ones.
QVector<Keys> crowded()
{
    QVector<Keys> keys = Records::keys(HeldRecords);
    const int given = keys.size();
    for (int i = 0; i < given; ++i) {
        Keys other = keys.at(i);
        if (other.trader == ManualT0Logic::PublicTrader || i % 3 == 2)
            continue;
        other.trader = i % 3 ? ManualT0Logic::PublicTrader : Records::loginTrader();
        other.poolId += QLatin1String("other");
        if (keys.at(i).trader != other.trader)
            keys.append(other);
    }
    return keys;
}

/// Rows in an order of their own: an answer has none. Equal rows print alike, whatever the type of a number.
QStringList sorted(const RecordList &rows)
{
    QStringList lines;
    for (const VariantRecord &row : rows) {
        QString line;
        for (auto field = row.cbegin(); field != row.cend(); ++field)
            line += field.key() + QLatin1Char('=') + field->toString() + QLatin1Char(';');
        lines.append(line);
    }
    lines.sort();
    return lines;
}

} // namespace

/// What the library is measured against gives the library's results.
class ReferenceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void peersFindWhatTheLibraryFinds_data();
    void peersFindWhatTheLibraryFinds();
    void publicPoolsAreMergedAlike();
    void pushesAndWhatIsComputedOfThemAreAlike();
    void answersAreTakenAlike();
    void resourcesAreSummedAlike();
    void ordersAreCheckedAlike();

private:
    Filter randomFilter(const QVector<Keys> &keys);
    QStringList some(QStringList texts, int most, const QString &wanted);
    bool oneIn(int times) { return m_random() % unsigned(times) == 0; }

    std::unique_ptr<HostSession> m_session;
    std::mt19937 m_random{11};
};
T0_REGISTER_TEST(ReferenceTest)

void ReferenceTest::init()
{
    ScriptedChannel *channel = nullptr;
    m_session = Records::reference().open(channel);
}

void ReferenceTest::cleanup()
{
    m_session.reset();
}

/// wanted and a few more.
QStringList ReferenceTest::some(QStringList texts, int most, const QString &wanted)
{
    std::shuffle(texts.begin(), texts.end(), m_random);
    texts = texts.mid(0, int(m_random() % unsigned(most)));
    texts.removeAll(wanted);
    return texts << wanted;
}

Filter ReferenceTest::randomFilter(const QVector<Keys> &keys)
{
    const Keys &wanted = keys.at(int(m_random() % unsigned(keys.size())));
    Filter filter{some(Records::accounts(), 30, wanted.account), {}, {}, {}};
    if (!oneIn(3))
        filter.traders = some(Records::traders(), 50, wanted.trader);
    if (!oneIn(3))
        filter.symbol = wanted.symbol;
    if (!oneIn(3))
        filter.exchange = wanted.exchange;
    return filter;
}

void ReferenceTest::peersFindWhatTheLibraryFinds_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<int>("side");
    for (const Family family : {Family::Usage, Family::Pools}) {
        for (const Side side : AllSides)
            if (side != Side::Library)
                QTest::addRow("%s %s", family == Family::Usage ? "usage" : "pools", nameOf(side))
                    << int(family) << int(side);
    }
}

void ReferenceTest::peersFindWhatTheLibraryFinds()
{
    QFETCH(int, family);
    QFETCH(int, side);
    BenchHub hub(Family(family), Records::keys(HeldRecords));
    const std::unique_ptr<Store> library = makeStore(Side::Library, Family(family), hub);
    const std::unique_ptr<Store> peer = makeStore(Side(side), Family(family), hub);
    int found = 0;
    for (int i = 0; i < Questions; ++i) {
        Keys keys = hub.randomKeys(1).first();
        if (oneIn(2))
            keys.trader = Records::traders().at(i % Records::traders().size());
        QCOMPARE(sorted({peer->one(keys)}), sorted({library->one(keys)}));
        const Filter filter = randomFilter(hub.keys());
        const QStringList expected = sorted(library->list(filter));
        QCOMPARE(sorted(peer->list(filter)), expected);
        found += expected.size();
    }
    QVERIFY(found > Questions);
}

void ReferenceTest::publicPoolsAreMergedAlike()
{
    BenchHub hub(Family::Pools, crowded());
    ReferencePools reference(hub.hub().GetAllT0TraderId());
    reference.hold(hub.records());
    bool merged = false;
    for (int i = 0; i < Questions; ++i) {
        const Filter filter = randomFilter(hub.keys());
        const RecordList pools = hub.hub().GetSecurityPoolDetailListByTradingList(filter.accounts, filter.traders,
                                                                                  filter.symbol, filter.exchange, true);
        QCOMPARE(sorted(reference.list(filter, true)), sorted(pools));
        merged = merged || std::any_of(pools.cbegin(), pools.cend(),
                                       [](const VariantRecord &pool) { return pool.contains(PublicPoolQty); });
    }
    QVERIFY(merged);
}

void ReferenceTest::pushesAndWhatIsComputedOfThemAreAlike()
{
    BenchHub hub(Family::Usage, crowded());
    ReferenceUsage reference;
    RecordList rows;
    for (const Keys &keys : hub.keys())
        rows.append(Records::usage(keys, 1000, rows.size() + 1));
    reference.takeFirst(rows);
    RecordList pushes = hub.newPushes(Questions);
    std::shuffle(pushes.begin(), pushes.end(), m_random); // some are older than what is held by then
    for (const VariantRecord &push : pushes) {
        hub.onItsThread([&] { hub.push(push); });
        reference.push(push, oneIn(2) ? ReferenceDerive::Names::Prebuilt : ReferenceDerive::Names::Concatenated);
    }
    for (const VariantRecord &push : pushes) {
        const Filter exactly{{text(push, tradingAccount)}, {text(push, T0TraderId)}, {}, {}};
        QCOMPARE(sorted(reference.list(exactly)),
                 sorted(hub.hub().GetRealtimePoolDetailList(exactly.accounts, exactly.traders, {}, {})));
    }
    // The fields that a sum does not add are those of any of its records.
    const auto added = [](RecordList sums) {
        for (VariantRecord &sum : sums)
            for (const QString &field :
                 {tradingAccount, Master_Fields::System::ModifyTime, OpenPosQty, OpenPosSide, OpenAvgPrice, PreOpenQty,
                  DailyOpenQty, RtRealBoughtQty, RtRealSoldQty, RtRealBoughtAmount, RtRealSoldAmount})
                sum.remove(field);
        return sorted(sums);
    };
    for (int i = 0; i < Questions; ++i) {
        const Filter asked = randomFilter(hub.keys());
        const QString trader = asked.traders.value(0, Records::loginTrader());
        const Filter filter{asked.accounts, {trader}, asked.symbol, asked.exchange};
        const ManualT0LogicPrivate &library = hub.hub();
        QCOMPARE(sorted(reference.profits(filter)),
                 sorted(library.GetProfitLossDataList(filter.accounts, trader, filter.symbol, filter.exchange)));
        QCOMPARE(added(reference.sums(filter)), added(library.GetRealtimeSumListMergeBySymbolExchange(
                                                    filter.accounts, trader, filter.symbol, filter.exchange)));
    }
}

void ReferenceTest::answersAreTakenAlike()
{
    BenchHub hub(Family::Pools, Records::keys(HeldRecords));
    ReferencePools reference(hub.hub().GetAllT0TraderId());
    RecordList loaded;
    for (const Keys &keys : hub.keys())
        loaded.append(Records::pool(keys, 1000));
    reference.takeFirst(loaded);
    const Filter every{Records::accounts(), {}, {}, {}};
    Records::PoolAnswers answers;
    for (int answer = 0; answer < 20; ++answer) {
        RecordList rows = answers.next(int(m_random() % 50));
        while (!rows.isEmpty() && oneIn(2)) // some are gone
            rows.removeAt(int(m_random() % unsigned(rows.size())));
        hub.onItsThread([&] { hub.answerPools(Records::answeredAccount(), rows); });
        reference.takeLater(Records::answeredAccount(), rows);
        const QString account = Records::answeredAccount();
        const Filter ofAccount{{account}, {}, {}, {}};
        QCOMPARE(sorted(reference.list(ofAccount)),
                 sorted(hub.hub().GetSecurityPoolDetailListByTradingList({account}, {}, {}, {}, false)));
    }
    QCOMPARE(sorted(reference.list(every)).size(), hub.hub().GetAllSecurityPoolList().size());
}

void ReferenceTest::resourcesAreSummedAlike()
{
    BenchHub hub(Family::Resources, Records::groupedByResource(crowded()));
    ReferencePools reference(hub.hub().GetAllT0TraderId());
    reference.hold(hub.records());
    RecordList resources;
    const RecordList packed = hub.hub().GetAllResourceList();
    for (const VariantRecord &row : packed)
        resources.append(hub.hub().GetResourceDetailById(text(row, ResourceId)));
    reference.holdResources(resources);
    QVERIFY(packed.size() > 100);
    QCOMPARE(sorted(reference.resources()), sorted(packed));
}

void ReferenceTest::ordersAreCheckedAlike()
{
    using namespace Master_Values::SideUnion;
    BenchHub hub(Family::Usage, crowded());
    const std::unique_ptr<Store> store = makeStore(Side::Reference, Family::Usage, hub);
    const auto &reference = static_cast<const ReferenceUsage &>(*store);
    RecordList orders;
    for (const Keys &keys : hub.randomKeys(Questions)) {
        const bool isOdd = oneIn(8);
        orders.append({{tradingAccount, some(Records::accounts(), 10, keys.account)},
                       {Orvane_Fields::Security::symbol, keys.symbol},
                       {Orvane_Fields::UserAccount::securityExchange, oneIn(8) ? QString() : keys.exchange},
                       {Master_Fields::Security::SideUnion, oneIn(8)   ? collateralBuy
                                                            : oneIn(2) ? normalBuy
                                                                       : normalSell},
                       {Orvane_Fields::Security::price, isOdd ? 10.005 : 10.07},
                       {Orvane_Fields::Security::orderQty, int(m_random() % 20000)}});
    }
    RecordList expected;
    RecordList results;
    const QString code = hub.hub().CheckOrderData(orders, expected, EveryCheck);
    QCOMPARE(reference.checkOrders(orders, Records::loginTrader(), results, EveryCheck), code);
    QCOMPARE(results, expected);
    QCOMPARE(code, Master_Values::RequestExeStatus::ParticalFail);
}

#include "ReferenceTest.moc"
