#pragma once

#include "Commands.h"

#include <QtCore/QFile>
#include <QtCore/QSocketNotifier>

#include <memory>

/// Runs lines of commands, on the main thread's event loop, and prints what comes of them.
class Script : public QObject
{
    Q_OBJECT

public:
    struct Format {
        bool json = false;
        bool strict = false;
    };

    /// source: what messages call the lines.
    Script(Commands &commands, const QString &source, Format format);

    /// Runs the lines of a file or of standard input as they come; ends the loop at the last one, at quit, and with
    /// strict at the first bad command. descriptor: open for reading, not closed here.
    void read(int descriptor);

    void run(const QByteArray &lines); ///< these, at once; each with its end

    bool hadBadCommand() const;

private:
    void readSome();
    void runLine(const QByteArray &line);
    void printBad(const QString &errorText);
    void printGood(const QString &name, const Outcome &outcome);
    void printMessages();
    bool isOver() const;

    Commands &m_commands;
    const QString m_source;
    const Format m_format;
    std::unique_ptr<QSocketNotifier> m_readable;
    QByteArray m_rest; ///< the beginning of a line whose end was not read yet
    int m_line = 0;
    bool m_hadBadCommand = false;
};
