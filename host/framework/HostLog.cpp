#include "HostLog.h"

#include <QtCore/QDateTime>

#include <atomic>
#include <cstdio>

namespace {

struct State {
    std::atomic<bool> on[2];
    std::atomic<HostLog::Sink> sink{nullptr};

    State()
    {
        const QByteArray wanted = qgetenv("T0_LOG");
        on[int(HostLog::Level::Debug)] = wanted == "debug";
        on[int(HostLog::Level::Info)] = wanted == "debug" || wanted == "info";
    }
};

State &state()
{
    static State state; // trivially destroyed: lines may still be written while the process ends
    return state;
}

} // namespace

bool HostLog::isOn(Level level)
{
    return state().on[int(level)];
}

void HostLog::setLevel(Level lowest, bool on)
{
    for (int level = int(lowest); level <= int(Level::Info); ++level)
        state().on[level] = on;
}

void HostLog::setSink(Sink sink)
{
    state().sink = sink;
}

void HostLog::write(Level level, const char *source, int line, const char *function, const QString &text)
{
    const QString out = QStringLiteral("%1 %2 %3:%4 [%5] %6")
                            .arg(QDateTime::currentDateTime().toString(Qt::ISODateWithMs),
                                 level == Level::Debug ? QStringLiteral("debug") : QStringLiteral("info"),
                                 QString::fromUtf8(source), QString::number(line), QString::fromUtf8(function), text);
    if (const Sink sink = state().sink)
        sink(level, out);
    else
        std::fprintf(stderr, "%s\n", out.toUtf8().constData());
}
