#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

#include <QtCore/QByteArray>

/// What a message says: top-level values and rows. One CBOR codec for every transport, the one in
/// process included, so that the types a receiver sees never depend on how the message came.
///
/// Encoding: an array [values, [field names], [row, row, …]]; values is a map; a row is an array with one
/// item a field name, in the order of first appearance over all rows; `undefined` marks a field that
/// the row does not have, `null` an invalid QVariant.
///
/// Types after a round trip: every integer is qlonglong (qulonglong above its range), bool, double, QString
/// and QByteArray stay, every list is a QVariantList and every map a QVariantMap, an invalid QVariant stays
/// one. Any other type travels as the text Qt converts it to.
struct T0_WIRE_EXPORT MessageBody {
    VariantRecord values;
    RecordList rows;

    /// Empty when the body breaks a limit of decode(): it could not be read again.
    QByteArray encode() const;

    /// Decodes hostile bytes: every declared length is checked against what is left before anything is
    /// allocated for it; depth (8), size (64 MiB), fields (1,000) and rows (1,000,000) are limited.
    /// False: errorText says what is wrong and at which byte, body is unchanged. Callable from any thread.
    static bool decode(const QByteArray &bytes, MessageBody &body, QString &errorText);
};
