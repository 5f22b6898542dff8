#pragma once

#include "ConsoleHost.h"
#include "Script.h"

#include <limits>

/// What the command line of the program says.
struct ConsoleOptions {
    static constexpr quint64 toTheEnd = std::numeric_limits<quint64>::max();

    QString script; ///< empty: standard input
    QString books;
    QString state;
    GatewayOptions market;
    ConsoleHost::Settings host;
    Script::Format format;
    QString journal;          ///< what is to be written; empty: none
    QString replay;           ///< what is to be replayed; empty: nothing
    quint64 until = toTheEnd; ///< the last record of it
    bool list = false;        ///< only say what is in it
    bool help = false;

    // Both need an application object.

    /// False: errorText says what is wrong.
    static bool read(const QStringList &arguments, ConsoleOptions &options, QString &errorText);
    static QString helpText();
};
