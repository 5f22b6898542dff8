#pragma once

#include "HostExport.h"

#include <QtCore/QString>

/// What a trader types to find a Chinese name: the first letter of each syllable, "万科Ａ" gives "wka". Latin letters
/// and digits stay, in lower case; everything else is left out, and so are rare characters (those outside the first
/// level of GB 2312). Of a character with several readings the usual one counts, but for a few common words.
/// Any thread.
T0_HOST_EXPORT QString PinyinInitials(const QString &text);
