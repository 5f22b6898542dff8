#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

/// Reads a packed message. Not thread-safe: one object, one thread.
class T0_HOST_EXPORT CUnPackMessageCommon
{
public:
    /// msg: the QByteArray that GetPackedMsg made or a handler was given. format: 0. False when the bytes are
    /// no message (logged); the object then holds no values and no rows.
    bool SetUnPackMsg(const QVariant &msg, int format);

    QVariant GetValue(const QString &key, const QVariant &defaultValue) const; ///< a top-level value
    VariantRecord GetRowValue() const;                                         ///< the first row; empty without rows
    RecordList GetAllValue() const; ///< all rows; the first of a product answer is a header row

private:
    VariantRecord m_values;
    RecordList m_rows;
};
