#include "DayProfitChart.h"

#include "ChartStyle.h"
#include "Format.h"
#include "PageShell.h"

#include <qwt_date.h>
#include <qwt_date_scale_draw.h>
#include <qwt_date_scale_engine.h>
#include <qwt_picker_machine.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_marker.h>
#include <qwt_plot_picker.h>
#include <qwt_symbol.h>

#include <algorithm>

namespace {

constexpr double shortestSpanMs = 5 * 60 * 1000;

double timeOf(const ProfitSample &sample)
{
    return QwtDate::toDouble(sample.marketTime);
}

/// Says under the mouse what the curve says there.
class Reader : public QwtPlotPicker
{
public:
    Reader(QWidget *canvas, std::function<QString(double)> textAt)
        : QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft, VLineRubberBand, AlwaysOn, canvas)
        , m_textAt(std::move(textAt))
    {
        setStateMachine(new QwtPickerTrackerMachine);
    }

protected:
    QwtText trackerTextF(const QPointF &position) const override { return m_textAt(position.x()); }

private:
    std::function<QString(double)> m_textAt;
};

QwtDateScaleDraw *timeScale()
{
    auto *scale = new QwtDateScaleDraw(Qt::UTC);
    for (const QwtDate::IntervalType type : {QwtDate::Minute, QwtDate::Hour, QwtDate::Day})
        scale->setDateFormat(type, QStringLiteral("HH:mm"));
    scale->setDateFormat(QwtDate::Second, QStringLiteral("HH:mm:ss"));
    return scale;
}

} // namespace

DayProfitChart::DayProfitChart(QWidget *parent)
    : Chart(parent)
    , m_grid(ChartStyle::prepare(this, tr("当日总盈亏")))
{
    setObjectName(QStringLiteral("profit.chart.day"));
    setAxisScaleDraw(xBottom, timeScale());
    setAxisScaleEngine(xBottom, new QwtDateScaleEngine(Qt::UTC));
    setAxisScaleDraw(yLeft, new AmountScale);
    auto *zero = new QwtPlotMarker;
    zero->setLineStyle(QwtPlotMarker::HLine);
    zero->setLinePen(palette().color(QPalette::Mid));
    zero->attach(this);
    new Reader(canvas(), [this](double time) { return textAt(time); });
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, &DayProfitChart::restyle);
}

void DayProfitChart::restyle()
{
    ChartStyle::restyle(this, m_grid);
    setSamples(m_samples);
}

void DayProfitChart::setTimes(const QVector<ProfitSample> &samples)
{
    if (samples.isEmpty())
        return;
    const double from = timeOf(samples.first());
    setAxisScale(xBottom, from, std::max(timeOf(samples.last()), from + shortestSpanMs));
}

void DayProfitChart::setSamples(const QVector<ProfitSample> &samples)
{
    m_samples = samples;
    qDeleteAll(m_curves); // detaches them
    m_curves.clear();
    const QVector<QVector<ProfitSample>> parts = ProfitHistory::unbroken(samples);
    for (const QVector<ProfitSample> &part : parts) {
        QVector<QPointF> points;
        for (const ProfitSample &sample : part)
            points.append({timeOf(sample), sample.profit});
        auto *curve = new QwtPlotCurve;
        const QColor colour = samples.last().profit < 0 ? ChartStyle::fall() : ChartStyle::rise();
        curve->setPen(colour, 2);
        curve->setRenderHint(QwtPlotItem::RenderAntialiased);
        if (points.size() == 1) // a line of one point is nothing to see
            curve->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, colour, colour, QSize(4, 4)));
        curve->setSamples(points);
        curve->attach(this);
        m_curves.append(curve);
    }
    setTimes(samples);
    QwtText text = title();
    text.setText(samples.isEmpty() ? tr("当日总盈亏")
                                   : tr("当日总盈亏 %1（%2）")
                                         .arg(Format::money(samples.last().profit),
                                              samples.last().marketTime.toString(QStringLiteral("HH:mm:ss"))));
    setTitle(text);
    replot();
}

/// Of the last sample before a time.
QString DayProfitChart::textAt(double time) const
{
    const auto after =
        std::upper_bound(m_samples.cbegin(), m_samples.cend(), time,
                         [](double wanted, const ProfitSample &sample) { return wanted < timeOf(sample); });
    if (after == m_samples.cbegin())
        return {};
    const ProfitSample &sample = *(after - 1);
    return sample.marketTime.toString(QStringLiteral("HH:mm:ss  ")) + Format::money(sample.profit);
}
