#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

/// Packs rows and top-level values into a message. Not thread-safe: one object, one thread.
class T0_HOST_EXPORT CPackMessageCommon
{
public:
    void AddRowVaule(const QVariantMap &row);
    void AddVaule(const QString &key, const QVariant &value); ///< a later value replaces an earlier one

    /// The packed bytes. format: 0, the only one there is.
    QByteArray GetPackedMsg(int format) const;

private:
    VariantRecord m_values;
    RecordList m_rows;
};
