#pragma once

#include <QtCore/QString>

/// Every text a user reads, in the users' language.
namespace UserTexts {

inline QString refreshTooOften()
{
    return QStringLiteral("刷新频率过高，请稍后重试！");
}

} // namespace UserTexts
