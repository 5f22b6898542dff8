#pragma once

#include "Commands.h"

#include <QtCore/QFile>
#include <QtCore/QSocketNotifier>

/// Runs the lines of a file or of standard input, on the main thread's event loop, and prints what comes of
/// them; ends the loop at the last line, at quit, and with strict at the first bad command.
class Script : public QObject
{
    Q_OBJECT

public:
    struct Format {
        bool json = false;
        bool strict = false;
    };

    /// descriptor: open for reading, not closed here. source: what messages call it.
    Script(Commands &commands, int descriptor, const QString &source, Format format);

    bool hadBadCommand() const;

private:
    void readSome();
    void runLine(const QByteArray &line);
    void printBad(const QString &errorText);
    void printGood(const QString &name, const Outcome &outcome);
    void printMessages();
    bool isOver() const;

    Commands &m_commands;
    const int m_descriptor;
    const QString m_source;
    const Format m_format;
    QSocketNotifier m_readable;
    QByteArray m_rest; ///< the beginning of a line whose end was not read yet
    int m_line = 0;
    bool m_hadBadCommand = false;
};
