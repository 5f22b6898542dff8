#include "Instructions.h"

#include "Lookups.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>

#include <valgrind/callgrind.h>

namespace {

constexpr int ChildTimeoutMs = 600000;

void countLookup(const BenchHub &hub, const QVector<Records::Keys> &keys, Lookups::Lookup lookup, const QString &part)
{
    lookup(hub, keys); // everything is bound and allocated once before it counts
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    lookup(hub, keys);
    const QByteArray name = part.toLatin1();
    CALLGRIND_DUMP_STATS_AT(name.constData());
    CALLGRIND_STOP_INSTRUMENTATION;
}

/// The total of every dump that this program asked for, by its name.
QMap<QString, double> readDumps(const QDir &folder)
{
    static const QRegularExpression trigger(QStringLiteral("^desc: Trigger: Client Request: (.+)$"),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression total(QStringLiteral("^(?:totals|summary): (\\d+)"),
                                          QRegularExpression::MultilineOption);
    QMap<QString, double> result;
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        const QRegularExpressionMatch part = trigger.match(text);
        const QRegularExpressionMatch sum = total.match(text);
        if (part.hasMatch() && sum.hasMatch())
            result.insert(part.captured(1).trimmed(), sum.captured(1).toDouble());
    }
    return result;
}

bool runChild(const QString &folder, int records, int calls, QString &errorText)
{
    const QString valgrind = QStandardPaths::findExecutable(QStringLiteral("valgrind"));
    if (valgrind.isEmpty()) {
        errorText = QStringLiteral("instructions: valgrind is not installed (leave them out with --no-instructions)");
        return false;
    }
    QProcess child;
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(valgrind, {QStringLiteral("--tool=callgrind"), QStringLiteral("--instr-atstart=no"),
                           QStringLiteral("--callgrind-out-file=%1/%2").arg(folder, QString::number(records)),
                           QCoreApplication::applicationFilePath(), QStringLiteral("--count"), QString::number(records),
                           QStringLiteral("--calls"), QString::number(calls)});
    if (child.waitForFinished(ChildTimeoutMs) && child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0)
        return true;
    errorText = QStringLiteral("instructions: the run under valgrind failed: %1\n%2")
                    .arg(child.errorString(), QString::fromUtf8(child.readAll()));
    child.kill();
    child.waitForFinished();
    return false;
}

} // namespace

QString Instructions::countedPart(const QString &lookup, int records)
{
    return QStringLiteral("%1 %2").arg(lookup, QString::number(records));
}

void Instructions::runCounted(int records, int calls)
{
    BenchHub hub(records, 0);
    const QVector<Records::Keys> keys = hub.randomKeys(calls);
    countLookup(hub, keys, &Lookups::usageRecords, countedPart(QStringLiteral("usage"), records));
    countLookup(hub, keys, &Lookups::pools, countedPart(QStringLiteral("pool"), records));
}

QMap<QString, double> Instructions::count(const BenchScale &scale, QString &errorText)
{
    const QTemporaryDir folder;
    for (const int records : {scale.small, scale.large}) {
        if (!runChild(folder.path(), records, scale.countedCalls, errorText))
            return {};
    }
    QMap<QString, double> totals = readDumps(QDir(folder.path()));
    if (totals.size() != 4) {
        errorText = QStringLiteral("instructions: valgrind counted %1 parts instead of 4").arg(totals.size());
        return {};
    }
    for (double &total : totals)
        total /= scale.countedCalls;
    return totals;
}
