#pragma once

#include "VariantRecord.h"

/// Orders for rows that come in none: what is printed twice is then the same twice.
namespace RowOrder {

using Less = bool (*)(const VariantRecord &, const VariantRecord &);

bool byResourceId(const VariantRecord &a, const VariantRecord &b);

/// Public pools that stand for themselves in a merged list come last and keep their order.
bool byPoolId(const VariantRecord &a, const VariantRecord &b);

bool byUsageKey(const VariantRecord &a, const VariantRecord &b);

QVariantList sorted(const QVariantList &rows, Less less);

} // namespace RowOrder
