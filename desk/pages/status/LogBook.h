#pragma once

#include "HostLog.h"

#include <QtCore/QVector>

/// The last 5,000 lines of the host's log. Lines that the environment asks for go to the standard error stream as well,
/// as without it. Callable from any thread.
namespace LogBook {

struct Line {
    qint64 number = 0; ///< counted from 0 on
    HostLog::Level level = HostLog::Level::Info;
    QString text;
};

constexpr int kept = 5000;

void open(); ///< from now on; once a process

/// Whether debug lines are taken as well. Those that the environment asks for always are.
void takeDebug(bool on);

/// The lines from a number on that are still kept, oldest first.
QVector<Line> from(qint64 number);

} // namespace LogBook
