#include "AllocationEditor.h"

#include "AddPoolBar.h"
#include "AllocationBar.h"
#include "AllocationRun.h"
#include "Format.h"
#include "ManagerTexts.h"
#include "ManualT0Logic.h"
#include "OrvaneFields.h"
#include "PageShell.h"
#include "PoolEditModel.h"
#include "PoolTable.h"
#include "VantaKeys.h"
#include "ViewParts.h"

#include <QtCore/QTime>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int takeServerEveryMs = 100;

bool isLoaded(int family)
{
    return ManualT0Logic::GetInitStateByType(family) == MasterInitStateMgr::Inited;
}

QString quantityText(const std::optional<qint64> &quantity)
{
    return quantity ? Format::quantity(*quantity) : AllocationEditor::tr("无");
}

} // namespace

AllocationEditor::AllocationEditor(QWidget *parent)
    : QWidget(parent)
    , m_model(new PoolEditModel(this))
    , m_title(ViewParts::label(QStringLiteral("manage.edit.title")))
    , m_bar(new AllocationBar)
    , m_sums(ViewParts::label(QStringLiteral("manage.edit.sums")))
    , m_notice(ViewParts::label(QStringLiteral("manage.edit.notice")))
    , m_table(new PoolTable(QStringLiteral("manage.edit.pools"), m_model))
    , m_addBar(new AddPoolBar)
    , m_remove(ViewParts::button(QStringLiteral("manage.edit.remove"), tr("删除行")))
    , m_revert(ViewParts::button(QStringLiteral("manage.edit.revert"), tr("还原")))
    , m_apply(ViewParts::button(QStringLiteral("manage.edit.apply"), tr("应用(&Y)")))
    , m_status(ViewParts::label(QStringLiteral("manage.edit.status")))
{
    build();
    follow();
    edit({});
}

void AllocationEditor::build()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    layout->addWidget(m_title);
    layout->addWidget(m_bar);
    layout->addWidget(m_sums);
    layout->addWidget(m_notice);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_addBar);
    layout->addWidget(buttonBar());
    layout->addWidget(m_status);
    m_notice->hide();

    connect(m_model, &PoolEditModel::edited, this, &AllocationEditor::showState);
    connect(m_table, &PoolTable::removalAsked, this, &AllocationEditor::removeChosen);
    connect(m_addBar, &AddPoolBar::added, this, &AllocationEditor::addPool);
    connect(m_remove, &QPushButton::clicked, this, &AllocationEditor::removeChosen);
    connect(m_revert, &QPushButton::clicked, this, &AllocationEditor::revertChosen);
    connect(m_apply, &QPushButton::clicked, this, &AllocationEditor::apply);
}

QWidget *AllocationEditor::buttonBar()
{
    auto *bar = new QWidget;
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    m_revert->setToolTip(tr("选中的行还原为服务器的数值；未选中时全部还原"));
    layout->addWidget(m_apply); // notes come up at the lower right
    layout->addWidget(m_remove);
    layout->addWidget(m_revert);
    layout->addStretch(1);
    return bar;
}

void AllocationEditor::follow()
{
    using namespace Vanta_Keys::EventMsgName;
    auto *later = new Later(
        takeServerEveryMs, [this] { takeServer(); }, this);
    later->follow(
        {ManualT0DataInited, ManualT0ResourceUpdated, ManualT0SecurityPoolUpdated, ManualT0SecurityPoolDeleted});
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::sendingGateChanged, this, &AllocationEditor::showState);
}

void AllocationEditor::edit(const QString &resourceId)
{
    m_wantedId = resourceId;
    if (m_run || (resourceId == m_resourceId && !resourceId.isEmpty()))
        return;
    if (m_model->edit().isTyped() && !m_resource.isEmpty())
        m_waiting.insert(m_resourceId, m_model->edit());
    m_resourceId = resourceId;
    m_resource = ManualT0Logic::GetResourceDetailById(resourceId);
    m_notice->hide();
    m_status->clear();
    const auto waiting = m_waiting.find(resourceId);
    if (waiting != m_waiting.end()) {
        setEdit(*waiting);
        m_waiting.erase(waiting);
        takeServer();
        return;
    }
    PoolEdit fresh(ManualT0Logic::PublicTrader, HeldPools::unitOf(m_resource));
    if (!m_resource.isEmpty())
        fresh.takeServer(HeldPools::resourceQty(m_resource), HeldPools::known(m_resource));
    setEdit(fresh);
}

void AllocationEditor::startTyping()
{
    if (m_model->rowCount() == 0) {
        m_addBar->setFocus();
        return;
    }
    m_table->setFocus();
    if (!m_table->currentIndex().isValid())
        m_table->choose(m_model->traderAt(0));
}

void AllocationEditor::takeServer()
{
    // While a family is loaded anew, and when that failed, it is empty or filled in part.
    if (!isLoaded(ManualT0Logic::Resources) || !isLoaded(ManualT0Logic::SecurityPools))
        return;
    for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();)
        waiting =
            ManualT0Logic::GetResourceDetailById(waiting.key()).isEmpty() ? m_waiting.erase(waiting) : waiting + 1;
    if (m_resourceId.isEmpty())
        return;
    m_resource = ManualT0Logic::GetResourceDetailById(m_resourceId);
    PoolEdit now = m_model->edit();
    const QVector<PoolEdit::ServerChange> changes =
        now.takeServer(HeldPools::resourceQty(m_resource),
                       m_resource.isEmpty() ? PoolEdit::ServerPools() : HeldPools::known(m_resource));
    setEdit(now);
    announce(changes);
    if (m_run)
        m_run->serverShown();
}

