#pragma once

#include <QtCore/QStringList>

/// The files of the books and the columns of each, in their order.
namespace BookFiles {

QString instruments();
QString ticks();
QString sessions();
QString accounts();
QString users();
QString positions();
QString margin();
QString resources();
QString pools();
QString carried();
QString safety();
QString quotes();

/// The header row of a file; empty for an unknown name.
QStringList columns(const QString &file);

/// What joins the items of a list in one cell.
constexpr char listSeparator = ';';

} // namespace BookFiles
