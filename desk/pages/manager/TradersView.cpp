#include "TradersView.h"

#include "Background.h"
#include "Format.h"
#include "HostNews.h"
#include "HostSession.h"
#include "MasterFields.h"
#include "RecordTable.h"
#include "StandFields.h"
#include "TraderSums.h"
#include "TradersSwitchBar.h"
#include "VantaKeys.h"
#include "ViewParts.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

using namespace Master_Fields::ManualT0;

namespace {

constexpr int showEveryMs = 1000; ///< sums over everything: more often would be work that nobody sees

// What only this table knows is kept in its rows under the names of its columns.
const char *const poolCount = "poolCount";
const char *const exposure = "exposure";
const char *const limit = "limit";
const char *const limitedExposure = "limitedExposure";
const char *const withoutPrice = "withoutPrice";
const char *const liveOrders = "liveOrders";

Column computed(const char *id, const QString &title, CellKind kind)
{
    return {QLatin1String(id), title, kind, QLatin1String(id), {}, false, kind == CellKind::Money ? 13 : 9};
}

QVariant exposureShare(const VariantRecord &row)
{
    const double most = row.value(QLatin1String(limit)).toDouble();
    return most > 0 ? QVariant(row.value(QLatin1String(limitedExposure)).toDouble() / most) : QVariant();
}

QVariant switchInWords(const VariantRecord &row)
{
    return TradersSwitchBar::inWords(row.value(Stand_Fields::Safety::tradeSwitch).toString());
}

Column profit(const QString &id, const QString &title, const QString &field)
{
    return {id, title, CellKind::Money, field, {}, true, 12};
}

Columns columns()
{
    return {SharedColumns::trader(),
            {QStringLiteral("switch"), TradersView::tr("交易"), CellKind::Text, {}, switchInWords, false, 8},
            computed(poolCount, TradersView::tr("券池数"), CellKind::Quantity),
            {QStringLiteral("quantity"), TradersView::tr("券池数量"), CellKind::Quantity, PoolTotalQty},
            {QStringLiteral("bought"), TradersView::tr("已买"), CellKind::Quantity, RtRealBoughtQty},
            {QStringLiteral("sold"), TradersView::tr("已卖"), CellKind::Quantity, RtRealSoldQty},
            computed(exposure, TradersView::tr("敞口"), CellKind::Money),
            computed(limit, TradersView::tr("敞口上限"), CellKind::Money),
            {QStringLiteral("share"), TradersView::tr("敞口比例"), CellKind::Bar, {}, exposureShare},
            profit(QStringLiteral("floatProfit"), TradersView::tr("浮动盈亏"), FloatProfit),
            profit(QStringLiteral("realizeProfit"), TradersView::tr("实现盈亏"), RealizeProfit),
            profit(QStringLiteral("totalProfit"), TradersView::tr("总盈亏"), TotalProfit),
            computed(withoutPrice, TradersView::tr("无价行数"), CellKind::Quantity),
            computed(liveOrders, TradersView::tr("未完成委托"), CellKind::Quantity)};
}

VariantRecord rowOf(const TraderSums &sums)
{
    return {{T0TraderId, sums.trader},
            {QLatin1String(poolCount), sums.pools},
            {PoolTotalQty, sums.poolQty},
            {RtRealBoughtQty, sums.boughtQty},
            {RtRealSoldQty, sums.soldQty},
            {QLatin1String(exposure), sums.usage.exposure},
            {QLatin1String(limit), sums.usage.limit > 0 ? QVariant(sums.usage.limit) : QVariant()},
            {QLatin1String(limitedExposure), sums.usage.limitedExposure},
            {FloatProfit, sums.usage.floatProfit},
            {RealizeProfit, sums.usage.realizeProfit},
            {TotalProfit, sums.usage.totalProfit},
            {QLatin1String(withoutPrice), sums.usage.withoutPrice},
            {QLatin1String(liveOrders), sums.liveOrders}};
}

} // namespace

TradersView::TradersView(QWidget *parent)
    : QWidget(parent)
    , m_model(new RecordModel(
          columns(), [](const VariantRecord &row) { return row.value(T0TraderId).toString(); }, this))
    , m_table(new RecordTable(QStringLiteral("manage.traders"), m_model))
    , m_sums(ViewParts::label(QStringLiteral("manage.traders.sums")))
    , m_switches(new TradersSwitchBar)
    , m_later(new Later(
          showEveryMs, [this] { sum(); }, this))
{
    setFocusProxy(m_table);
    m_table->setDefaultSort(SharedColumns::trader().id, Qt::AscendingOrder);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_sums);
    layout->addWidget(m_switches);
    connect(m_switches, &TradersSwitchBar::changed, this, &TradersView::showSwitches);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TradersView::offerChosen);
    using namespace Vanta_Keys::EventMsgName;
    m_later->follow(
        {ManualT0DataInited, ManualT0PoolRealTimeUpdated, ManualT0SecurityPoolUpdated, ManualT0SecurityPoolDeleted});
    if (HostSession *session = HostSession::current()) {
        connect(&session->news(), &HostNews::quotesChanged, m_later, &Later::ask);
        connect(&session->news(), &HostNews::ordersChanged, m_later, &Later::ask);
    }
}

void TradersView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_switches->load();
    sum();
}

/// Not on the GUI thread: with thousands of usage records it takes as long as some frames of the window.
void TradersView::sum()
{
    if (!isVisible())
        return;
    if (m_isSumming) {
        m_later->ask();
        return;
    }
    m_isSumming = true;
    Background::run(QStringLiteral("manage.traders"), this, TraderSums::all,
                    [this](const QMap<QString, TraderSums> &sums) { showSums(sums); });
}

void TradersView::showSums(const QMap<QString, TraderSums> &sums)
{
    m_isSumming = false;
    RecordList rows;
    TraderSums all;
    for (const TraderSums &sum : sums) {
        rows.append(withSwitch(rowOf(sum)));
        all.add(sum);
    }
    m_model->setRows(rows);
    m_sums->setText(tr("合计：券池 %1 个，数量 %2，已买 %3，已卖 %4，敞口 %5，总盈亏 %6，未完成委托 %7，无价 %8 行")
                        .arg(QString::number(all.pools), Format::quantity(all.poolQty), Format::quantity(all.boughtQty),
                             Format::quantity(all.soldQty), Format::money(all.usage.exposure),
                             Format::money(all.usage.totalProfit), QString::number(all.liveOrders),
                             QString::number(all.usage.withoutPrice)));
}

VariantRecord TradersView::withSwitch(VariantRecord row) const
{
    row.insert(Stand_Fields::Safety::tradeSwitch, m_switches->switchOf(row.value(T0TraderId).toString()));
    return row;
}

void TradersView::showSwitches()
{
    RecordList rows;
    const RecordList shown = m_model->records();
    for (const VariantRecord &row : shown)
        rows.append(withSwitch(row));
    m_model->put(rows);
}

void TradersView::offerChosen()
{
    QStringList traders;
    const RecordList chosen = m_table->chosenRecords();
    for (const VariantRecord &row : chosen)
        traders.append(row.value(T0TraderId).toString());
    m_switches->setTraders(traders);
}
