#include "Bench.h"

#include "HostLog.h"

// A debug line with a record that nobody reads, and what formatting the record would cost.

void Bench::registerLogging()
{
    add("log.line", "off", Small, [](State &state) {
        const VariantRecord record = Records::usage(Records::keys(1).first(), 1000, 0);
        HostLog::setLevel(HostLog::Level::Debug, false);
        for (auto _ : state)
            HOST_DEBUG("bench", "a record" << record);
        setItems(state, 1);
    });
    add("log.line", "formatted", Small, [](State &state) {
        const VariantRecord record = Records::usage(Records::keys(1).first(), 1000, 0);
        for (auto _ : state) {
            QString text;
            QDebug(&text) << "a record" << record;
            benchmark::DoNotOptimize(text);
        }
        setItems(state, 1);
    });
}
