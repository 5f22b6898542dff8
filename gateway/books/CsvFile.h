#pragma once

#include "Books.h"

struct CsvRow {
    int line = 0; ///< where the row begins in the file, from 1
    QStringList cells;
};

/// The rows of one CSV file, comments and blank lines left out; the first one is the header.
///
/// A line that begins with '#' outside a quoted cell is a comment. The file is UTF-8, with or without a byte
/// order mark, and GB18030 when most of its lines beyond ASCII are no valid UTF-8.
/// Returns nothing and fills error when the file cannot be read, decoded or parsed.
std::optional<QVector<CsvRow>> readCsv(const QString &dir, const QString &file, BookError &error);