void AllocationEditor::announce(const QVector<PoolEdit::ServerChange> &changes)
{
    if (changes.isEmpty())
        return;
    QStringList lines;
    for (const PoolEdit::ServerChange &change : changes) {
        const QString what = change.trader.isEmpty() ? tr("资源数量") : ManagerTexts::trader(change.trader);
        const QString before = quantityText(change.before);
        const QString now = quantityText(change.now);
        lines.append(before == now ? tr("%1 上限已改").arg(what) : tr("%1 %2 → %3").arg(what, before, now));
    }
    m_notice->setText(tr("%1 服务器上的券池有变化：%2")
                          .arg(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")), lines.join(tr("；"))));
    m_notice->show();
}

void AllocationEditor::addPool(const QString &trader, qint64 quantity)
{
    PoolEdit changed = m_model->edit();
    changed.type(trader, PoolEdit::Quantity, quantity);
    setEdit(changed);
    m_table->choose(trader);
}

void AllocationEditor::removeChosen()
{
    PoolEdit changed = m_model->edit();
    const QStringList traders = m_table->chosenTraders();
    for (const QString &trader : traders)
        changed.remove(trader);
    if (!m_run)
        setEdit(changed);
}

void AllocationEditor::revertChosen()
{
    PoolEdit changed = m_model->edit();
    const QStringList traders = m_table->chosenTraders();
    for (const QString &trader : traders)
        changed.revert(trader);
    if (traders.isEmpty())
        changed.revertAll();
    m_notice->hide();
    setEdit(changed);
}

void AllocationEditor::apply()
{
    m_table->closeCell(); // a key asks for this while a cell is open
    if (m_run || !whyNotToSend().isEmpty())
        return;
    m_run = new AllocationRun(
        m_resource, [this]() -> const PoolEdit & { return m_model->edit(); }, this);
    connect(m_run, &AllocationRun::finished, this, &AllocationEditor::runFinished);
    m_status->setText(tr("应用中…"));
    showState();
    m_run->start();
}

void AllocationEditor::runFinished(bool good, const QString &text)
{
    m_run = nullptr;
    if (good)
        m_notice->hide();
    showState();
    m_status->setText(text);
    if (PageShell *shell = PageShell::instance())
        shell->notify(good ? PageShell::Notice::Success : PageShell::Notice::Refusal,
                      tr("%1：%2").arg(ManagerTexts::security(m_resource), text));
    edit(m_wantedId);
}

void AllocationEditor::setEdit(const PoolEdit &edit)
{
    m_model->setEdit(edit);
    m_addBar->offer(edit);
    showState();
}

QString AllocationEditor::waitingInWords() const
{
    QStringList names;
    for (auto waiting = m_waiting.keyBegin(); waiting != m_waiting.keyEnd(); ++waiting) {
        const VariantRecord resource = ManualT0Logic::GetResourceDetailById(*waiting);
        names.append(resource.value(Orvane_Fields::UserAccount::tradingAccount).toString() + QLatin1Char(' ') +
                     ManagerTexts::security(resource));
    }
    names.sort();
    return names.join(tr("，"));
}

QString AllocationEditor::title() const
{
    if (m_resourceId.isEmpty())
        return tr("选择一个资源以分配券池");
    if (m_resource.isEmpty())
        return tr("资源已不存在：%1").arg(m_resourceId);
    return tr("%1 %2 资源数量 %3")
        .arg(ManagerTexts::account(m_resource.value(Orvane_Fields::UserAccount::tradingAccount).toString()),
             ManagerTexts::security(m_resource), Format::quantity(m_model->edit().resourceQty()));
}

QString AllocationEditor::whyNotToSend() const
{
    const PoolEdit &edit = m_model->edit();
    if (m_resource.isEmpty())
        return tr("没有资源");
    if (const QString gate = ViewParts::gate(); !gate.isEmpty())
        return gate;
    if (edit.freeQty() < 0)
        return tr("超配 %1").arg(Format::quantity(-edit.freeQty()));
    if (edit.maySend())
        return {};
    return edit.steps().isEmpty() ? tr("没有修改") : tr("标红的行不是最小单位的整数倍");
}

void AllocationEditor::showState()
{
    const PoolEdit &edit = m_model->edit();
    m_title->setText(title());
    m_bar->setQuantities(edit.publicQty(), edit.privateQty(), edit.resourceQty());
    m_bar->setVisible(!m_resource.isEmpty());
    m_sums->setVisible(!m_resource.isEmpty());
    const QString why = whyNotToSend();
    const QString state = edit.isTyped() && !why.isEmpty() ? tr("，不能应用：%1").arg(why) : QString();
    const QString waiting = m_waiting.isEmpty() ? QString() : tr("，未应用的还有：%1").arg(waitingInWords());
    m_sums->setText(tr("公共 %1 · 私有 %2 · 未分配 %3")
                        .arg(Format::quantity(edit.publicQty()), Format::quantity(edit.privateQty()),
                             Format::quantity(edit.freeQty())) +
                    state + waiting);
    const bool idle = !m_run && !m_resource.isEmpty();
    m_model->setEditable(idle);
    m_addBar->setUsable(idle);
    m_remove->setEnabled(idle);
    m_revert->setEnabled(idle && edit.isTyped());
    m_apply->setEnabled(idle && why.isEmpty());
    m_apply->setToolTip(why);
}
