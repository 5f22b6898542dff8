#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>

/// The programs as a user runs them.
namespace Program {

constexpr char initAndWait[] = "init\nwait inited 0,1,2,3,4,5 30000\n";

struct Run {
    int exitCode = -1; ///< -1: did not end by itself
    QByteArray output;
    QString errors;

    QVector<QJsonObject> lines() const; ///< of a run with --json
};

/// Starts t0-console, on the sample books unless the arguments say others.
void start(QProcess &program, QStringList arguments);

/// Starts t0-gateway on the sample books; false when it does not serve.
bool serve(QProcess &gateway, const QString &name);

Run finish(QProcess &program);
Run runConsole(const QByteArray &input, const QStringList &arguments = {QStringLiteral("--json")});

/// Reads the program's lines until one holds a text; false when it ended before.
bool readUntil(QProcess &program, const QByteArray &text, QByteArray &line);

QByteArray lastLine(const QByteArray &output); ///< with its end

/// The first result of an operation.
QJsonArray resultOf(const Run &run, const char *operation);

} // namespace Program
