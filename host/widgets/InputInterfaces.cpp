#include "IHSkin.h"
#include "IMasterShortCut.h"
#include "InputStatusStyle.h"

#include <QtGui/QPainter>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QWidget>

IHSkin::~IHSkin() = default;

IMasterShortCut::IMasterShortCut(QWidget *widget)
    : m_shortCut(new QShortcut(widget))
{
    const auto focus = [widget] { widget->setFocus(Qt::ShortcutFocusReason); };
    QObject::connect(m_shortCut, &QShortcut::activated, widget, focus);
    QObject::connect(m_shortCut, &QShortcut::activatedAmbiguously, widget, focus);
}

IMasterShortCut::~IMasterShortCut() = default;

void IMasterShortCut::setShortCut(const QKeySequence &keys)
{
    m_shortCut->setKey(keys);
}

QKeySequence IMasterShortCut::shortCut() const
{
    return m_shortCut->key();
}

InputStatusStyle::InputStatusStyle(QWidget *widget)
    : m_widget(widget)
{}

InputStatusStyle::~InputStatusStyle() = default;

InputStatusStyle::InputStatus InputStatusStyle::inputStatus() const
{
    return m_status;
}

void InputStatusStyle::setInputStatus(InputStatus status, const QString &text)
{
    const bool wasNormal = m_status == InputStatus::Normal;
    m_status = status;
    if (wasNormal && status == InputStatus::Normal)
        return;
    if (wasNormal) {
        m_ownToolTip = m_widget->toolTip();
        m_ownDescription = m_widget->accessibleDescription();
    }
    const bool isNormal = status == InputStatus::Normal;
    m_widget->setToolTip(isNormal ? m_ownToolTip : text);
    m_widget->setAccessibleDescription(isNormal ? m_ownDescription : text);
    updateStatusColor();
}

void InputStatusStyle::updateStatusColor()
{
    const bool dark = m_widget->palette().color(QPalette::Base).lightness() < 128;
    if (m_status == InputStatus::Error)
        m_color = dark ? QColor(0xff, 0x6b, 0x5e) : QColor(0xc6, 0x28, 0x28);
    else
        m_color = dark ? QColor(0xff, 0xb3, 0x4d) : QColor(0xc7, 0x6a, 0x00);
    m_widget->update();
}

void InputStatusStyle::paintInputStatus()
{
    if (m_status == InputStatus::Normal)
        return;
    QPainter painter(m_widget);
    painter.setPen(QPen(m_color, 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(m_widget->rect().adjusted(1, 1, -1, -1));
}
