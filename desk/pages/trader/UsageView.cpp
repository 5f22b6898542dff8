#include "UsageView.h"

#include "EventBus.h"
#include "Format.h"
#include "HostNews.h"
#include "HostSession.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OwnOrders.h"
#include "PageShell.h"
#include "RecordDetails.h"
#include "RecordTable.h"
#include "StandFields.h"
#include "TradeColumns.h"
#include "TradeSelection.h"
#include "VantaKeys.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>

using namespace Master_Fields::ManualT0;

namespace {

QString textOf(const VariantRecord &usage, const QString &field)
{
    return usage.value(field).toString();
}

bool isOpen(const VariantRecord &usage)
{
    return textOf(usage, OpenPosSide) != Master_Values::OpenPositionSide::NoOpenPos;
}

QVariant shown(const std::optional<double> &figure)
{
    return figure ? QVariant(*figure) : QVariant();
}

/// It has none while nothing is open.
QVariant averagePrice(const VariantRecord &usage)
{
    return isOpen(usage) ? usage.value(OpenAvgPrice) : QVariant();
}

} // namespace

UsageView::UsageView(TradeSelection *selection, QWidget *parent)
    : QWidget(parent)
    , m_selection(selection)
    , m_model(new RecordModel(columns(), ManualT0Logic::GetRealtimePoolKey, this))
    , m_table(new RecordTable(QStringLiteral("trade.usage"), m_model))
    , m_openOnly(new QCheckBox(tr("平仓清单（仅持仓）")))
    , m_totals(new QLabel)
{
    m_table->setDefaultSort(QStringLiteral("symbol"), Qt::AscendingOrder);
    RecordDetails::offer(m_table, QStringLiteral("trade.details"));
    m_openOnly->setObjectName(QStringLiteral("trade.usage.open"));
    m_openOnly->setToolTip(tr("回车或双击一行填入平仓委托，不会自动发送"));
    m_totals->setObjectName(QStringLiteral("trade.usage.totals"));
    auto *head = new QHBoxLayout;
    head->addWidget(new QLabel(tr("额度与敞口")));
    head->addWidget(m_openOnly);
    head->addStretch(1);
    head->addWidget(m_totals);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(head);
    layout->addWidget(m_table);

    connect(m_openOnly, &QCheckBox::toggled, this, &UsageView::reload);
    connect(m_table, &RecordTable::activatedRecord, this, [this](const VariantRecord &usage) {
        if (isOpen(usage))
            emit closeWanted(usage);
        else
            PageShell::instance()->notify(PageShell::Notice::Info, tr("该行没有敞口，不需平仓"));
    });
    follow();
    reload();
}

void UsageView::follow()
{
    connect(m_selection, &TradeSelection::accountsChanged, this, &UsageView::reload);
    connect(&HostSession::current()->news(), &HostNews::quotesChanged, this, &UsageView::reprice);
    connect(m_model, &RecordModel::shown, this, &UsageView::showTotals);
    using namespace Vanta_Keys::EventMsgName;
    EventBus::listen(ManualT0PoolRealTimeUpdated, this, [this](const QVariant &changed) {
        RecordList usage;
        const QVariantList records = changed.toList();
        for (const QVariant &record : records)
            usage.append(record.toMap());
        take(usage);
    });
    EventBus::listen(ManualT0DataInited, this, [this](const QVariant &family) {
        if (family.toInt() == ManualT0Logic::RealtimeUsage)
            reload();
        else if (family.toInt() == ManualT0Logic::SecurityPools)
            takeLimits();
    });
    EventBus::listen(ManualT0SecurityPoolUpdated, this, [this](const QVariant &) { takeLimits(); });
    EventBus::listen(ManualT0SecurityPoolDeleted, this, [this](const QVariant &) { takeLimits(); });
}

Columns UsageView::columns() const
{
    const auto quantity = [](const char *id, const QString &title, const QString &field) {
        return Column{QString::fromLatin1(id), title, CellKind::Quantity, field, {}, false, 6};
    };
    const auto profit = [](const char *id, const QString &title, const QString &field) {
        return Column{QString::fromLatin1(id), title, CellKind::Money, field, {}, true, 9};
    };
    const auto figure = [this](std::optional<double> UsageFigures::*member) {
        return [this, member](const VariantRecord &usage) {
            return shown(m_figures.value(ManualT0Logic::GetRealtimePoolKey(usage)).*member);
        };
    };
    Column open = quantity("open", tr("敞口数量"), OpenPosQty);
    open.isSigned = true;
    return {
        TradeColumns::account(),
        TradeColumns::symbol(),
        TradeColumns::name(),
        SharedColumns::exchange(),
        quantity("pool", tr("券池"), RtPoolTotalQty),
        quantity("buyLimit", tr("可买"), RtTotalBuyLimit),
        quantity("sellLimit", tr("可卖"), RtTotalSellLimit),
        quantity("bought", tr("已买"), RtRealBoughtQty),
        quantity("sold", tr("已卖"), RtRealSoldQty),
        open,
        {QStringLiteral("average"), tr("均价"), CellKind::Price, {}, averagePrice, false, 7},
        {QStringLiteral("last"), tr("最新价"), CellKind::Price, Stand_Fields::Quote::lastPrice, {}, false, 7},
        {QStringLiteral("exposure"), tr("敞口金额"), CellKind::Money, {}, figure(&UsageFigures::exposure), false, 10},
        {QStringLiteral("limit"), tr("敞口上限"), CellKind::Money, {}, figure(&UsageFigures::limit), false, 10},
        profit("float", tr("浮动盈亏"), FloatProfit),
        profit("realized", tr("实现盈亏"), RealizeProfit),
        profit("total", tr("总盈亏"), TotalProfit)};
}

