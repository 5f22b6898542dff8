#pragma once

#include "VariantRecord.h"

#include <QtCore/QByteArray>

/// Ways to send rows: a page to bytes and back.
struct Codec {
    const char *name;
    QByteArray (*encode)(const RecordList &rows);
    RecordList (*decode)(const QByteArray &bytes);
};

namespace Codecs {

extern const Codec library;
extern const Codec cborValue; ///< an array of maps
extern const Codec json;      ///< the same, compact

} // namespace Codecs
