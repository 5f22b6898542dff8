#include "PoolsView.h"

#include "Background.h"
#include "ChangeOutcome.h"
#include "ConfirmChange.h"
#include "FilterBar.h"
#include "Format.h"
#include "ManagerTexts.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "PageShell.h"
#include "RecordDetails.h"
#include "RecordTable.h"
#include "UsageFigures.h"
#include "VantaKeys.h"
#include "ViewParts.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Master_Fields::ManualT0;

namespace {

QString idOf(const VariantRecord &pool)
{
    return pool.value(PoolDetailId).toString();
}

QVariant traderOf(const VariantRecord &pool)
{
    return ManagerTexts::trader(pool.value(T0TraderId).toString());
}

/// Every negative limit is none.
std::function<QVariant(const VariantRecord &)> limit(const QString &field)
{
    return [field](const VariantRecord &pool) {
        bool isSet = false;
        const double quantity = pool.value(field).toDouble(&isSet);
        return isSet && quantity >= 0 ? QVariant(quantity) : QVariant();
    };
}

Columns columns()
{
    return {SharedColumns::account(),
            SharedColumns::symbol(),
            SharedColumns::chineseName(),
            SharedColumns::exchange(),
            {QStringLiteral("trader"), PoolsView::tr("交易员"), CellKind::Text, {}, traderOf, false, 18},
            {QStringLiteral("quantity"), PoolsView::tr("券池数量"), CellKind::Quantity, PoolTotalQty},
            {QStringLiteral("public"), PoolsView::tr("公共数量"), CellKind::Quantity, PublicPoolQty},
            {QStringLiteral("exposure"), PoolsView::tr("敞口上限"), CellKind::Quantity, {}, limit(MaxExposureQty)},
            {QStringLiteral("pendExposure"),
             PoolsView::tr("挂单敞口上限"),
             CellKind::Quantity,
             {},
             limit(MaxPendExposureQty),
             false,
             14}};
}

QString inWords(const VariantRecord &pool)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(traderOf(pool).toString(), pool.value(Orvane_Fields::UserAccount::tradingAccount).toString(),
             ManagerTexts::security(pool), Format::quantity(pool.value(PoolTotalQty)));
}

} // namespace

PoolsView::PoolsView(QWidget *parent)
    : QWidget(parent)
    , m_filter(new FilterBar(QStringLiteral("manage.pools.filter")))
    , m_merged(new QCheckBox(tr("公共券池并入私有行(&M)")))
    , m_model(new RecordModel(columns(), idOf, this))
    , m_table(new RecordTable(QStringLiteral("manage.pools"), m_model))
    , m_delete(ViewParts::button(QStringLiteral("manage.pools.delete"), tr("删除券池(&D)…")))
    , m_status(ViewParts::label(QStringLiteral("manage.pools.status")))
{
    setFocusProxy(m_table);
    m_merged->setObjectName(QStringLiteral("manage.pools.merged"));
    auto *top = new QHBoxLayout;
    top->addWidget(m_filter, 1);
    top->addWidget(m_merged);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_delete);
    buttons->addWidget(m_status, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);

    RecordDetails::offer(m_table, QStringLiteral("manage.pools.details"));
    m_table->setDefaultSort(QStringLiteral("account"), Qt::AscendingOrder,
                            {QStringLiteral("symbol"), QStringLiteral("exchange"), QStringLiteral("trader")});
    follow();
    showRows();
}

void PoolsView::follow()
{
    auto *later = new Later(
        100, [this] { showRows(); }, this);
    using namespace Vanta_Keys::EventMsgName;
    later->follow({ManualT0DataInited, ManualT0SecurityPoolUpdated, ManualT0SecurityPoolDeleted});
    const auto filter = [this] {
        m_table->setFilter([this](const VariantRecord &row) { return m_filter->hasText(row); });
    };
    filter();
    connect(m_filter, &FilterBar::changed, this, &PoolsView::showRows);
    connect(m_filter, &FilterBar::textChanged, this, filter);
    connect(m_merged, &QCheckBox::toggled, this, &PoolsView::showRows);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &PoolsView::showState);
    connect(m_delete, &QPushButton::clicked, this, &PoolsView::askToDelete);
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::sendingGateChanged, this, &PoolsView::showState);
}

void PoolsView::showRows()
{
    const bool merged = m_merged->isChecked();
    const RecordList pools = m_filter->isAll() && !merged
                                 ? ManualT0Logic::GetAllSecurityPoolList()
                                 : ManualT0Logic::GetSecurityPoolDetail(m_filter->products(), m_filter->assetProps(),
                                                                        m_filter->traders(), {}, {}, merged);
    m_model->setRows(pools);
    showState();
}

void PoolsView::showState()
{
    const QString gate = ViewParts::gate();
    // A merged row stands for two pools, and the one that would go is not plain to see.
    const QString why = m_merged->isChecked() ? tr("合并显示时不能删除") : gate;
    m_delete->setEnabled(why.isEmpty() && m_table->selectionModel()->hasSelection());
    m_delete->setToolTip(why);
}

void PoolsView::askToDelete()
{
    QStringList ids;
    QStringList lines;
    const RecordList pools = m_table->chosenRecords();
    for (const VariantRecord &pool : pools) {
        ids.append(idOf(pool));
        lines.append(inWords(pool));
    }
    ConfirmChange::ask(this, QStringLiteral("manage.pools.confirm"), tr("删除 %1 个券池？").arg(ids.size()), lines,
                       ConfirmChange::Enter::Cancels, [this, ids] { sendDeleted(ids); });
}

void PoolsView::sendDeleted(const QStringList &ids)
{
    m_model->setBusy(ids, true);
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [ids] {
            return ChangeOutcome::of(Master_MsgType::DeleteManualT0SecurityPoolRequest, [&ids](QString &errorText) {
                return ManualT0Logic::DeleteSecurityPoolsByIdList(ids, errorText);
            });
        },
        [this, ids](const ChangeOutcome &outcome) { takeOutcome(ids, outcome); });
}

void PoolsView::takeOutcome(const QStringList &ids, const ChangeOutcome &outcome)
{
    m_model->setBusy(ids, false);
    m_status->setText(tr("删除 %1 个券池：%2").arg(QString::number(ids.size()), outcome.inWords()));
    if (PageShell *shell = PageShell::instance())
        shell->notify(outcome.isGood() ? PageShell::Notice::Success : PageShell::Notice::Refusal, m_status->text());
}
