#pragma once

#include <QtGui/QColor>

#include <qwt_scale_draw.h>

class QwtPlot;
class QwtPlotGrid;

/// How the charts look: the colours and the font of the window, axes with thousands separators.
namespace ChartStyle {

/// Once a plot; the result belongs to it. Call restyle when the appearance has changed.
QwtPlotGrid *prepare(QwtPlot *plot, const QString &title);
void restyle(QwtPlot *plot, QwtPlotGrid *grid);

QColor text();
QColor rise();
QColor fall();
QColor neutral(); ///< of what is neither profit nor loss

} // namespace ChartStyle

/// Amounts: 1,250,000; with decimals only when the steps need them.
class AmountScale : public QwtScaleDraw
{
public:
    QwtText label(double value) const override;
};

/// Names at 0, 1, 2…; nothing elsewhere.
class NameScale : public QwtScaleDraw
{
public:
    NameScale();

    /// Puts them on the left axis of plot, 0 lowest; few of them do not fill it, so that their bars stay narrow.
    void setNames(QwtPlot *plot, const QStringList &names);
    QwtText label(double value) const override;

private:
    QStringList m_names;
};
