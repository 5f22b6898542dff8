#include "ScriptWidgets.h"

#include <QtGui/QKeySequence>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTextEdit>

namespace {

/// Who gets the keys now.
QWidget *keyTarget()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        return popup->focusWidget() ? popup->focusWidget() : popup;
    if (QWidget *focus = QApplication::focusWidget())
        return focus;
    QWidget *modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

QWidgetList widgetsOf(const QString &name)
{
    QWidgetList found;
    QWidget *modal = QApplication::activeModalWidget();
    const QWidgetList all = QApplication::allWidgets();
    for (QWidget *widget : all) {
        if (widget->objectName() != name || !widget->isVisible())
            continue;
        const QWidget *front = modal ? modal : QApplication::activeWindow();
        if (widget->window() == front)
            found.prepend(widget);
        else
            found.append(widget);
    }
    return found;
}

template <typename... Kinds> bool isAnyOf(const QWidget *widget)
{
    return (qobject_cast<const Kinds *>(widget) || ...);
}

QString textOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
        return edit->text();
    if (const auto *combo = qobject_cast<const QComboBox *>(widget))
        return combo->currentText();
    if (const auto *spin = qobject_cast<const QAbstractSpinBox *>(widget))
        return spin->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    if (const auto *group = qobject_cast<const QGroupBox *>(widget))
        return group->title();
    if (const auto *bar = qobject_cast<const QProgressBar *>(widget))
        return bar->text();
    if (const auto *edit = qobject_cast<const QPlainTextEdit *>(widget))
        return edit->toPlainText();
    if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
        return edit->toPlainText();
    return widget->windowTitle();
}

/// Keys for what is on a keyboard, a commit of the input method for what is not.
void typeInto(QWidget *widget, const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() < 128) {
            QTest::keyClick(widget, c.toLatin1());
            continue;
        }
        QInputMethodEvent commit;
        commit.setCommitString(c);
        QApplication::sendEvent(widget, &commit);
    }
}

void clickAt(QWidget *widget, ScriptWidgets::Click how, const QPoint &at)
{
    if (how == ScriptWidgets::Click::Double)
        return QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, at);
    if (how == ScriptWidgets::Click::Left)
        return QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseClick(widget, Qt::RightButton, Qt::NoModifier, at);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, at, widget->mapToGlobal(at));
    QApplication::sendEvent(widget, &menu);
}

/// Where the tab or the entry of a text is; null when there is none.
QPoint placeOf(const QWidget *widget, const QString &item)
{
    if (const auto *tabs = qobject_cast<const QTabBar *>(widget))
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->tabText(i).contains(item))
                return tabs->tabRect(i).center();
    if (const auto *menu = qobject_cast<const QMenu *>(widget))
        for (QAction *action : menu->actions())
            if (action->text().contains(item))
                return menu->actionGeometry(action).center();
    return {};
}

bool yes(const QString &yesOrNo)
{
    return yesOrNo == QLatin1String("yes");
}

QString nameOf(const QWidget *widget)
{
    if (!widget)
        return QStringLiteral("nothing");
    return widget->objectName().isEmpty()
               ? QStringLiteral("a %1").arg(QString::fromLatin1(widget->metaObject()->className()))
               : widget->objectName();
}

} // namespace

QWidget *ScriptWidgets::find(const QString &name, QString &errorText)
{
    const QWidgetList found = widgetsOf(name);
    if (!found.isEmpty())
        return found.constFirst();
    errorText = QStringLiteral("no visible widget is named \"%1\"").arg(name);
    return nullptr;
}

QString ScriptWidgets::key(const QString &sequence)
{
    const QKeySequence keys(sequence, QKeySequence::PortableText);
    if (keys.count() != 1 || (keys[0] & ~int(Qt::KeyboardModifierMask)) == Qt::Key_unknown)
        return QStringLiteral("\"%1\" is no key").arg(sequence);
    QWidget *target = keyTarget();
    if (!target)
        return QStringLiteral("no window is there to get the key %1").arg(sequence);
    QTest::keyClick(target, Qt::Key(keys[0] & ~int(Qt::KeyboardModifierMask)),
                    Qt::KeyboardModifiers(keys[0] & int(Qt::KeyboardModifierMask)));
    return {};
}

