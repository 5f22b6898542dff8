#include "ProfitPage.h"

#include "DayProfitChart.h"
#include "ExposureChart.h"
#include "Layout.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "ProfitBarChart.h"
#include "ProfitColumns.h"
#include "ProfitCurve.h"
#include "ProfitFilterBar.h"
#include "ProfitTotals.h"
#include "RecordTable.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QVBoxLayout>

namespace {

using Group = ProfitRows::Group;

constexpr int drawEveryMs = 1000;

QString traderName(const QString &id)
{
    const QString name = ManualT0Logic::GetTraderNameByTraderId(id);
    return name.isEmpty() ? id : name;
}

/// group: symbol and exchange.
QString symbolName(const QString &group)
{
    const QString symbol = group.section(QLatin1Char('_'), 0, 0);
    const VariantRecord details = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(symbol);
    const QString name = details.value(Orvane_Fields::Security::chineseName).toString();
    return name.isEmpty() ? symbol : name;
}

} // namespace

PageDescription ProfitPage::description()
{
    return {QStringLiteral("profit"), tr("盈亏"), {}, [] { return new ProfitPage; }};
}

ProfitPage::ProfitPage(QWidget *parent)
    : QWidget(parent)
    , m_book(UsageBook::ofWindow())
    , m_filter(new ProfitFilterBar)
    , m_totals(new ProfitTotals)
    , m_curve(new ProfitCurve(this))
    , m_dayChart(new DayProfitChart)
    , m_barChart(new ProfitBarChart)
    , m_exposureChart(new ExposureChart)
    , m_barsOf(new QComboBox)
{
    auto *parts = new QSplitter(Qt::Vertical);
    parts->addWidget(makeRowsPart());
    parts->addWidget(makeCharts());
    Layout::manage(parts, QStringLiteral("profit.parts"), {560, 340});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(parts);

    m_chartTimer.setSingleShot(true);
    m_chartTimer.setInterval(drawEveryMs);
    connect(&m_chartTimer, &QTimer::timeout, this, &ProfitPage::showCharts);
    connect(m_filter, &ProfitFilterBar::changed, this, &ProfitPage::regroup);
    connect(m_book, &UsageBook::replaced, this, &ProfitPage::takeAll);
    connect(m_book, &UsageBook::changed, this, &ProfitPage::take);
    connect(m_curve, &ProfitCurve::changed, this, [this] { m_dayChart->setSamples(m_curve->samples()); });
    connect(m_barsOf, qOverload<int>(&QComboBox::currentIndexChanged), this, &ProfitPage::showCharts);
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, [this] { m_totals->show(m_rows.total()); });
    regroup();
}

QWidget *ProfitPage::makeRowsPart()
{
    auto *part = new QWidget;
    m_tablePlace = new QVBoxLayout(part);
    m_tablePlace->setContentsMargins(0, 0, 0, 0);
    m_tablePlace->addWidget(m_filter);
    m_tablePlace->addWidget(m_totals);
    return part;
}

QSplitter *ProfitPage::makeCharts()
{
    m_barsOf->setObjectName(QStringLiteral("profit.bars.of"));
    m_barsOf->addItem(tr("按标的"), int(Group::Symbol));
    m_barsOf->addItem(tr("按交易员"), int(Group::Trader));
    auto *bars = new QWidget;
    auto *column = new QVBoxLayout(bars);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    auto *heading = new QHBoxLayout;
    heading->addStretch();
    heading->addWidget(new QLabel(tr("盈亏排名")));
    heading->addWidget(m_barsOf);
    heading->addStretch();
    column->addLayout(heading);
    column->addWidget(m_barChart, 1);

    auto *charts = new QSplitter(Qt::Horizontal);
    charts->addWidget(m_dayChart);
    charts->addWidget(bars);
    charts->addWidget(m_exposureChart);
    Layout::manage(charts, QStringLiteral("profit.charts"), {560, 480, 480});
    return charts;
}

/// A table for each way to group: each has columns, and a layout, of its own.
void ProfitPage::rebuildTable()
{
    const bool hadFocus = m_table && m_table->hasFocus();
    delete m_table;
    auto *model = new RecordModel(ProfitColumns::of(m_filter->group()), ProfitRows::keyOf);
    m_table = new RecordTable(QStringLiteral("profit.rows"), model);
    model->setParent(m_table);
    connect(model, &RecordModel::shown, this, [this] { m_totals->show(m_rows.total()); });
    m_tablePlace->insertWidget(1, m_table, 1);
    if (hadFocus)
        m_table->setFocus();
}

void ProfitPage::regroup()
{
    if (!m_table || m_rows.group() != m_filter->group())
        rebuildTable();
    m_rows = ProfitRows(m_filter->group(), m_filter->filter());
    takeAll();
}

void ProfitPage::takeAll()
{
    if (!isVisible()) {
        m_isShownStale = true;
        return;
    }
    m_isShownStale = false;
    m_filter->offer(m_book->entries());
    m_rows = ProfitRows(m_filter->group(), m_filter->filter()); // a choice that is gone narrows no longer
    m_rows.replace(m_book->entries());
    m_table->records()->setRows(m_rows.rows());
    m_totals->show(m_rows.total());
    showCharts();
}

void ProfitPage::take(const QStringList &keys)
{
    if (!isVisible()) {
        m_isShownStale = true;
        return;
    }
    for (const QString &key : keys)
        m_rows.put(key, m_book->entries().value(key));
    m_table->records()->put(m_rows.takeChanged());
    drawLater();
}

void ProfitPage::drawLater()
{
    if (!m_chartTimer.isActive())
        m_chartTimer.start();
}

void ProfitPage::showCharts()
{
    if (!isVisible())
        return;
    const Group group = Group(m_barsOf->currentData().toInt());
    m_barChart->setTotals(ProfitRows::totals(m_book->entries(), group, m_filter->filter()),
                          group == Group::Trader ? traderName : symbolName);
    m_exposureChart->setTotals(ProfitRows::totals(m_book->entries(), Group::Trader, m_filter->filter()), traderName);
}

void ProfitPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isShownStale)
        takeAll();
}
