#pragma once

#include "Chart.h"
#include "UsageFigures.h"

#include <QtCore/QMap>

#include <functional>

class NameScale;
class QwtPlotBarChart;
class QwtPlotGrid;

/// The groups that have won or lost most, as bars.
class ProfitBarChart : public Chart
{
    Q_OBJECT

public:
    explicit ProfitBarChart(QWidget *parent = nullptr);

    /// nameOf: how a group is called.
    void setTotals(const QMap<QString, UsageTotals> &totals, const std::function<QString(const QString &)> &nameOf);

private:
    QwtPlotGrid *m_grid;
    NameScale *m_names;
    QwtPlotBarChart *m_bars;
};
