#include "Exchange.h"
#include "Tests.h"

#include <QtTest/QtTest>

#include <rapidcheck.h>

#include <cmath>
#include <random>

Q_DECLARE_METATYPE(Phase)

namespace {

const Books &sample()
{
    static const Books books = *Books::load(QStringLiteral(T0_SAMPLE_BOOKS)).books;
    return books;
}

/// A Monday.
qint64 at(const char *time)
{
    return QDateTime({2024, 1, 8}, QTime::fromString(QLatin1String(time), QStringLiteral("hh:mm:ss")), Qt::UTC)
        .toMSecsSinceEpoch();
}

const Instrument &instrumentOf(const QString &symbol)
{
    for (const Instrument &instrument : sample().instruments)
        if (instrument.symbol == symbol)
            return instrument;
    qFatal("no such symbol");
}

Exchange::OrderIn order(const QString &id, const Instrument &instrument, bool buy, double price, qint64 quantity)
{
    return {id, instrument.securityID, instrument.exchange, buy, price, quantity};
}

QString textOf(const QVector<Fill> &fills)
{
    QString text;
    for (const Fill &fill : fills)
        text += QStringLiteral("%1 %2 %3 %4\n").arg(fill.id).arg(fill.quantity).arg(fill.price).arg(fill.open);
    return text;
}

QString textOf(const Quote &quote)
{
    QString text = QString::number(quote.last);
    for (const QVector<QuoteLevel> &side : {quote.bids, quote.asks})
        for (const QuoteLevel &level : side) {
            text += QStringLiteral("\n%1 %2:").arg(level.price).arg(level.quantity);
            for (const QuoteLevel::Item &item : level.queue)
                text += QStringLiteral(" %1%2").arg(item.quantity).arg(item.id);
        }
    return text;
}

/// Where an order stands at its price; -1: nowhere in what is shown.
int placeInQueue(const Quote &quote, const QString &id)
{
    for (const QVector<QuoteLevel> &side : {quote.bids, quote.asks})
        for (const QuoteLevel &level : side)
            for (int i = 0; i < level.queue.size(); ++i)
                if (level.queue.at(i).id == id)
                    return i;
    return -1;
}

/// Random orders, cancels and seconds on a few symbols, with every rule checked after each.
class Traffic
{
public:
    Traffic(quint64 seed, const Exchange::Options &options)
        : m_random(seed)
        , m_options(options)
        , m_exchange(sample(), 7, options)
        , m_other(m_exchange)
        , m_untouched(m_exchange)
    {
        const char *starts[] = {"09:14:50", "09:24:40", "09:29:30", "10:00:00", "11:29:40", "14:56:40", "14:59:40"};
        const qint64 start = at(starts[below(7)]);
        for (Exchange *exchange : {&m_exchange, &m_other, &m_untouched})
            exchange->setTime(start);
    }

    void event()
    {
        const quint64 dice = below(100);
        if (dice < 25)
            place();
        else if (dice < 32 && !m_ids.isEmpty())
            cancel(m_ids.at(int(below(quint64(m_ids.size())))));
        else if (dice < 34)
            startAgain();
        else
            step();
        look();
    }

private:
    struct Placed {
        Exchange::OrderIn order;
        qint64 open = 0;
        int number = 0;
    };

    quint64 below(quint64 end) { return m_random() % end; }

    void place()
    {
        const Instrument &instrument = instrumentOf(m_symbols.at(int(below(3))));
        const double price = m_exchange.quote(instrument.symbol)->last + (double(below(13)) - 6) * 0.005;
        const QString id = QStringLiteral("o%1").arg(m_placed.size());
        const qint64 quantity = qint64(below(4) * below(14)) * instrument.qtyStep + qint64(below(2) * 7);
        const Exchange::OrderIn wanted = order(id, instrument, below(2) == 0, price, quantity);
        if (quantity == 0 || m_exchange.refusal(wanted) != Exchange::Refusal::None)
            return;
        m_ids.append(id);
        m_placed.insert(id, {wanted, quantity, m_placed.size()});
        const QVector<Fill> fills = m_exchange.place(wanted);
        RC_ASSERT(textOf(fills) == textOf(m_other.place(wanted)));
        const bool trades = m_exchange.phase(wanted.exchange).phase == Phase::Continuous;
        RC_ASSERT((trades || fills.isEmpty()));
        check(fills);
    }

    void cancel(const QString &id)
    {
        const Exchange::Cancelled answer = m_exchange.cancel(id);
        RC_ASSERT(answer == m_other.cancel(id));
        const Placed &placed = m_placed[id];
        const bool may = m_exchange.phase(placed.order.exchange).cancels;
        RC_ASSERT(answer == (placed.open == 0 ? Exchange::Cancelled::UnknownOrder
                             : may            ? Exchange::Cancelled::Yes
                                              : Exchange::Cancelled::NotNow));
        if (answer == Exchange::Cancelled::Yes)
            m_placed[id].open = 0;
    }

