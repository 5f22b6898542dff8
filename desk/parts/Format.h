#pragma once

#include "Column.h"

#include <QtCore/QString>

/// Numbers and times as people read them. What is missing, not a number or infinite is "--".
namespace Format {

QString missing();                     ///< "--"
QString quantity(const QVariant &qty); ///< 1,234,500
QString price(const QVariant &price, int decimals);
QString money(const QVariant &amount);
QString percent(const QVariant &fraction); ///< 0.256: 25.6%
QString time(const QVariant &dateAndTime); ///< HH:mm:ss

/// The cell of a row as it is shown.
QString cell(const Column &column, const VariantRecord &row);

/// The same for a file: no thousands separators, 15 digits; a code as ="600001", so that spreadsheets keep it.
QString fileCell(const Column &column, const VariantRecord &row);

/// The value behind a cell, for sorting and for colours: a number for the kinds that are numbers, else a text; invalid
/// when there is none.
QVariant value(const Column &column, const VariantRecord &row);

} // namespace Format
