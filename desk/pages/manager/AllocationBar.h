#pragma once

#include <QtWidgets/QWidget>

/// What of a resource is public, private and free, as parts of one bar with their numbers; what is too much is marked.
class AllocationBar : public QWidget
{
    Q_OBJECT

public:
    explicit AllocationBar(QWidget *parent = nullptr);

    /// Quantities in display units.
    void setQuantities(qint64 publicQty, qint64 privateQty, qint64 resourceQty);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintPart(QPainter &painter, qint64 from, qint64 quantity, const QColor &colour, const QString &text) const;

    qint64 m_public = 0;
    qint64 m_private = 0;
    qint64 m_resource = 0;
};
