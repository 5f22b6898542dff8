#include "LogBook.h"

#include <QtCore/QMutex>

#include <algorithm>
#include <cstdio>

namespace {

struct Book {
    QMutex mutex;
    QVector<LogBook::Line> lines{LogBook::kept}; ///< a ring: line n stands at n % kept
    qint64 next = 0;
    bool isForwarded[2] = {};
};

Book &book()
{
    static auto *book = new Book; // never deleted: lines are still written while the process ends
    return *book;
}

void write(HostLog::Level level, const QString &text)
{
    Book &log = book();
    const QMutexLocker lock(&log.mutex);
    log.lines[int(log.next % LogBook::kept)] = {log.next, level, text};
    ++log.next;
    if (log.isForwarded[int(level)])
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

} // namespace

void LogBook::open()
{
    Book &log = book();
    for (const HostLog::Level level : {HostLog::Level::Debug, HostLog::Level::Info})
        log.isForwarded[int(level)] = HostLog::isOn(level);
    HostLog::setSink(write);
    HostLog::setLevel(HostLog::Level::Info, true);
}

void LogBook::takeDebug(bool on)
{
    HostLog::setLevel(HostLog::Level::Debug, on || book().isForwarded[int(HostLog::Level::Debug)]);
    HostLog::setLevel(HostLog::Level::Info, true);
}

QVector<LogBook::Line> LogBook::from(qint64 number)
{
    Book &log = book();
    const QMutexLocker lock(&log.mutex);
    QVector<Line> lines;
    for (qint64 n = std::max(number, log.next - kept); n < log.next; ++n)
        lines.append(log.lines.at(int(n % kept)));
    return lines;
}
