#pragma once

/// What runs under valgrind: the five hot paths, each between a start and a dump of callgrind's counters. The
/// processor's own counters are closed to virtual machines and containers; callgrind counts exactly, everywhere.
/// A dump is named "path/records/operations".
void runCounted(int records);
