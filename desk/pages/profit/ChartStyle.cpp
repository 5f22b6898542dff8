#include "ChartStyle.h"

#include "PageShell.h"

#include <QtCore/QLocale>
#include <QtWidgets/QApplication>

#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_div.h>
#include <qwt_scale_widget.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int fewestPlaces = 6;

} // namespace

QwtPlotGrid *ChartStyle::prepare(QwtPlot *plot, const QString &title)
{
    plot->setTitle(title);
    plot->setAutoReplot(false);
    plot->plotLayout()->setAlignCanvasToScales(true);
    static_cast<QwtPlotCanvas *>(plot->canvas())->setFrameStyle(QFrame::NoFrame);
    auto *grid = new QwtPlotGrid;
    grid->attach(plot);
    restyle(plot, grid);
    return grid;
}

void ChartStyle::restyle(QwtPlot *plot, QwtPlotGrid *grid)
{
    const QPalette palette = QApplication::palette();
    const QFont font = QApplication::font();
    plot->setPalette(palette);
    plot->setCanvasBackground(palette.brush(QPalette::Base));
    QColor line = palette.color(QPalette::Text);
    line.setAlpha(40);
    grid->setPen(line, 0, Qt::DotLine);
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        plot->setAxisFont(axis, font);
    QwtText title = plot->title();
    title.setFont(font);
    title.setColor(text());
    plot->setTitle(title);
}

QColor ChartStyle::text()
{
    return QApplication::palette().color(QPalette::WindowText);
}

QColor ChartStyle::rise()
{
    return PageShell::instance()->riseColor();
}

QColor ChartStyle::fall()
{
    return PageShell::instance()->fallColor();
}

QColor ChartStyle::neutral()
{
    return QApplication::palette().color(QPalette::Highlight);
}

QwtText AmountScale::label(double value) const
{
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    const bool isWhole = std::abs(value - std::round(value)) < 1e-6;
    return locale.toString(value, 'f', isWhole ? 0 : 2);
}

NameScale::NameScale()
{
    enableComponent(Ticks, false);
    enableComponent(Backbone, false);
}

void NameScale::setNames(QwtPlot *plot, const QStringList &names)
{
    m_names = names;
    invalidateCache();
    QList<double> ticks[QwtScaleDiv::NTickTypes];
    for (int place = 0; place < names.size(); ++place)
        ticks[QwtScaleDiv::MajorTick].append(place);
    const double top = names.size() - 0.4;
    plot->setAxisScaleDiv(QwtPlot::yLeft, QwtScaleDiv(top - std::max(fewestPlaces, names.size()) - 0.2, top, ticks));
}

QwtText NameScale::label(double value) const
{
    const int place = int(std::lround(value));
    return std::abs(value - place) < 1e-6 ? m_names.value(place) : QString();
}
