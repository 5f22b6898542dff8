#pragma once

#include "Books.h"

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>

/// Books to test with, and files of books to spoil.
namespace TestBooks {

using Files = QMap<QString, QByteArray>;

/// Books of one account, its manager "m" and its traders "t1" and "t2": n securities, each with a position, a
/// margin security, a quote, a resource of 3000 shares and a private pool of 1000 for t1.
Books withRows(int n);

/// withRows(3) without pools, the second security counted by tens, and more: an account "A2" of product "P2" that
/// only t1 may trade, a disabled account "A3" and a fourth security, on an exchange that no account trades.
Books withAccounts();

/// Runs a statement on a state file that no gateway uses.
void runSql(const QString &file, const QString &sql);

/// The files of the sample books.
Files sample();

/// Replaces one cell; row 1 is the first below the header. Returns the row's line in the file.
int spoil(Files &files, const QString &file, int row, const char *column, const QByteArray &value);

/// Writes the files to a folder, over those that are there.
void write(const Files &files, const QString &dir);

} // namespace TestBooks
