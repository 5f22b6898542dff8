#include "Ledger.h"
#include "Tests.h"

#include <QtTest/QtTest>

#include <rapidcheck.h>

#include <random>

using namespace Ledger;

Q_DECLARE_METATYPE(Ledger::Refusal)

namespace {

/// Acceptable in every respect that a test does not change.
Order anyOrder(bool buy, qint64 quantity)
{
    Order order;
    order.buy = buy;
    order.quantity = quantity;
    order.maxQty = 1'000'000;
    return order;
}

QVector<qint64> numbers(const Limits &limits)
{
    return {limits.dailyBuy, limits.dailySell, limits.closeBuy, limits.closeSell};
}

/// Random trading of one security of one account.
class Market
{
public:
    Market(quint64 seed, bool t0)
        : m_random(seed)
    {
        picture.terms = {below(3000), t0, true};
        picture.traders.resize(int(1 + below(4)));
        for (TraderUse &use : picture.traders)
            use.privateQty = below(3) * below(1000);
        picture.stock.quantity = 5000 + below(5000);
        picture.stock.tradeable = picture.stock.quantity - below(2000);
        picture.stock.margin = below(2) * below(500);
        picture.stockWhenFlat = picture.stock.quantity + picture.stock.margin;
    }

    void event()
    {
        const qint64 dice = below(100);
        if (dice < 45)
            place();
        else if (dice < 85 && !picture.orders.isEmpty())
            trade(int(below(picture.orders.size())));
        else if (dice < 95 && !picture.orders.isEmpty())
            cancel(int(below(picture.orders.size())));
        else if (dice < 98)
            changePools();
        else if (below(5) == 0)
            night();
    }

    Picture picture;

private:
    qint64 below(qint64 end) { return qint64(m_random() % quint64(end)); }

    void place()
    {
        const int trader = int(below(picture.traders.size()));
        Order order = anyOrder(below(2) == 0, 1 + below(1200));
        const QVector<TraderUse> before = picture.traders;
        const Limits had = limits(picture.terms, before).at(trader);
        const Acceptance answer = accept(picture.terms, picture.stock, picture.traders, trader, order);
        if (answer.refusal != Refusal::None) {
            RC_ASSERT(limits(picture.terms, picture.traders) == limits(picture.terms, before));
            return;
        }
        const Limits has = limits(picture.terms, picture.traders).at(trader);
        RC_ASSERT(answer.parts.total() == order.quantity);
        RC_ASSERT((order.buy ? had.dailyBuy + had.closeBuy - has.dailyBuy - has.closeBuy
                             : had.dailySell + had.closeSell - has.dailySell - has.closeSell) == order.quantity);
        picture.orders.append({trader, order.buy, answer.parts});
    }

    void trade(int at)
    {
        Picture::LiveOrder &order = picture.orders[at];
        const qint64 quantity = 1 + below(order.open.total());
        const double price = double(900 + below(200)) / 100;
        fill(picture.traders[order.trader], picture.stock, picture.terms.t0, order.buy, order.open, quantity, price);
        if (order.open.total() == 0)
            picture.orders.remove(at);
    }

    void cancel(int at)
    {
        const Picture::LiveOrder order = picture.orders.at(at);
        release(picture.traders[order.trader], order.buy, order.open);
        picture.orders.remove(at);
    }

    void changePools()
    {
        if (below(2) == 0)
            picture.terms.publicQty = below(3000);
        else
            picture.traders[int(below(picture.traders.size()))].privateQty = below(2000);
        const PublicUse used = publicUse(picture.terms, picture.traders);
        picture.overuse = {qMax<qint64>(0, used.toBuy - picture.terms.publicQty),
                           qMax<qint64>(0, used.toSell - picture.terms.publicQty)};
    }

    void night()
    {
        picture.orders.clear();
        dayChange(picture.stock);
        for (TraderUse &use : picture.traders) {
            const qint64 net = openPosition(use);
            dayChange(use, {0.0005, 0.001});
            RC_ASSERT(openPosition(use) == net);
        }
    }

    std::mt19937_64 m_random;
};

} // namespace

class LedgerTest : public QObject
{
    Q_OBJECT

private slots:
    void aDayOfTwoTraders();
    void randomTrading_data();
    void randomTrading();
    void tPlus0TradesBack();
    void disabledAccountsHaveNoLimits();
    void refusals_data();
    void refusals();
    void borrowedStockIsSoldLast();
};