    void step()
    {
        const bool held = below(10) == 0;
        const QString before = textOf(*m_exchange.quote(QStringLiteral("600001.SH")));
        const MarketPhase now = m_exchange.phase(QStringLiteral("SH"));
        for (Exchange *exchange : {&m_exchange, &m_other})
            exchange->setHeld(held);
        const Exchange::Events events = m_exchange.step();
        RC_ASSERT(textOf(events.fills) == textOf(m_other.step().fills));
        if (!held)
            m_untouched.step();
        const bool settled = now.phase != m_exchange.phase(QStringLiteral("SH")).phase;
        if (held || (now.phase != Phase::Continuous && !settled))
            RC_ASSERT(before == textOf(*m_exchange.quote(QStringLiteral("600001.SH"))));
        check(events.fills);
        for (Exchange *exchange : {&m_exchange, &m_other})
            exchange->setHeld(false);
    }

    void startAgain()
    {
        Exchange fresh(sample(), 7, m_options);
        RC_ASSERT(fresh.restore(m_other.save()));
        m_other = fresh;
    }

    /// Reads one of the two; what it then does must not differ.
    void look()
    {
        const QString &symbol = m_symbols.at(int(below(3)));
        const Quote quote = *m_exchange.quote(symbol);
        // Paper orders move no price.
        RC_ASSERT(quote.last == m_untouched.quote(symbol)->last);
        const Instrument &instrument = instrumentOf(symbol);
        RC_ASSERT(isAllowed(instrument, quote.last));
        for (const QVector<QuoteLevel> &side : {quote.bids, quote.asks})
            for (const QuoteLevel &level : side)
                RC_ASSERT(isAllowed(instrument, level.price));
        if (!quote.bids.isEmpty() && !quote.asks.isEmpty())
            RC_ASSERT(quote.bids.first().price < quote.asks.first().price);
    }

    static bool isAllowed(const Instrument &instrument, double price)
    {
        const bool inside =
            price > 0 && (instrument.upLimit == 0 || (price >= instrument.downLimit && price <= instrument.upLimit));
        return inside && Ticks::of(sample(), instrument).onTick(Ticks::micros(price));
    }

    void check(const QVector<Fill> &fills)
    {
        for (const Fill &fill : fills) {
            Placed &placed = m_placed[fill.id];
            const Exchange::OrderIn &mine = placed.order;
            const Instrument &instrument = *sample().instrument(mine.securityID, mine.exchange);
            RC_ASSERT(fill.quantity > 0);
            RC_ASSERT(fill.quantity <= placed.open);
            placed.open -= fill.quantity;
            RC_ASSERT(fill.open == placed.open);
            RC_ASSERT((placed.open == 0 || fill.quantity % instrument.qtyStep == 0));
            const Micros worse = Ticks::micros(fill.price) - Ticks::micros(mine.price);
            RC_ASSERT((mine.buy ? worse <= 0 : worse >= 0));
            RC_ASSERT(isAllowed(instrument, fill.price));
            for (const Placed &other : qAsConst(m_placed)) {
                const bool rival = other.open > 0 && other.order.securityID == mine.securityID &&
                                   other.order.buy == mine.buy && other.order.id != mine.id;
                const Micros ahead = Ticks::micros(other.order.price) - Ticks::micros(mine.price);
                const bool better = mine.buy ? ahead > 0 : ahead < 0;
                const bool earlier = ahead == 0 && other.number < placed.number;
                RC_ASSERT(!(rival && (better || earlier)));
            }
        }
    }

    const QStringList m_symbols{QStringLiteral("600001.SH"), QStringLiteral("00002.HK"), QStringLiteral("110001.SH")};
    std::mt19937_64 m_random;
    Exchange::Options m_options;
    Exchange m_exchange;
    Exchange m_other;     ///< gets the same, is never read and starts again at times
    Exchange m_untouched; ///< gets no orders
    QStringList m_ids;
    QMap<QString, Placed> m_placed;
};

} // namespace

class ExchangeTest : public QObject
{
    Q_OBJECT

private slots:
    void ticksAreNeighbours();
    void pricesThatAreNone();
    void phases_data();
    void phases();
    void randomOrders_data();
    void randomOrders();
    void shownDepthIsSoldOnce();
    void ordersWaitInTheQueue();
    void auctionsHaveOnePrice();
    void slippageStaysWithinTheLimit();
    void aNewDay();
};

