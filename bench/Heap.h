#pragma once

#include <QtCore/qglobal.h>

#include <malloc.h>

/// Bytes that this process has allocated and not freed.
inline qint64 heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks) + qint64(info.hblkhd);
}
