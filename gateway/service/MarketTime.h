#pragma once

#include <QtCore/QDateTime>

/// The market clock: milliseconds since 1970 of its own calendar and clock, without a time zone.
namespace MarketTime {

inline QDateTime dateTime(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

/// yyyy-MM-dd HH:mm:ss.zzz
inline QString exactText(qint64 ms)
{
    return dateTime(ms).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

/// yyyy-MM-dd HH:mm:ss
inline QString text(qint64 ms)
{
    return dateTime(ms).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

/// Of the date, until its last one.
inline int secondsLeft(qint64 ms)
{
    return dateTime(ms).time().secsTo({23, 59, 59});
}

/// Where the day after starts: the next weekday, before anything trades.
inline qint64 nextMorning(qint64 ms)
{
    QDate date = dateTime(ms).date().addDays(1);
    while (date.dayOfWeek() > Qt::Friday)
        date = date.addDays(1);
    return QDateTime(date, {9, 15}, Qt::UTC).toMSecsSinceEpoch();
}

} // namespace MarketTime