void ExchangeTest::ticksAreNeighbours()
{
    const Instrument &hongKong = instrumentOf(QStringLiteral("00001.HK"));
    const Instrument &fund = instrumentOf(QStringLiteral("510001.SH"));
    QVERIFY(rc::check([&](bool bands) {
        const Ticks ticks = Ticks::of(sample(), bands ? hongKong : fund);
        const qint64 thousandths = *rc::gen::oneOf(rc::gen::inRange<qint64>(2, 30'000), // many borders are low
                                                   rc::gen::inRange<qint64>(2, 6'000'000));
        const Micros price = ticks.atOrAbove(thousandths * 1000);
        const Micros above = ticks.up(price);
        RC_ASSERT(ticks.onTick(price));
        RC_ASSERT(ticks.onTick(above));
        RC_ASSERT(ticks.down(above) == price);
        RC_ASSERT(!ticks.onTick(price + *rc::gen::inRange<Micros>(1, above - price)));
        RC_ASSERT(ticks.atOrBelow(above - 1) == price);
        RC_ASSERT(Ticks::micros(Ticks::price(price)) == price);
        RC_ASSERT(Ticks::micros(ticks.tickAt(Ticks::price(price))) == above - price);
        // What a client computes may be off by the last bits of a double.
        RC_ASSERT(Ticks::micros(Ticks::price(price) * 3 / 3) == price);
    }));
}

void ExchangeTest::pricesThatAreNone()
{
    for (const double price : {0.0, -1.0, 1e300, double(INFINITY), double(NAN), 10.0000001, 1e-9})
        QCOMPARE(Ticks::micros(price), 0);
    const Ticks ticks = Ticks::of(sample(), instrumentOf(QStringLiteral("00001.HK")));
    QCOMPARE(ticks.tickAt(10), 0.02);
    QCOMPARE(ticks.tickAt(std::nextafter(10, 9) - 1e-7), 0.01); // asked for the step down from a border
    QCOMPARE(ticks.down(Ticks::micros(10)), Ticks::micros(9.99));
    QCOMPARE(ticks.down(Ticks::micros(0.001)), 0);
}

void ExchangeTest::phases_data()
{
    QTest::addColumn<QString>("market");
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<QString>("takes");
    const auto row = [](const char *time, const char *market, Phase phase, const char *takes) {
        QTest::newRow(time) << QString::fromLatin1(market) << phase << QString::fromLatin1(takes);
    };
    row("09:14:59", "SH", Phase::Closed, "");
    row("09:15:00", "SH", Phase::OpenAuction, "orders cancels");
    row("09:20:00", "SH", Phase::OpenAuction, "orders");
    row("09:25:00", "SH", Phase::Closed, "");
    row("11:29:59", "SH", Phase::Continuous, "orders cancels");
    row("14:57:00", "SZ", Phase::CloseAuction, "orders");
    row("15:00:00", "HHK", Phase::Continuous, "orders cancels");
    row("12:00:00", "nowhere", Phase::Closed, "");
}

void ExchangeTest::phases()
{
    QFETCH(QString, market);
    const MarketPhase phase = Sessions(sample()).at(market, at(QTest::currentDataTag()));
    QTEST(phase.phase, "phase");
    QString takes = phase.orders ? QStringLiteral("orders") : QString();
    takes += phase.cancels ? QStringLiteral(" cancels") : QString();
    QTEST(takes, "takes");
}

void ExchangeTest::randomOrders_data()
{
    QTest::addColumn<bool>("immediate");
    QTest::addColumn<int>("slippage");
    QTest::newRow("through the depth") << false << 0;
    QTest::newRow("at once, with slippage") << true << 2;
}

void ExchangeTest::randomOrders()
{
    QFETCH(bool, immediate);
    QFETCH(int, slippage);
    QVERIFY(rc::check([=](quint64 seed) {
        Traffic traffic(seed, {immediate, slippage});
        for (int i = 0; i < 80; ++i)
            traffic.event();
    }));
}

void ExchangeTest::shownDepthIsSoldOnce()
{
    Exchange exchange(sample(), 3);
    exchange.setTime(at("10:00:00"));
    const Instrument &instrument = instrumentOf(QStringLiteral("600001.SH"));
    const QuoteLevel touch = exchange.quote(instrument.symbol)->asks.first();
    const auto bought = [&](const char *id, qint64 quantity) {
        qint64 sum = 0;
        const QString text = QString::fromLatin1(id);
        for (const Fill &fill : exchange.place(order(text, instrument, true, touch.price, quantity)))
            sum += fill.quantity;
        return sum;
    };
    QCOMPARE(bought("a", 107), 107);
    QCOMPARE(bought("b", 100), 100);
    QCOMPARE(bought("c", touch.quantity), touch.quantity - 300);
    QCOMPARE(bought("d", 93), 0); // it would fit in what is left, but c is first
    QCOMPARE(exchange.quote(instrument.symbol)->asks.first().quantity, 93);
}

void ExchangeTest::ordersWaitInTheQueue()
{
    Exchange exchange(sample(), 3);
    exchange.setTime(at("10:00:00"));
    const Instrument &instrument = instrumentOf(QStringLiteral("600001.SH"));
    const double price = exchange.quote(instrument.symbol)->bids.first().price;
    for (const QString &id : {QStringLiteral("a"), QStringLiteral("b")}) {
        QVERIFY(exchange.place(order(id, instrument, true, price, 100'000)).isEmpty());
        const QVector<QuoteLevel::Item> queue = exchange.quote(instrument.symbol)->bids.first().queue;
        QCOMPARE(queue.last().id, id);
    }
    int before = placeInQueue(*exchange.quote(instrument.symbol), QStringLiteral("a"));
    QVERIFY(before >= 3);
    // The price stays in sight, so that nobody trades through it.
    while (true) {
        QVERIFY(exchange.setLast(instrument.symbol, price));
        const Exchange::Events events = exchange.step();
        if (!events.fills.isEmpty()) {
            QCOMPARE(events.fills.size(), 1);
            break;
        }
        const int now = placeInQueue(*exchange.quote(instrument.symbol), QStringLiteral("a"));
        QVERIFY(now <= before);
        before = now;
    }
    QVERIFY(placeInQueue(*exchange.quote(instrument.symbol), QStringLiteral("a")) <= 0);
}

void ExchangeTest::auctionsHaveOnePrice()
{
    Exchange exchange(sample(), 3);
    exchange.setTime(at("14:59:50"));
    const Instrument &instrument = instrumentOf(QStringLiteral("600001.SH"));
    exchange.place(order(QStringLiteral("buy"), instrument, true, instrument.upLimit, 100));
    exchange.place(order(QStringLiteral("sell"), instrument, false, instrument.downLimit, 100));
    exchange.place(order(QStringLiteral("far"), instrument, true, instrument.downLimit, 100));
    QCOMPARE(exchange.cancel(QStringLiteral("far")), Exchange::Cancelled::NotNow);
    for (int i = 0; i < 9; ++i)
        QVERIFY(exchange.step().fills.isEmpty());
    const QVector<Fill> fills = exchange.step().fills;
    QCOMPARE(fills.size(), 2);
    QCOMPARE(fills.at(0).price, fills.at(1).price);
    QCOMPARE(exchange.quote(instrument.symbol)->last, fills.at(0).price);
    QVERIFY(exchange.step().fills.isEmpty());
}

void ExchangeTest::slippageStaysWithinTheLimit()
{
    Exchange exchange(sample(), 3, {true, 3});
    exchange.setTime(at("10:00:00"));
    const Instrument &instrument = instrumentOf(QStringLiteral("00001.HK"));
    QVERIFY(exchange.setLast(instrument.symbol, 19.96));
    const auto bought = [&](const char *id, double limit) {
        return textOf(exchange.place(order(QString::fromLatin1(id), instrument, true, limit, 1000)));
    };
    QCOMPARE(bought("a", 30), QStringLiteral("a 1000 20.1 0\n")); // from 19.98 over the border of a band
    QCOMPARE(bought("b", 20), QStringLiteral("b 1000 20 0\n"));
    QCOMPARE(bought("c", 19.96), QString());
}

void ExchangeTest::aNewDay()
{
    Exchange exchange(sample(), 3);
    exchange.setTime(at("10:00:00"));
    const Instrument &instrument = instrumentOf(QStringLiteral("600001.SH")); // limits of 10 %
    exchange.place(order(QStringLiteral("a"), instrument, true, instrument.downLimit, 100));
    QVERIFY(exchange.setLast(instrument.symbol, 12.97));
    exchange.dayChange(at("09:15:00"));
    QVERIFY(exchange.setLast(instrument.symbol, exchange.quote(instrument.symbol)->upLimit));
    exchange.dayChange(at("09:15:00"));
    QCOMPARE(exchange.cancel(QStringLiteral("a")), Exchange::Cancelled::UnknownOrder);
    const Quote quote = *exchange.quote(instrument.symbol);
    QCOMPARE(quote.preClose, 14.27); // 12.97 and 10 %, to the tick
    QCOMPARE(quote.upLimit, 15.70);
    QCOMPARE(quote.downLimit, 12.84);
    QCOMPARE(exchange.quote(QStringLiteral("00001.HK"))->upLimit, 0.0);
}

T0_REGISTER_TEST(ExchangeTest)
#include "ExchangeTest.moc"
