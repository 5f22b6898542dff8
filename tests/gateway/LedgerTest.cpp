#include "Ledger.h"
#include "Tests.h"

#include <QtTest/QtTest>

#include <rapidcheck.h>

using namespace Ledger;

namespace {

QVector<qint64> numbers(const Limits &limits)
{
    return {limits.dailyBuy, limits.dailySell, limits.closeBuy, limits.closeSell};
}

/// A state that trading can lead to: nothing was closed beyond the leg, live closing orders fit in it.
rc::Gen<TraderUse> anyTrader()
{
    return rc::gen::exec([] {
        const auto quantity = [](qint64 most) { return *rc::gen::inRange<qint64>(0, most + 1); };
        TraderUse use;
        use.privateQty = quantity(2000);
        use.dailyBought = quantity(1500);
        use.dailySold = quantity(1500);
        use.live.buyDaily = quantity(500);
        use.live.sellDaily = quantity(500);
        use.leg.side = *rc::gen::element(Side::None, Side::BuyOpen, Side::SellOpen);
        const qint64 carried = quantity(1000);
        const qint64 closed = quantity(carried);
        if (use.leg.side == Side::BuyOpen) {
            use.leg.bought = carried;
            use.leg.sold = closed;
            use.live.sellPre = quantity(carried - closed);
        } else if (use.leg.side == Side::SellOpen) {
            use.leg.sold = carried;
            use.leg.bought = closed;
            use.live.buyPre = quantity(carried - closed);
        }
        return use;
    });
}

struct Scene {
    Terms terms;
    QVector<TraderUse> traders;
};

Scene anyScene()
{
    Scene scene;
    scene.terms.publicQty = *rc::gen::inRange<qint64>(0, 3000);
    scene.terms.t0 = *rc::gen::arbitrary<bool>();
    scene.terms.enabled = true;
    const int count = *rc::gen::inRange(1, 6);
    for (int i = 0; i < count; ++i)
        scene.traders.append(*anyTrader());
    return scene;
}

} // namespace

class LedgerTest : public QObject
{
    Q_OBJECT

private slots:
    void aDayOfTwoTraders_data();
    void aDayOfTwoTraders();
    void tPlus0TradesBack();
    void disabledAccountsHaveNoLimits();
    void whatIsBoughtIsMissingAfterwards();
    void onlyThePublicPartIsShared();
};

void LedgerTest::aDayOfTwoTraders_data()
{
    QTest::addColumn<QVector<qint64>>("state"); // bought, sold, live to sell, leg sold, leg bought
    QTest::addColumn<QVector<qint64>>("first");
    QTest::addColumn<QVector<qint64>>("second");
    const auto row = [](const char *name, const QVector<qint64> &state, const QVector<qint64> &first,
                        const QVector<qint64> &second) { QTest::newRow(name) << state << first << second; };
    using Q = QVector<qint64>;
    row("start", {0, 0, 0, 0, 0}, Q{1500, 1500, 0, 0}, Q{500, 500, 0, 0});
    row("1200 in the market to sell", {0, 0, 1200, 0, 0}, Q{1500, 300, 0, 0}, Q{500, 300, 0, 0});
    row("1200 sold", {0, 1200, 0, 0, 0}, Q{1500, 300, 0, 0}, Q{500, 300, 0, 0});
    row("1000 bought back", {1000, 1200, 0, 0, 0}, Q{500, 300, 0, 0}, Q{500, 300, 0, 0});
    row("next day, short of 200", {0, 0, 0, 200, 0}, Q{1500, 1300, 200, 0}, Q{500, 500, 0, 0});
    row("the short closed, its shares sell tomorrow", {0, 0, 0, 200, 200}, Q{1500, 1300, 0, 0}, Q{500, 500, 0, 0});
}

