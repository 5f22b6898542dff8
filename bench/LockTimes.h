#pragma once

#include <QtCore/qglobal.h>

/// How long the calling thread holds write locks: the linker turns this program's calls of Qt's lock into calls of
/// LockTimes.cpp (--wrap), so what is measured carries no instruments. Processor time, like every other.
namespace LockTimes {

struct Held {
    qint64 sum = 0; ///< nanoseconds
    qint64 longest = 0;
};

void begin(); ///< forgets what was held before; only threads that have begun are measured
Held end();

} // namespace LockTimes
