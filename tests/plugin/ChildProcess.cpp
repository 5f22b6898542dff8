#include "ChildProcess.h"

#include <QtCore/QProcess>

ChildProcess ChildProcess::run(const QString &program, const QStringList &arguments, int timeoutMs)
{
    QProcess process;
    process.start(program, arguments);
    ChildProcess child;
    const bool inTime = process.waitForFinished(timeoutMs);
    child.ended = inTime && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!inTime) {
        process.kill();
        process.waitForFinished();
    }
    child.output = QString::fromUtf8(process.readAllStandardOutput());
    child.errors = QString::fromUtf8(process.readAllStandardError());
    if (!child.ended)
        child.errors +=
            QStringLiteral("%1 %2: %3, exit status %4")
                .arg(program, arguments.join(QLatin1Char(' ')),
                     inTime ? QStringLiteral("ended") : QStringLiteral("hangs"), QString::number(process.exitCode()));
    return child;
}

QString ChildProcess::fault() const
{
    return errors.trimmed();
}

QMap<QString, int> ChildProcess::findings() const
{
    QMap<QString, int> result;
    const QStringList lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        result.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1).toInt());
    return result;
}
