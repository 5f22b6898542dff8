#pragma once

#include <QtCore/QString>

/// Fields of the rows that the status page makes itself.
namespace StatusFields {

inline QString key()
{
    return QStringLiteral("key");
}

inline QString name()
{
    return QStringLiteral("name");
}

inline QString state()
{
    return QStringLiteral("state");
}

inline QString count()
{
    return QStringLiteral("count");
}

inline QString time()
{
    return QStringLiteral("time"); // yyyy-MM-dd HH:mm:ss.zzz
}

inline QString duration()
{
    return QStringLiteral("duration"); // ms
}

inline QString level()
{
    return QStringLiteral("level");
}

inline QString text()
{
    return QStringLiteral("text");
}

inline QString timeFormat()
{
    return QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
}

} // namespace StatusFields
