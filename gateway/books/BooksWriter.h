#pragma once

#include "Books.h"

#include <QtCore/QByteArray>
#include <QtCore/QMap>

namespace BooksWriter {

/// The books as files, UTF-8 without a byte order mark, each headed by comments on its columns.
QMap<QString, QByteArray> files(const Books &books);

/// Writes the files into a folder, which is made when missing. Never overwrites: a folder that holds one of
/// the files already is refused. Returns an empty text, or what went wrong.
QString write(const Books &books, const QString &dir);

} // namespace BooksWriter