QString ScriptWidgets::type(const QString &text)
{
    QWidget *target = keyTarget();
    if (!target)
        return QStringLiteral("nothing has the focus");
    typeInto(target, text);
    return {};
}

QString ScriptWidgets::click(const QString &name, const QString &item, Click how)
{
    QString errorText;
    QWidget *widget = find(name, errorText);
    if (!widget)
        return errorText;
    if (!widget->isEnabled())
        return QStringLiteral("\"%1\" is disabled").arg(name);
    const QWidget *modal = QApplication::activeModalWidget();
    if (modal && widget->window() != modal && widget->window() != QApplication::activePopupWidget())
        return QStringLiteral("\"%1\" is behind the dialog \"%2\"").arg(name, modal->windowTitle());
    QPoint at = widget->rect().center();
    if (!item.isEmpty()) {
        at = placeOf(widget, item);
        if (at.isNull())
            return QStringLiteral("\"%1\" has no item \"%2\"").arg(name, item);
    } else if (isAnyOf<QCheckBox, QRadioButton>(widget)) {
        at.setX(qMin(widget->width(), widget->height()) / 2); // the rest of a wide one does not answer
    }
    clickAt(widget, how, at);
    return {};
}

QString ScriptWidgets::set(const QString &name, const QString &text)
{
    QString errorText;
    QWidget *widget = find(name, errorText);
    if (!widget)
        return errorText;
    widget->setFocus(Qt::MouseFocusReason);
    QWidget *target = QApplication::focusWidget();
    if (!target || (target != widget && !widget->isAncestorOf(target) && widget->focusProxy() != target))
        return QStringLiteral("\"%1\" does not take the focus").arg(name);
    QTest::keyClick(target, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(target, Qt::Key_Delete);
    typeInto(target, text);
    return {};
}

QString ScriptWidgets::choose(const QString &name, const QString &text)
{
    QString errorText;
    QWidget *widget = find(name, errorText);
    auto *combo = qobject_cast<QComboBox *>(widget);
    if (!combo)
        return widget ? QStringLiteral("\"%1\" has no list to choose from").arg(name) : errorText;
    const int exact = combo->findText(text);
    const int index = exact >= 0 ? exact : combo->findText(text, Qt::MatchContains);
    if (index < 0) {
        QStringList items;
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        return QStringLiteral("\"%1\" has no \"%2\", but: %3").arg(name, text, items.join(QStringLiteral(", ")));
    }
    combo->setFocus(Qt::MouseFocusReason);
    combo->setCurrentIndex(index);
    emit combo->activated(index);
    return {};
}

QString ScriptWidgets::expectText(const QString &name, const QString &text)
{
    QStringList shown;
    for (const QWidget *widget : widgetsOf(name)) {
        shown.append(QLatin1Char('"') + textOf(widget) + QLatin1Char('"'));
        if (textOf(widget).contains(text))
            return {};
    }
    if (shown.isEmpty())
        return QStringLiteral("no visible widget is named \"%1\"").arg(name);
    return QStringLiteral("expected \"%1\" in %2, there is %3").arg(text, name, shown.join(QStringLiteral(", ")));
}

QString ScriptWidgets::expectFocus(const QString &name)
{
    const QWidget *focus = QApplication::focusWidget();
    for (const QWidget *widget = focus; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget())
        if (widget->objectName() == name)
            return {};
    return QStringLiteral("expected the focus in %1, it is in %2").arg(name, nameOf(focus));
}

QString ScriptWidgets::expectEnabled(const QString &name, const QString &yesOrNo)
{
    QString errorText;
    const QWidget *widget = find(name, errorText);
    if (!widget || widget->isEnabled() == yes(yesOrNo))
        return errorText;
    return QStringLiteral("expected %1 to be %2")
        .arg(name, yes(yesOrNo) ? QStringLiteral("enabled") : QStringLiteral("disabled"));
}

QString ScriptWidgets::expectVisible(const QString &name, const QString &yesOrNo)
{
    return widgetsOf(name).isEmpty() == !yes(yesOrNo)
               ? QString()
               : QStringLiteral("expected %1 to be %2")
                     .arg(name, yes(yesOrNo) ? QStringLiteral("visible") : QStringLiteral("out of sight"));
}
