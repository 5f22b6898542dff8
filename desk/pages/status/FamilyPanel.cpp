#include "FamilyPanel.h"

#include "FamilyWatch.h"
#include "ManualT0Logic.h"
#include "PageShell.h"
#include "RecordTable.h"
#include "StatusFields.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

namespace {

Columns columns()
{
    using namespace StatusFields;
    return {{QStringLiteral("family"), FamilyPanel::tr("数据"), CellKind::Text, name(), {}, false, 10},
            {QStringLiteral("state"), FamilyPanel::tr("状态"), CellKind::Text, state(), {}, false, 26},
            {QStringLiteral("rows"), FamilyPanel::tr("行数"), CellKind::Quantity, count(), {}, false, 9},
            {QStringLiteral("time"), FamilyPanel::tr("完成时间"), CellKind::Time, time(), {}, false, 11},
            {QStringLiteral("duration"), FamilyPanel::tr("耗时(毫秒)"), CellKind::Quantity, duration(), {}, false, 12}};
}

QString keyOf(const VariantRecord &row)
{
    return row.value(StatusFields::key()).toString();
}

} // namespace

FamilyPanel::FamilyPanel(QWidget *parent)
    : QWidget(parent)
    , m_watch(FamilyWatch::ofWindow())
    , m_model(new RecordModel(columns(), keyOf, this))
{
    auto *table = new RecordTable(QStringLiteral("status.families"), m_model);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(table);
    column->addWidget(makeButtons());

    connect(m_watch, &FamilyWatch::changed, this, &FamilyPanel::show);
    connect(m_watch, &FamilyWatch::finished, this, [this](int type) {
        m_isCounted[size_t(type)] = false;
        show();
    });
    const PageShell *shell = PageShell::instance();
    connect(shell, &PageShell::refreshRequested, this, &FamilyPanel::refreshAll);
    connect(shell, &PageShell::sendingGateChanged, this, &FamilyPanel::showButtons);
    connect(&m_second, &QTimer::timeout, this, &FamilyPanel::showButtons);
    m_second.start(500);
    show();
}

QPushButton *FamilyPanel::addButton(const QString &name, const QString &text)
{
    auto *button = new QPushButton(text);
    button->setObjectName(name);
    return button;
}

QWidget *FamilyPanel::makeButtons()
{
    auto *buttons = new QWidget;
    auto *line = new QHBoxLayout(buttons);
    line->setContentsMargins(0, 0, 0, 0);
    for (int type = ManualT0Logic::Products; type <= ManualT0Logic::SecurityPools; ++type) {
        QPushButton *button =
            addButton(QStringLiteral("status.refresh.%1").arg(type), tr("刷新%1").arg(FamilyWatch::name(type)));
        connect(button, &QPushButton::clicked, m_watch, [this, type] { m_watch->refresh(type); });
        m_single.append(button);
        line->addWidget(button);
    }
    m_all = addButton(QStringLiteral("status.refresh.all"), {});
    connect(m_all, &QPushButton::clicked, m_watch, &FamilyWatch::refreshAll);
    line->addWidget(m_all);
    line->addStretch();
    return buttons;
}

/// Of the window's own key: it answers also while the button does not.
void FamilyPanel::refreshAll()
{
    PageShell *shell = PageShell::instance();
    if (shell->sendingGate().isEmpty())
        m_watch->refreshAll();
    else
        shell->notify(PageShell::Notice::Refusal, shell->sendingGate());
}

/// Counting copies the records: only after a load, and only for somebody who looks.
void FamilyPanel::count(int type)
{
    if (!isVisible() || m_isCounted[size_t(type)])
        return;
    m_isCounted[size_t(type)] = true;
    m_rows[size_t(type)] = FamilyWatch::rowsOf(type);
}

void FamilyPanel::show()
{
    RecordList rows;
    for (int type = 0; type < FamilyWatch::familyCount; ++type) {
        count(type);
        const FamilyStatus &family = m_watch->status(type);
        VariantRecord row{{StatusFields::key(), type},
                          {StatusFields::name(), FamilyWatch::name(type)},
                          {StatusFields::state(), m_watch->stateText(type)}};
        if (m_isCounted[size_t(type)])
            row.insert(StatusFields::count(), m_rows[size_t(type)]);
        if (family.finishedAt.isValid())
            row.insert(StatusFields::time(), family.finishedAt.toString(StatusFields::timeFormat()));
        if (family.durationMs >= 0)
            row.insert(StatusFields::duration(), family.durationMs);
        rows.append(row);
    }
    m_model->put(rows);
    showButtons();
}

void FamilyPanel::showButtons()
{
    const QString gate = PageShell::instance()->sendingGate();
    for (QPushButton *button : qAsConst(m_single)) {
        button->setEnabled(gate.isEmpty());
        button->setToolTip(gate);
    }
    const int seconds = m_watch->secondsToRefresh();
    m_all->setEnabled(gate.isEmpty() && seconds == 0);
    m_all->setText(seconds > 0 ? tr("全部刷新（%1 秒后）").arg(seconds) : tr("全部刷新"));
    m_all->setToolTip(gate);
}

void FamilyPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_isCounted.fill(false);
    show();
}
