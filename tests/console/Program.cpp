#include "Program.h"

#include <QtCore/QJsonDocument>

#include <algorithm>

namespace Program {

namespace {

constexpr int longEnoughMs = 120000;

} // namespace

QVector<QJsonObject> Run::lines() const
{
    QVector<QJsonObject> objects;
    for (const QByteArray &line : output.split('\n'))
        if (!line.isEmpty())
            objects.append(QJsonDocument::fromJson(line).object()); // empty when it is no JSON
    return objects;
}

void start(QProcess &program, QStringList arguments)
{
    const QStringList others{QStringLiteral("--connect"), QStringLiteral("--books"), QStringLiteral("--replay")};
    const auto isGiven = [&arguments](const QString &other) { return arguments.contains(other); };
    if (std::none_of(others.cbegin(), others.cend(), isGiven))
        arguments = QStringList{QStringLiteral("--books"), QStringLiteral(T0_SAMPLE_BOOKS)} + arguments;
    program.start(QStringLiteral(T0_CONSOLE_PROGRAM), arguments);
}

bool serve(QProcess &gateway, const QString &name)
{
    gateway.start(QStringLiteral(T0_GATEWAY_PROGRAM),
                  {QStringLiteral("--serve"), name, QStringLiteral("--books"), QStringLiteral(T0_SAMPLE_BOOKS)});
    QByteArray line;
    return readUntil(gateway, "serving", line);
}

Run finish(QProcess &program)
{
    const bool ended = program.waitForFinished(longEnoughMs) && program.exitStatus() == QProcess::NormalExit;
    return {ended ? program.exitCode() : -1, program.readAllStandardOutput(),
            QString::fromUtf8(program.readAllStandardError())};
}

Run runConsole(const QByteArray &input, const QStringList &arguments)
{
    QProcess program;
    start(program, arguments);
    program.write(input);
    program.closeWriteChannel();
    return finish(program);
}

bool readUntil(QProcess &program, const QByteArray &text, QByteArray &line)
{
    do {
        while (!program.canReadLine())
            if (!program.waitForReadyRead(longEnoughMs))
                return false;
        line = program.readLine();
    } while (!line.contains(text));
    return true;
}

QByteArray lastLine(const QByteArray &output)
{
    return output.mid(output.chopped(qMin(1, output.size())).lastIndexOf('\n') + 1);
}

QJsonArray resultOf(const Run &run, const char *operation)
{
    for (const QJsonObject &line : run.lines())
        if (line.value("op") == QLatin1String(operation))
            return line.value("result").toArray();
    return {};
}

} // namespace Program
