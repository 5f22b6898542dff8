#include "Activity.h"

#include <atomic>

namespace {

struct Counters {
    std::atomic<quint64> events{0};
    std::atomic<int> underWay{0};
};

Counters &counters()
{
    static Counters counters; // trivially destroyed: may be used after every other static
    return counters;
}

} // namespace

quint64 Activity::count()
{
    return counters().events.load();
}

int Activity::underWay()
{
    return counters().underWay.load();
}

Activity::Token Activity::begin()
{
    ++counters().underWay;
    ++counters().events;
    return Token(&counters(), [](const void *) {
        ++counters().events;
        --counters().underWay;
    });
}