bool UsageView::isShown(const VariantRecord &usage) const
{
    return textOf(usage, T0TraderId) == OwnOrders::user() &&
           m_selection->accounts().contains(textOf(usage, Orvane_Fields::UserAccount::tradingAccount)) &&
           (!m_openOnly->isChecked() || isOpen(usage));
}

void UsageView::reload()
{
    const QStringList accounts = m_selection->accounts();
    const QStringList user{OwnOrders::user()};
    const RecordList usage = m_openOnly->isChecked()
                                 ? ManualT0Logic::GetOpenPositionList(accounts, user, QString(), QString())
                                 : ManualT0Logic::GetRealtimePoolDetailList(accounts, user, QString(), QString());
    m_usage.clear();
    m_figures.clear();
    QMap<QString, VariantRecord> rows; // by key: rows of one symbol stand by account
    for (const VariantRecord &record : usage)
        rows.insert(ManualT0Logic::GetRealtimePoolKey(record), priced(record));
    m_model->setRows(rows.values());
    showTotals();
    emit usageChanged();
}

void UsageView::take(const RecordList &usage)
{
    RecordList rows;
    QStringList gone;
    for (const VariantRecord &record : usage) {
        const QString key = ManualT0Logic::GetRealtimePoolKey(record);
        if (isShown(record)) {
            rows.append(priced(record));
        } else if (m_usage.remove(key) > 0) {
            m_figures.remove(key);
            gone.append(key);
        }
    }
    m_model->put(rows);
    m_model->remove(gone);
    emit usageChanged();
}

/// With the price that its figures were computed at, so that the model sees that the row is another.
VariantRecord UsageView::priced(const VariantRecord &usage)
{
    const QString key = ManualT0Logic::GetRealtimePoolKey(usage);
    const UsageFigures figures = UsageFigures::of(usage);
    m_usage.insert(key, usage);
    m_figures.insert(key, figures);
    VariantRecord row = usage;
    row.insert(Stand_Fields::Quote::lastPrice, shown(figures.lastPrice));
    row.insert(FloatProfit, shown(figures.floatProfit));
    row.insert(RealizeProfit, shown(figures.realizeProfit));
    row.insert(TotalProfit, shown(figures.totalProfit));
    return row;
}

void UsageView::reprice(const QStringList &symbols)
{
    const QSet<QString> changed(symbols.cbegin(), symbols.cend());
    RecordList rows;
    for (const VariantRecord &record : qAsConst(m_usage)) {
        if (changed.contains(textOf(record, Orvane_Fields::Security::symbol)))
            rows.append(record);
    }
    for (VariantRecord &row : rows)
        row = priced(row);
    m_model->put(rows);
    if (!rows.isEmpty())
        emit usageChanged();
}

void UsageView::takeLimits()
{
    for (auto figures = m_figures.begin(); figures != m_figures.end(); ++figures)
        *figures = UsageFigures::of(m_usage.value(figures.key()));
    m_model->refreshCells();
    showTotals();
    emit usageChanged();
}

void UsageView::focusInstrument()
{
    QString found;
    for (auto usage = m_usage.cbegin(); usage != m_usage.cend(); ++usage) {
        const bool isIt = textOf(*usage, Orvane_Fields::Security::symbol) == m_selection->symbol() &&
                          textOf(*usage, Orvane_Fields::UserAccount::securityExchange) == m_selection->exchange();
        if (isIt && (found.isEmpty() || isOpen(*usage)))
            found = usage.key();
    }
    m_table->chooseKey(found);
    m_table->setFocus(Qt::ShortcutFocusReason);
}

void UsageView::showTotals()
{
    UsageTotals totals;
    for (const UsageFigures &figures : qAsConst(m_figures))
        totals.add(figures);
    QString text = tr("敞口 %1　浮动 %2　实现 %3　总盈亏 %4")
                       .arg(Format::money(totals.exposure), Format::money(totals.floatProfit),
                            Format::money(totals.realizeProfit), Format::money(totals.totalProfit));
    if (totals.withoutPrice > 0)
        text += tr("　（%1 行无价，未计入）").arg(totals.withoutPrice);
    m_totals->setText(text);
}
