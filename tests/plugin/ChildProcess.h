#pragma once

#include <QtCore/QMap>
#include <QtCore/QStringList>

/// A program that was run to its end by a test.
struct ChildProcess {
    bool ended = false; ///< of itself, in time and with exit status 0
    QString output;
    QString errors; ///< what it wrote to the standard error stream: warnings, sanitizer reports

    /// Everything that went wrong; empty for a clean run. A clean run writes no warning either.
    QString fault() const;

    /// Lines "name=number" of the output.
    QMap<QString, int> findings() const;

    /// timeoutMs: after it the program is killed.
    static ChildProcess run(const QString &program, const QStringList &arguments, int timeoutMs);
};
