#pragma once

#include <QtCore/QVariant>

/// A value as JSON on one line. Integers stay integers up to 64 bits; what JSON has no number for becomes the
/// text "inf", "-inf" or "nan"; an invalid value is null; fields of a record come in ascending order. Other
/// types are written as the text Qt converts them to.
QString jsonText(const QVariant &value);
