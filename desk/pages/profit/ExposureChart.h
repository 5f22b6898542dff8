#pragma once

#include "Chart.h"
#include "UsageFigures.h"

#include <QtCore/QMap>

#include <functional>

class NameScale;
class QwtPlotBarChart;
class QwtPlotCurve;
class QwtPlotGrid;

/// Exposure of each trader as a bar, with a mark where the limits of his pools end. Only what is limited counts against
/// the mark: the light bar is all of it, the full one what is limited.
class ExposureChart : public Chart
{
    Q_OBJECT

public:
    explicit ExposureChart(QWidget *parent = nullptr);

    /// nameOf: how a group is called.
    void setTotals(const QMap<QString, UsageTotals> &totals, const std::function<QString(const QString &)> &nameOf);

private:
    void restyle();

    QwtPlotGrid *m_grid;
    NameScale *m_names;
    QwtPlotBarChart *m_all;
    QwtPlotBarChart *m_limited;
    QwtPlotCurve *m_limits;
};
