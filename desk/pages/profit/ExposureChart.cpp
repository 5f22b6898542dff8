#include "ExposureChart.h"

#include "ChartStyle.h"
#include "PageShell.h"

#include <qwt_column_symbol.h>
#include <qwt_plot_barchart.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_symbol.h>

namespace {

QwtPlotBarChart *bars(QwtPlot *plot, double width)
{
    auto *chart = new QwtPlotBarChart;
    chart->setOrientation(Qt::Horizontal);
    chart->setLayoutPolicy(QwtPlotBarChart::ScaleSamplesToAxes);
    chart->setLayoutHint(width);
    chart->setSpacing(0);
    chart->attach(plot);
    return chart;
}

QwtColumnSymbol *fill(QColor colour, int alpha)
{
    colour.setAlpha(alpha);
    auto *symbol = new QwtColumnSymbol(QwtColumnSymbol::Box);
    symbol->setFrameStyle(QwtColumnSymbol::NoFrame);
    symbol->setPalette(QPalette(colour));
    return symbol;
}

} // namespace

ExposureChart::ExposureChart(QWidget *parent)
    : Chart(parent)
    , m_grid(ChartStyle::prepare(this, tr("敞口与限额（竖线为限额，浅色不受限）")))
    , m_names(new NameScale)
    , m_all(bars(this, 0.7))
    , m_limited(bars(this, 0.4))
    , m_limits(new QwtPlotCurve)
{
    setObjectName(QStringLiteral("profit.chart.exposure"));
    m_grid->enableY(false);
    setAxisScaleDraw(yLeft, m_names);
    setAxisScaleDraw(xBottom, new AmountScale);
    setAxisMaxMajor(xBottom, 5);
    m_limits->setStyle(QwtPlotCurve::NoCurve);
    m_limits->attach(this);
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, &ExposureChart::restyle);
    restyle();
}

void ExposureChart::restyle()
{
    ChartStyle::restyle(this, m_grid);
    m_all->setSymbol(fill(ChartStyle::neutral(), 90));
    m_limited->setSymbol(fill(ChartStyle::neutral(), 255));
    const QPen mark(ChartStyle::rise(), 3);
    m_limits->setSymbol(new QwtSymbol(QwtSymbol::VLine, QBrush(), mark, QSize(3, 22)));
    replot();
}

void ExposureChart::setTotals(const QMap<QString, UsageTotals> &totals,
                              const std::function<QString(const QString &)> &nameOf)
{
    QStringList names;
    QVector<double> all;
    QVector<double> limited;
    QVector<QPointF> limits;
    for (auto group = totals.cend(); group != totals.cbegin();) { // from below
        --group;
        if (group->exposure == 0 && group->limit == 0)
            continue;
        if (group->limit > 0)
            limits.append({group->limit, double(names.size())});
        names.append(nameOf(group.key()));
        all.append(group->exposure);
        limited.append(group->limitedExposure);
    }
    m_names->setNames(this, names);
    m_all->setSamples(all);
    m_limited->setSamples(limited);
    m_limits->setSamples(limits);
    replot();
}
