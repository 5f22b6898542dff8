#include "AllocationBar.h"

#include "Format.h"
#include "PageShell.h"

#include <QtGui/QPainter>

#include <algorithm>

AllocationBar::AllocationBar(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void AllocationBar::setQuantities(qint64 publicQty, qint64 privateQty, qint64 resourceQty)
{
    m_public = publicQty;
    m_private = privateQty;
    m_resource = resourceQty;
    update();
}

QSize AllocationBar::sizeHint() const
{
    return {240, fontMetrics().height() + 10};
}

void AllocationBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    const QColor highlight = palette().color(QPalette::Highlight);
    QColor privateColour = highlight;
    privateColour.setAlpha(150);
    QColor publicColour = highlight;
    publicColour.setAlpha(70);
    paintPart(painter, 0, m_public, publicColour, tr("公共 %1").arg(Format::quantity(m_public)));
    paintPart(painter, m_public, m_private, privateColour, tr("私有 %1").arg(Format::quantity(m_private)));
    const qint64 allocated = m_public + m_private;
    const PageShell *shell = PageShell::instance();
    if (allocated <= m_resource)
        paintPart(painter, allocated, m_resource - allocated, palette().color(QPalette::Base),
                  tr("未分配 %1").arg(Format::quantity(m_resource - allocated)));
    else if (shell)
        paintPart(painter, m_resource, allocated - m_resource, shell->riseColor(),
                  tr("超配 %1").arg(Format::quantity(allocated - m_resource)));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void AllocationBar::paintPart(QPainter &painter, qint64 from, qint64 quantity, const QColor &colour,
                              const QString &text) const
{
    const double whole = double(std::max({m_resource, m_public + m_private, qint64(1)}));
    const int left = int(double(from) / whole * width());
    const int right = int(double(from + quantity) / whole * width());
    const QRect part(left, 0, right - left, height());
    painter.fillRect(part, colour);
    painter.setPen(palette().color(QPalette::Text));
    if (fontMetrics().horizontalAdvance(text) + 6 < part.width())
        painter.drawText(part, Qt::AlignCenter, text);
}