void LedgerTest::aDayOfTwoTraders()
{
    QFETCH(QVector<qint64>, state);
    TraderUse one;
    one.privateQty = 1000;
    one.dailyBought = state[0];
    one.dailySold = state[1];
    one.live.sellDaily = state[2];
    one.leg = {state[3] > 0 ? Side::SellOpen : Side::None, state[4], state[3], 0, 0};
    const QVector<Limits> result = limits({500, false, true}, {one, TraderUse()});
    QTEST(numbers(result[0]), "first");
    QTEST(numbers(result[1]), "second");
    QCOMPARE(result[0].poolTotal, 1500);
    QCOMPARE(result[1].poolTotal, 500);
}

void LedgerTest::tPlus0TradesBack()
{
    TraderUse use;
    use.privateQty = 1000;
    use.dailySold = 400;
    use.leg = {Side::BuyOpen, 300, 100, 0, 0};
    use.live.sellPre = 50;
    // 200 of the long leg are left: they take from buying; selling 400 gives it back.
    QCOMPARE(numbers(limits({0, true, true}, {use})[0]), (QVector<qint64>{1200, 600, 0, 150}));
    // Without T+0 neither changes what may be bought.
    QCOMPARE(numbers(limits({0, false, true}, {use})[0]), (QVector<qint64>{1000, 600, 0, 150}));
}

void LedgerTest::disabledAccountsHaveNoLimits()
{
    QVERIFY(rc::check([] {
        Scene scene = anyScene();
        scene.terms.enabled = false;
        const QVector<Limits> result = limits(scene.terms, scene.traders);
        for (int i = 0; i < result.size(); ++i) {
            RC_ASSERT(numbers(result[i]) == QVector<qint64>(4, 0));
            RC_ASSERT(result[i].poolTotal == scene.traders[i].privateQty + scene.terms.publicQty);
        }
    }));
}

void LedgerTest::whatIsBoughtIsMissingAfterwards()
{
    QVERIFY(rc::check([] {
        Scene scene = anyScene();
        const QVector<Limits> before = limits(scene.terms, scene.traders);
        for (const Limits &one : before)
            for (const qint64 quantity : numbers(one))
                RC_ASSERT(quantity >= 0);

        const int buyer = *rc::gen::inRange(0, scene.traders.size());
        const qint64 quantity = *rc::gen::inRange<qint64>(0, before[buyer].dailyBuy + 1);
        const bool live = *rc::gen::arbitrary<bool>();
        (live ? scene.traders[buyer].live.buyDaily : scene.traders[buyer].dailyBought) += quantity;
        const QVector<Limits> after = limits(scene.terms, scene.traders);
        RC_ASSERT(after[buyer].dailyBuy == before[buyer].dailyBuy - quantity);
        // Only what was really bought can be sold again, and only where the day allows it.
        const bool maySellBack = scene.terms.t0 && !live;
        const qint64 sellable = after[buyer].dailySell - before[buyer].dailySell;
        RC_ASSERT(sellable >= 0);
        RC_ASSERT((maySellBack || sellable == 0));
        for (int i = 0; i < after.size(); ++i)
            RC_ASSERT(after[i].dailyBuy <= before[i].dailyBuy);
    }));
}

void LedgerTest::onlyThePublicPartIsShared()
{
    QVERIFY(rc::check([] {
        const Scene scene = anyScene();
        Terms withoutPublic = scene.terms;
        withoutPublic.publicQty = 0;
        const QVector<Limits> all = limits(scene.terms, scene.traders);
        const QVector<Limits> own = limits(withoutPublic, scene.traders);
        for (int i = 0; i < all.size(); ++i) {
            // The same public quantity is left to everybody, and nobody's own part depends on the others.
            RC_ASSERT(all[i].dailyBuy - own[i].dailyBuy == all[0].dailyBuy - own[0].dailyBuy);
            RC_ASSERT(all[i].dailySell - own[i].dailySell == all[0].dailySell - own[0].dailySell);
            RC_ASSERT(own[i] == limits(withoutPublic, {scene.traders[i]})[0]);
        }
    }));
}

T0_REGISTER_TEST(LedgerTest)
#include "LedgerTest.moc"
