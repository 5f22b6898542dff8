#pragma once

#include <QtCore/QStringList>

/// Rows of a file for spreadsheets.
namespace CsvText {

/// One line, with its end; a cell is quoted when it has a comma, a quote, a line break or a space at its border.
QString line(const QStringList &cells);

} // namespace CsvText
