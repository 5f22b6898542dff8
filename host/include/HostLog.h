#pragma once

#include "HostExport.h"

#include <QtCore/QDebug>
#include <QtCore/QString>

/// The host's debug logger. Thread-safe; usable while the process ends. Lines go to the standard error stream
/// when the environment variable T0_LOG is "debug" or "info" (debug includes info), or to the sink of
/// HostLog::setSink; else they are not even composed.
namespace HostLog {

enum class Level { Debug, Info };
using Sink = void (*)(Level level, const QString &line);

T0_HOST_EXPORT bool isOn(Level level);
T0_HOST_EXPORT void setLevel(Level lowest, bool on);
T0_HOST_EXPORT void setSink(Sink sink); ///< null: the standard error stream
T0_HOST_EXPORT void write(Level level, const char *source, int line, const char *function, const QString &text);

} // namespace HostLog

/// HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::instance" << value): source name, then what
/// is streamed. The stream is evaluated only when the level is on.
#define HOST_LOG_LINE(level, source, stream)                                                                           \
    do {                                                                                                               \
        if (HostLog::isOn(level)) {                                                                                    \
            QString hostLogText;                                                                                       \
            QDebug(&hostLogText) << stream;                                                                            \
            HostLog::write(level, source, __LINE__, Q_FUNC_INFO, hostLogText);                                         \
        }                                                                                                              \
    } while (false)
#define HOST_DEBUG(source, stream) HOST_LOG_LINE(HostLog::Level::Debug, source, stream)
#define HOST_INFO(source, stream) HOST_LOG_LINE(HostLog::Level::Info, source, stream)