void LedgerTest::aDayOfTwoTraders()
{
    const Terms terms{500, false, true};
    const Fees fees{0.0005, 0.001};
    Stock stock{5000, 5000, 0};
    QVector<TraderUse> traders(2);
    traders[0].privateQty = 1000;
    using Q = QVector<qint64>;
    const auto check = [&](const Q &one, const Q &other) {
        const QVector<Limits> all = limits(terms, traders);
        return numbers(all[0]) == one && numbers(all[1]) == other && all[0].poolTotal == 1500 &&
               all[1].poolTotal == 500;
    };
    const auto order = [&](bool buy, qint64 quantity) {
        return accept(terms, stock, traders, 0, anyOrder(buy, quantity)).parts;
    };
    const auto trade = [&](bool buy, Parts parts, double price) {
        fill(traders[0], stock, terms.t0, buy, parts, parts.total(), price);
    };
    QVERIFY(check({1500, 1500, 0, 0}, {500, 500, 0, 0}));
    const Parts sold = order(false, 1200);
    QVERIFY(check({1500, 300, 0, 0}, {500, 300, 0, 0}));
    trade(false, sold, 10.00);
    QVERIFY(check({1500, 300, 0, 0}, {500, 300, 0, 0}));
    QCOMPARE(traders[0].dailySold, 1200);
    QCOMPARE(traders[0].dailySoldAmount, 12000.0);
    trade(true, order(true, 1000), 9.90);
    QVERIFY(check({500, 300, 0, 0}, {500, 300, 0, 0}));
    QCOMPARE(openPosition(traders[0]), -200);

    for (TraderUse &use : traders)
        dayChange(use, fees);
    QCOMPARE(stock.tradeable, 3800);
    dayChange(stock);
    QCOMPARE(stock.tradeable, 4800);
    QVERIFY(check({1500, 1300, 200, 0}, {500, 500, 0, 0}));
    QCOMPARE(traders[0].leg.side, Side::SellOpen);
    QCOMPARE(traders[0].leg.sold, 200);
    QCOMPARE(traders[0].leg.soldAmount, 1998.0);
    Parts both = order(true, 300);
    for (qint64 dailyBought : {0, 100}) { // the leg is closed first
        fill(traders[0], stock, terms.t0, true, both, 150, 9.80);
        QCOMPARE(traders[0].dailyBought, dailyBought);
    }
    // The shares bought back sell tomorrow: the sell limit of the day stays.
    QVERIFY(check({1400, 1300, 0, 0}, {500, 500, 0, 0}));
    QCOMPARE(traders[0].leg.boughtAmount, 1960.0);
    QCOMPARE(traders[0].leg.side, Side::SellOpen);
}

void LedgerTest::randomTrading_data()
{
    QTest::addColumn<bool>("t0");
    QTest::newRow("sold tomorrow") << false;
    QTest::newRow("sold the same day") << true;
}

void LedgerTest::randomTrading()
{
    QFETCH(bool, t0);
    QVERIFY(rc::check([t0](quint64 seed) {
        Market market(seed, t0);
        for (int i = 0; i < 200; ++i) {
            market.event();
            const std::string wrong = faults(market.picture).toStdString();
            RC_ASSERT(wrong == "");
        }
    }));
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
    TraderUse use;
    use.privateQty = 1000;
    use.leg = {Side::BuyOpen, 300, 0, 3000, 0};
    const Limits none = limits({500, true, false}, {use})[0];
    QCOMPARE(numbers(none), QVector<qint64>(4, 0));
    QCOMPARE(none.poolTotal, 1500);
}

void LedgerTest::refusals_data()
{
    QTest::addColumn<qint64>("quantity"); // below 0: sells
    QTest::addColumn<qint64>("open");     // net of the trader's day
    QTest::addColumn<qint64>("liveSells");
    QTest::addColumn<Refusal>("refusal");
    const auto row = [](const char *name, qint64 quantity, qint64 open, qint64 liveSells, Refusal refusal) {
        QTest::newRow(name) << quantity << open << liveSells << refusal;
    };
    row("an odd buy", 250, 0, 0, Refusal::OffStep);
    row("a buy below the minimum", 100, 0, 0, Refusal::BelowMinimum);
    row("a sell has no minimum", -100, 0, 0, Refusal::None);
    row("above the maximum of an order", 2100, 0, 0, Refusal::AboveMaximum);
    row("an odd sell that leaves the stock odd", -150, 0, 0, Refusal::OffStep);
    row("the odd lot goes with a round one", -237, 0, 0, Refusal::None);
    row("the odd lot goes once only", -237, 0, 37, Refusal::OffStep);
    row("more than the limits", 1600, 0, 0, Refusal::AboveLimit);
    row("more than the position may be", 700, 0, 0, Refusal::Exposure);
    row("as much as the position may be", 600, 0, 0, Refusal::None);
    row("more than live orders leave of it", -500, 0, 400, Refusal::PendingExposure);
    row("back to flat from above the limit", -900, 900, 0, Refusal::None);
    row("nearer to flat from above the limit", -200, 900, 0, Refusal::None);
    row("through flat and too far", -1600, 900, 0, Refusal::Exposure);
    row("nearer to flat beside live orders that close it already", -900, 900, 900, Refusal::NotSellable);
    row("nearer to flat, and through it with the live orders", -100, 900, 800, Refusal::None);
    row("more than can be sold", -1100, 1100, 0, Refusal::NotSellable);
}

void LedgerTest::refusals()
{
    QFETCH(qint64, quantity);
    QFETCH(qint64, open);
    QFETCH(qint64, liveSells);
    Order order = anyOrder(quantity > 0, qAbs(quantity));
    order.step = 100;
    order.minQty = 200;
    order.maxQty = 2000;
    order.maxExposure = 600;
    order.maxPendExposure = 800;
    QVector<TraderUse> traders(1);
    traders[0].privateQty = 1500 + open;
    traders[0].dailyBought = open;
    traders[0].live.sellDaily = liveSells;
    const Stock stock{1037, 937, 100};
    const Acceptance answer = accept({0, false, true}, stock, traders, 0, order);
    QTEST(answer.refusal, "refusal");
}

void LedgerTest::borrowedStockIsSoldLast()
{
    TraderUse use;
    use.live.sellDaily = 700;
    Stock stock{900, 500, 300};
    Parts open{0, 700};
    fill(use, stock, false, false, open, 700, 10);
    QCOMPARE((QVector<qint64>{stock.quantity, stock.tradeable, stock.margin}), (QVector<qint64>{400, 0, 100}));
}

T0_REGISTER_TEST(LedgerTest)
#include "LedgerTest.moc"
