#pragma once

#include <QtCore/QStringList>

class QComboBox;
class QWidget;

/// What a script does with the widgets of the program: through the events that a user's keys and mouse make. Texts that
/// are returned are empty or say what was expected and what is there.
namespace ScriptWidgets {

enum class Click { Left, Right, Double };

/// The visible widget of an object name, that of the active window first; null: errorText says so.
QWidget *find(const QString &name, QString &errorText);

QString key(const QString &sequence);
QString type(const QString &text); ///< into the widget that has the focus
/// item: the tab or the entry of a menu to be clicked; empty: the widget itself.
QString click(const QString &name, const QString &item, Click how);
QString set(const QString &name, const QString &text);
QString choose(const QString &name, const QString &text);

QString expectText(const QString &name, const QString &text); ///< contained in what the widget shows
QString expectFocus(const QString &name);
QString expectEnabled(const QString &name, const QString &yesOrNo);
QString expectVisible(const QString &name, const QString &yesOrNo);

} // namespace ScriptWidgets
