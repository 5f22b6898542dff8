#pragma once

#include "Chart.h"
#include "ProfitHistory.h"

class QwtPlotCurve;
class QwtPlotGrid;

/// The total profit over the market's time; where no samples were taken there is no line.
class DayProfitChart : public Chart
{
    Q_OBJECT

public:
    explicit DayProfitChart(QWidget *parent = nullptr);

    void setSamples(const QVector<ProfitSample> &samples);

private:
    void restyle();
    void setTimes(const QVector<ProfitSample> &samples);
    QString textAt(double time) const;

    QwtPlotGrid *m_grid;
    QVector<QwtPlotCurve *> m_curves; ///< one for each unbroken part; attached to the plot, which owns them
    QVector<ProfitSample> m_samples;
};
