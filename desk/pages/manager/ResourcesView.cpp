#include "ResourcesView.h"

#include "AddResourcesDialog.h"
#include "Background.h"
#include "ChangeOutcome.h"
#include "ConfirmChange.h"
#include "FilterBar.h"
#include "Format.h"
#include "ManagerTexts.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "PageShell.h"
#include "QuantityDialog.h"
#include "RecordDetails.h"
#include "RecordTable.h"
#include "UsageFigures.h"
#include "VantaKeys.h"
#include "ViewParts.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Master_Fields::ManualT0;

namespace {

QString idOf(const VariantRecord &resource)
{
    return resource.value(ResourceId).toString();
}

QStringList idsOf(const RecordList &resources)
{
    QStringList ids;
    for (const VariantRecord &resource : resources)
        ids.append(idOf(resource));
    return ids;
}

double allocated(const VariantRecord &resource)
{
    return resource.value(PublicPoolQty).toDouble() + resource.value(PrivatePoolQty).toDouble();
}

QVariant freeQuantity(const VariantRecord &resource)
{
    return resource.value(ResourceQty).toDouble() - allocated(resource);
}

QVariant allocatedShare(const VariantRecord &resource)
{
    const double quantity = resource.value(ResourceQty).toDouble();
    return quantity > 0 ? QVariant(allocated(resource) / quantity) : QVariant();
}

QVariant traders(const VariantRecord &resource)
{
    QStringList texts;
    const QStringList ids = resource.value(T0TraderId).toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &id : ids)
        texts.append(ManagerTexts::trader(id));
    return texts.join(ResourcesView::tr("，"));
}

Column narrow(Column column, int width)
{
    column.width = width;
    return column;
}

Columns columns()
{
    return {narrow(SharedColumns::account(), 8),
            narrow(SharedColumns::symbol(), 9),
            narrow(SharedColumns::exchange(), 5),
            narrow(SharedColumns::chineseName(), 10),
            {QStringLiteral("quantity"), ResourcesView::tr("资源数量"), CellKind::Quantity, ResourceQty, {}, false, 8},
            {QStringLiteral("public"), ResourcesView::tr("公共"), CellKind::Quantity, PublicPoolQty, {}, false, 7},
            {QStringLiteral("private"), ResourcesView::tr("私有"), CellKind::Quantity, PrivatePoolQty, {}, false, 7},
            {QStringLiteral("free"), ResourcesView::tr("未分配"), CellKind::Quantity, {}, freeQuantity, false, 7},
            {QStringLiteral("share"), ResourcesView::tr("分配比例"), CellKind::Bar, {}, allocatedShare, false, 9},
            {QStringLiteral("traders"), ResourcesView::tr("交易员"), CellKind::Text, {}, traders, false, 36}};
}

QString inWords(const VariantRecord &resource)
{
    return QStringLiteral("%1 %2 %3")
        .arg(resource.value(Orvane_Fields::UserAccount::tradingAccount).toString(), ManagerTexts::security(resource),
             Format::quantity(resource.value(ResourceQty)));
}

/// The resources with the pools that go with them.
QStringList deletedInWords(const RecordList &resources)
{
    constexpr int all = 3;
    QStringList lines;
    for (const VariantRecord &resource : resources) {
        lines.append(inWords(resource));
        const RecordList pools = ManualT0Logic::GetSecurityPoolDetailByResourceId(idOf(resource), all);
        for (const VariantRecord &pool : pools)
            lines.append(ResourcesView::tr("    券池 %1 %2")
                             .arg(ManagerTexts::trader(pool.value(T0TraderId).toString()),
                                  Format::quantity(pool.value(PoolTotalQty))));
    }
    return lines;
}

} // namespace

ResourcesView::ResourcesView(QWidget *parent)
    : QWidget(parent)
    , m_filter(new FilterBar(QStringLiteral("manage.resources.filter")))
    , m_model(new RecordModel(columns(), idOf, this))
    , m_table(new RecordTable(QStringLiteral("manage.resources"), m_model))
    , m_add(ViewParts::button(QStringLiteral("manage.resources.add"), tr("新增(&N)…")))
    , m_alter(ViewParts::button(QStringLiteral("manage.resources.alter"), tr("改数量(&E)…")))
    , m_delete(ViewParts::button(QStringLiteral("manage.resources.delete"), tr("删除(&D)…")))
    , m_status(ViewParts::label(QStringLiteral("manage.resources.status")))
{
    setFocusProxy(m_table);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {m_add, m_alter, m_delete})
        buttons->addWidget(button);
    buttons->addWidget(m_status, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_filter);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);

    RecordDetails::offer(m_table, QStringLiteral("manage.resources.details"));
    m_table->setDefaultSort(QStringLiteral("account"), Qt::AscendingOrder,
                            {QStringLiteral("symbol"), QStringLiteral("exchange")});
    follow();
    showRows();
}

