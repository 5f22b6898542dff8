#pragma once

#include "Faults.h"

#include <QtCore/QStringList>

class SimDispatcher;

/// One day of chaos, from a seed: the load, users and faults for a while; then the network heals, a user refreshes, and
/// within a second the picture is the gateway's.
struct SeedResult {
    quint64 hash = 0; ///< of everything that happened
    quint64 steps = 0;
    QStringList failures;
};

SeedResult simulate(quint64 seed, SimDispatcher &timers, bool trace, Faults &faults);
