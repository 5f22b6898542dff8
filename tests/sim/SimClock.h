#pragma once

#include <QtCore/QtGlobal>

/// The time of the simulation. Every clock of the process shows it: the clock functions of this program stand before
/// those of the C library, for Qt and the host too.
namespace SimClock {

qint64 now(); ///< microseconds, from 0 at a seed's start
void set(qint64 us);

double realSeconds(); ///< the machine's clock, for who waits for the simulation

} // namespace SimClock
