#pragma once

#include "VariantRecord.h"

/// The derived fields of a usage record, each read and written by name where it is needed.
namespace ReferenceDerive {

/// How a field name is come by at each use.
enum class Names {
    Prebuilt,    ///< a constant
    Concatenated ///< put together from two parts
};

void derive(VariantRecord &record, const QString &symbol, int factor, Names names);

} // namespace ReferenceDerive
