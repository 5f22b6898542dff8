#include "MasterDoubleSpinBox.h"

#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QLineEdit>

MasterDoubleSpinBox::MasterDoubleSpinBox(QWidget *parent, double step, double minimum, double maximum, int decimals)
    : QDoubleSpinBox(parent)
    , IMasterShortCut(this)
    , InputStatusStyle(this)
{
    setDecimals(decimals); // first: range and step are rounded to them
    setRange(minimum, maximum);
    setSingleStep(step);
    setGroupSeparatorShown(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled, false);
    lineEdit()->setAttribute(Qt::WA_InputMethodEnabled, false);
}

MasterDoubleSpinBox::~MasterDoubleSpinBox() = default;

void MasterDoubleSpinBox::applySkin()
{
    updateStatusColor();
}

void MasterDoubleSpinBox::changeEvent(QEvent *event)
{
    QDoubleSpinBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applySkin();
}

void MasterDoubleSpinBox::focusInEvent(QFocusEvent *event)
{
    if (event->reason() == Qt::PopupFocusReason) { // back from the context menu: text and selection stay
        QDoubleSpinBox::focusInEvent(event);
        return;
    }
    setGroupSeparatorShown(false);
    QDoubleSpinBox::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason)
        QTimer::singleShot(0, this, &MasterDoubleSpinBox::selectAll); // the press that follows takes a selection away
    else
        selectAll();
}

void MasterDoubleSpinBox::focusOutEvent(QFocusEvent *event)
{
    QDoubleSpinBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        setGroupSeparatorShown(true);
}

void MasterDoubleSpinBox::keyPressEvent(QKeyEvent *event)
{
    QDoubleSpinBox::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        emit returnPressed();
}

void MasterDoubleSpinBox::paintEvent(QPaintEvent *event)
{
    QDoubleSpinBox::paintEvent(event);
    paintInputStatus();
}

void MasterDoubleSpinBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QDoubleSpinBox::wheelEvent(event);
    else
        event->ignore(); // scrolls what the field stands in
}
