#include "TradersSwitchBar.h"

#include "Background.h"
#include "ChangeOutcome.h"
#include "ConfirmChange.h"
#include "HostNews.h"
#include "HostSession.h"
#include "ManagerTexts.h"
#include "MasterFields.h"
#include "OrvaneValues.h"
#include "PageShell.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "ViewParts.h"

#include <QtCore/QPair>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace {

namespace Switch = Stand_Values::TradeSwitch;
using Master_Fields::ManualT0::T0TraderId;
namespace Safety_ = Stand_Fields::Safety;

constexpr int subscribeTimeoutMs = 5000;
constexpr int mostTraders = 10000; ///< of one page

/// Whether it succeeded, and the rows. Subscribed first, so that no change falls in between.
QPair<bool, RecordList> loadRules()
{
    HostSession *session = HostSession::current();
    if (!session || !session->channel().subscribe(Stand_MsgType::SafetyRulesPush, {}, {}, subscribeTimeoutMs))
        return {false, {}};
    QString errorText;
    VariantRecord values;
    RecordList rows;
    const QString code =
        session->request(Stand_MsgType::QuerySafetyRulesRequest, {{Stand_Fields::Paging::pageSize, mostTraders}}, {{}},
                         errorText, values, rows);
    return {code == Orvane_Values::RequestExeStatus::success, rows};
}

QString alterRules(const RecordList &rows, QString &errorText)
{
    HostSession *session = HostSession::current();
    VariantRecord values;
    RecordList answered;
    return session ? session->request(Stand_MsgType::AlterSafetyRulesRequest, {}, rows, errorText, values, answered)
                   : Orvane_Values::RequestExeStatus::fail;
}

} // namespace

TradersSwitchBar::TradersSwitchBar(QWidget *parent)
    : QWidget(parent)
    , m_status(ViewParts::label(QStringLiteral("manage.traders.status")))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(addButton(QStringLiteral("manage.traders.halt"), tr("暂停交易(&H)…"), Switch::Halted));
    layout->addWidget(addButton(QStringLiteral("manage.traders.reduce"), tr("只减仓(&R)…"), Switch::ReduceOnly));
    layout->addWidget(addButton(QStringLiteral("manage.traders.activate"), tr("恢复交易(&A)…"), Switch::Active));
    layout->addWidget(m_status, 1);
    if (HostSession *session = HostSession::current())
        connect(&session->news(), &HostNews::safetyRulesChanged, this, &TradersSwitchBar::takePushed);
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::sendingGateChanged, this, &TradersSwitchBar::showState);
    showState();
}

QPushButton *TradersSwitchBar::addButton(const QString &name, const QString &text, const QString &tradeSwitch)
{
    QPushButton *button = ViewParts::button(name, text);
    connect(button, &QPushButton::clicked, this, [this, tradeSwitch] { ask(tradeSwitch); });
    m_buttons.append(button);
    return button;
}

QString TradersSwitchBar::inWords(const QString &tradeSwitch)
{
    if (tradeSwitch == Switch::Halted)
        return tr("已暂停");
    if (tradeSwitch == Switch::ReduceOnly)
        return tr("只减仓");
    return tradeSwitch == Switch::Active ? tr("正常") : QStringLiteral("--");
}

void TradersSwitchBar::load()
{
    if (m_loaded != Loaded::No)
        return;
    m_loaded = Loaded::Loading;
    Background::run(QStringLiteral("manage.traders.switches"), this, loadRules,
                    [this](const QPair<bool, RecordList> &answer) { takeLoaded(answer.first, answer.second); });
}

/// What was pushed meanwhile is newer.
void TradersSwitchBar::takeLoaded(bool good, const RecordList &rows)
{
    m_loaded = good ? Loaded::Yes : Loaded::No;
    for (const VariantRecord &row : rows) {
        const QString trader = row.value(T0TraderId).toString();
        if (!m_switches.contains(trader))
            m_switches.insert(trader, row.value(Safety_::tradeSwitch).toString());
    }
    if (!good)
        m_status->setText(tr("没有读到交易员的交易状态，再次打开本页时重读"));
    emit changed();
}

void TradersSwitchBar::takePushed(const RecordList &rows)
{
    for (const VariantRecord &row : rows)
        m_switches.insert(row.value(T0TraderId).toString(), row.value(Safety_::tradeSwitch).toString());
    emit changed();
}

void TradersSwitchBar::setTraders(const QStringList &chosen)
{
    m_chosen = chosen;
    showState();
}

void TradersSwitchBar::showState()
{
    const QString gate = ViewParts::gate();
    for (QPushButton *button : qAsConst(m_buttons)) {
        button->setEnabled(gate.isEmpty() && !m_chosen.isEmpty());
        button->setToolTip(gate);
    }
}

void TradersSwitchBar::ask(const QString &tradeSwitch)
{
    QStringList lines;
    for (const QString &trader : qAsConst(m_chosen))
        lines.append(
            tr("%1：%2 → %3").arg(ManagerTexts::trader(trader), inWords(switchOf(trader)), inWords(tradeSwitch)));
    if (tradeSwitch != Switch::Active)
        lines.append(tr("已报出的委托仍然有效，需要时另行撤单"));
    ConfirmChange::ask(this, QStringLiteral("manage.traders.confirm"),
                       tr("把 %1 个交易员设为“%2”？").arg(QString::number(m_chosen.size()), inWords(tradeSwitch)),
                       lines, ConfirmChange::Enter::Confirms,
                       [this, traders = m_chosen, tradeSwitch] { send(traders, tradeSwitch); });
}

void TradersSwitchBar::send(const QStringList &traders, const QString &tradeSwitch)
{
    RecordList rows{VariantRecord()}; // the header
    QStringList names;
    for (const QString &trader : traders) {
        rows.append({{T0TraderId, trader}, {Safety_::tradeSwitch, tradeSwitch}});
        names.append(ManagerTexts::trader(trader));
    }
    const QString what = QStringLiteral("%1 %2").arg(names.join(tr("，")), inWords(tradeSwitch));
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [rows] {
            return ChangeOutcome::of(Stand_MsgType::AlterSafetyRulesRequest,
                                     [&rows](QString &errorText) { return alterRules(rows, errorText); });
        },
        [this, what](const ChangeOutcome &outcome) { takeOutcome(what, outcome); });
}

void TradersSwitchBar::takeOutcome(const QString &what, const ChangeOutcome &outcome)
{
    m_status->setText(tr("%1：%2").arg(what, outcome.inWords()));
    if (PageShell *shell = PageShell::instance())
        shell->notify(outcome.isGood() ? PageShell::Notice::Success : PageShell::Notice::Refusal, m_status->text());
}
