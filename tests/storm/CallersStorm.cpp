#include "Desk.h"
#include "Tests.h"
#include "Watchdog.h"

#include <QtTest/QtTest>

#include <thread>

namespace {

constexpr int readers = 8;
constexpr int patience = 120; ///< seconds for the end of what the storm has begun

int stormSeconds()
{
    const int seconds = qEnvironmentVariableIntValue("T0_STORM_SECONDS");
    return seconds > 0 ? seconds : 5;
}

} // namespace

/// One client under everything at once: readers, refreshes, changes, orders, faults, a market that moves, and a
/// listener that asks everything from every event. T0_STORM_SECONDS: how long.
class CallersStorm : public QObject
{
    Q_OBJECT

private slots:
    void everythingAtOnceEndsInTheServersPicture();
};

void CallersStorm::everythingAtOnceEndsInTheServersPicture()
{
    const int seconds = stormSeconds();
    const Watchdog watchdog("the storm", seconds + patience);
    Desk desk;
    std::atomic<bool> over{false};
    std::vector<std::thread> callers;
    const auto repeat = [&](void (Desk::*action)(Desk::Random &), int pauseMs) {
        callers.emplace_back([&desk, &over, action, pauseMs, seed = unsigned(callers.size())] {
            Desk::Random random(seed);
            while (!over) {
                (desk.*action)(random);
                std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs)); // a rate, nothing is waited for
            }
        });
    };
    for (int reader = 0; reader < readers; ++reader)
        repeat(&Desk::read, 1);
    repeat(&Desk::refresh, 100);
    repeat(&Desk::change, 20);
    repeat(&Desk::change, 20);
    repeat(&Desk::trade, 10);
    repeat(&Desk::choose, 5);
    repeat(&Desk::moveMarket, 5);
    repeat(&Desk::disturb, 50);
    QTest::qWait(seconds * 1000); // the length of the storm; events are heard meanwhile
    over = true;
    for (std::thread &caller : callers)
        caller.join();

    const QString faults = desk.faultsWhenQuiet();
    if (!faults.isEmpty())
        qWarning("%s", qPrintable(faults)); // whole: a failure shows the beginning only
    QVERIFY(faults.isEmpty());
    qInfo("storm of %d s: %d times every query, %d events heard, %d changes carried out, %d orders accepted", seconds,
          desk.rounds.load(), desk.events.load(), desk.changes.load(), desk.orders.load());
    QVERIFY(desk.answers > 0 && desk.events > 0 && desk.changes > 0 && desk.orders > 0);
}

T0_REGISTER_TEST(CallersStorm)
#include "CallersStorm.moc"
