#include "ProfitBarChart.h"

#include "ChartStyle.h"
#include "PageShell.h"

#include <qwt_column_symbol.h>
#include <qwt_plot_barchart.h>
#include <qwt_plot_grid.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int mostBars = 20;

/// Each bar in the colour of its sign.
class SignedBars : public QwtPlotBarChart
{
public:
    QwtColumnSymbol *specialSymbol(int, const QPointF &sample) const override
    {
        auto *symbol = new QwtColumnSymbol(QwtColumnSymbol::Box); // the caller's
        symbol->setFrameStyle(QwtColumnSymbol::NoFrame);
        symbol->setPalette(QPalette(sample.y() < 0 ? ChartStyle::fall() : ChartStyle::rise()));
        return symbol;
    }
};

} // namespace

ProfitBarChart::ProfitBarChart(QWidget *parent)
    : Chart(parent)
    , m_grid(ChartStyle::prepare(this, {}))
    , m_names(new NameScale)
    , m_bars(new SignedBars)
{
    setObjectName(QStringLiteral("profit.chart.bars"));
    m_grid->enableY(false);
    setAxisScaleDraw(yLeft, m_names);
    setAxisScaleDraw(xBottom, new AmountScale);
    setAxisMaxMajor(xBottom, 5);
    m_bars->setOrientation(Qt::Horizontal);
    m_bars->setLayoutPolicy(QwtPlotBarChart::ScaleSamplesToAxes);
    m_bars->setLayoutHint(0.7);
    m_bars->setSpacing(0);
    m_bars->attach(this);
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, [this] {
        ChartStyle::restyle(this, m_grid);
        replot();
    });
}

void ProfitBarChart::setTotals(const QMap<QString, UsageTotals> &totals,
                               const std::function<QString(const QString &)> &nameOf)
{
    QVector<QPair<double, QString>> ranked;
    for (auto group = totals.cbegin(); group != totals.cend(); ++group) {
        if (group->totalProfit != 0)
            ranked.append({group->totalProfit, group.key()});
    }
    std::sort(ranked.begin(), ranked.end(),
              [](const auto &a, const auto &b) { return std::abs(a.first) > std::abs(b.first); });
    ranked.resize(std::min(ranked.size(), mostBars));
    std::sort(ranked.begin(), ranked.end()); // the best on top

    QStringList names;
    QVector<double> profits;
    for (const auto &[profit, group] : qAsConst(ranked)) {
        names.append(nameOf(group));
        profits.append(profit);
    }
    m_names->setNames(this, names);
    m_bars->setSamples(profits);
    replot();
}
