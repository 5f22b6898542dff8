#pragma once

#include "BenchScale.h"

#include <QtCore/QMap>
#include <QtCore/QString>

/// Counting the processor's instructions: the machine's own counters are closed to virtual machines and
/// containers, so this program runs itself under valgrind, which counts exactly and on every machine.
namespace Instructions {

/// Counted parts to instructions one lookup; the parts are countedPart() of both lookups and sizes. Empty and
/// errorText filled when valgrind is missing or failed.
QMap<QString, double> count(const BenchScale &scale, QString &errorText);

/// The name of one counted part, for instance "usage 1000".
QString countedPart(const QString &lookup, int records);

/// What the child does: fills a hub, then lets valgrind count the lookups only. Outside valgrind it counts nothing.
void runCounted(int records, int calls);

} // namespace Instructions
