#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QFontMetrics;
class QSplitter;
class QWidget;

/// What a page keeps of its layout, in the host's settings of the user: under fixed English names with a version, so
/// that a layout of another version is not taken for one of this.
namespace Layout {

/// Empty when nothing of this version was kept.
QByteArray kept(const QString &name);
void keep(const QString &name, const QByteArray &state);
void forget(const QString &name);

/// Sizes of a splitter are restored now and kept when they are moved, and go back to initial when the layout of its
/// page is reset. name: "page.part", also the object name.
void manage(QSplitter *splitter, const QString &name, const QList<int> &initial);

/// What the width of a column counts in: a digit or the average character, of which either may be the wider.
int characterWidth(const QFontMetrics &font);

/// The page of "page.part".
QString pageOf(const QString &name);

} // namespace Layout