void ResourcesView::follow()
{
    auto *later = new Later(
        100, [this] { showRows(); }, this);
    using namespace Vanta_Keys::EventMsgName;
    later->follow(
        {ManualT0DataInited, ManualT0ResourceUpdated, ManualT0SecurityPoolUpdated, ManualT0SecurityPoolDeleted});
    m_table->setFilter([this](const VariantRecord &row) { return m_filter->hasText(row); });
    connect(m_filter, &FilterBar::changed, this, &ResourcesView::showRows);
    connect(m_filter, &FilterBar::textChanged, this,
            [this] { m_table->setFilter([this](const VariantRecord &row) { return m_filter->hasText(row); }); });
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &ResourcesView::showState);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { emit chosen(m_table->currentKey()); });
    connect(m_table, &RecordTable::activatedRecord, this,
            [this](const VariantRecord &resource) { emit editAsked(idOf(resource)); });
    connect(m_add, &QPushButton::clicked, this, &ResourcesView::add);
    connect(m_alter, &QPushButton::clicked, this, &ResourcesView::alter);
    connect(m_delete, &QPushButton::clicked, this, &ResourcesView::askToDelete);
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::sendingGateChanged, this, &ResourcesView::showState);
}

void ResourcesView::showRows()
{
    const RecordList resources =
        m_filter->isAll() ? ManualT0Logic::GetAllResourceList()
                          : ManualT0Logic::GetResourceByProductAccount(m_filter->products(), m_filter->assetProp(), {},
                                                                       {}, m_filter->traders());
    m_model->setRows(resources);
    showState();
}

void ResourcesView::showState()
{
    const int count = m_table->selectionModel()->selectedRows().size();
    const QString gate = ViewParts::gate();
    m_add->setEnabled(gate.isEmpty());
    m_alter->setEnabled(gate.isEmpty() && count == 1);
    m_delete->setEnabled(gate.isEmpty() && count > 0);
    for (QPushButton *button : {m_add, m_alter, m_delete})
        button->setToolTip(gate);
}

void ResourcesView::add()
{
    (new AddResourcesDialog(this))->open();
}

void ResourcesView::alter()
{
    const VariantRecord resource = m_table->chosenRecords().value(0);
    const int unit =
        MasterBusinessDataInterface::GetQtyStepBySymbol(resource.value(Orvane_Fields::Security::symbol).toString());
    const QString used = tr("%1，已分配 %2").arg(inWords(resource), Format::quantity(allocated(resource)));
    QuantityDialog::ask(this, QStringLiteral("manage.resources.quantity"), used,
                        qint64(resource.value(ResourceQty).toDouble()), unit, [this, resource](qint64 quantity) {
                            VariantRecord altered = resource;
                            altered.insert(ResourceQty, quantity);
                            sendAltered(altered);
                        });
}

void ResourcesView::sendAltered(const VariantRecord &resource)
{
    m_model->setBusy({idOf(resource)}, true);
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [resource] {
            return ChangeOutcome::of(Master_MsgType::AlterManualT0ResourceRequest, [&resource](QString &errorText) {
                return ManualT0Logic::AlterT0Resource(resource, errorText);
            });
        },
        [this, resource](const ChangeOutcome &outcome) {
            takeOutcome(tr("修改 %1").arg(inWords(resource)), {idOf(resource)}, outcome);
        });
}

void ResourcesView::askToDelete()
{
    const RecordList resources = m_table->chosenRecords();
    ConfirmChange::ask(this, QStringLiteral("manage.resources.confirm"),
                       tr("删除 %1 个资源和它们的券池？").arg(resources.size()), deletedInWords(resources),
                       ConfirmChange::Enter::Cancels, [this, resources] { sendDeleted(resources); });
}

void ResourcesView::sendDeleted(const RecordList &resources)
{
    m_model->setBusy(idsOf(resources), true);
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [resources] {
            return ChangeOutcome::of(Master_MsgType::DeleteManualT0ResourceRequest, [&resources](QString &errorText) {
                return ManualT0Logic::DeleteT0Resource(resources, errorText);
            });
        },
        [this, resources](const ChangeOutcome &outcome) {
            takeOutcome(tr("删除 %1 个资源").arg(resources.size()), idsOf(resources), outcome);
        });
}

void ResourcesView::takeOutcome(const QString &what, const QStringList &keys, const ChangeOutcome &outcome)
{
    m_model->setBusy(keys, false);
    const QString text = tr("%1：%2").arg(what, outcome.inWords());
    m_status->setText(text);
    if (PageShell *shell = PageShell::instance())
        shell->notify(outcome.isGood() ? PageShell::Notice::Success : PageShell::Notice::Refusal, text);
    showRows();
}
