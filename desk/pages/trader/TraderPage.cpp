#include "TraderPage.h"

#include "AccountList.h"
#include "ConfirmDialog.h"
#include "FillsView.h"
#include "HCore.h"
#include "Layout.h"
#include "MasterFields.h"
#include "OrderPanel.h"
#include "OrderPlan.h"
#include "OrderResults.h"
#include "OrderSender.h"
#include "OrdersView.h"
#include "OrvaneFields.h"
#include "QuoteView.h"
#include "RecordTable.h"
#include "ResultsView.h"
#include "SymbolBox.h"
#include "SymbolQuote.h"
#include "SymbolSettingsDialog.h"
#include "TradeSelection.h"
#include "UsageView.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolButton>

#include <algorithm>

namespace {

constexpr int recheckMs = 100;

QString asksBeforeSetting()
{
    return QStringLiteral("DeskTrade.AskBeforeSending");
}

QSplitter *splitter(const QString &name, Qt::Orientation orientation, const QList<QWidget *> &parts,
                    const QList<int> &sizes)
{
    auto *splitter = new QSplitter(orientation);
    for (QWidget *part : parts)
        splitter->addWidget(part);
    Layout::manage(splitter, name, sizes);
    return splitter;
}

} // namespace

PageDescription TraderPage::description()
{
    return {QStringLiteral("trade"), tr("交易"), {}, [] { return new TraderPage; }};
}

TraderPage::TraderPage(QWidget *parent)
    : QWidget(parent)
    , m_selection(new TradeSelection(this))
    , m_sender(new OrderSender(this))
    , m_symbol(new SymbolBox(m_selection))
    , m_settings(new QToolButton)
    , m_asksBefore(new QCheckBox(tr("发送前确认")))
    , m_buy(new OrderPanel(true, m_selection))
    , m_sell(new OrderPanel(false, m_selection))
    , m_active(m_buy)
    , m_quote(new QuoteView(m_selection))
    , m_usage(new UsageView(m_selection))
    , m_orders(new OrdersView)
    , m_results(new ResultsView)
{
    arrange();
    connectParts();
    addCommands();
    showGate();
}

void TraderPage::arrange()
{
    QSplitter *top =
        splitter(QStringLiteral("trade.top"), Qt::Horizontal, {accounts(), entry(), m_quote}, {200, 700, 660});
    QSplitter *records =
        splitter(QStringLiteral("trade.records"), Qt::Vertical, {new FillsView, m_results}, {150, 150});
    QSplitter *bottom = splitter(QStringLiteral("trade.bottom"), Qt::Horizontal, {m_orders, records}, {830, 740});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(splitter(QStringLiteral("trade.rows"), Qt::Vertical, {top, m_usage, bottom}, {330, 240, 330}));
}

QWidget *TraderPage::accounts()
{
    auto *part = new QWidget;
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("交易账户（按优先级）")));
    layout->addWidget(new AccountList(m_selection));
    return part;
}

QWidget *TraderPage::entry()
{
    auto *panels = new QHBoxLayout;
    panels->addWidget(m_buy);
    panels->addWidget(m_sell);
    auto *part = new QWidget;
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(symbolLine());
    layout->addLayout(panels, 1);
    return part;
}

QWidget *TraderPage::symbolLine()
{
    m_settings->setObjectName(QStringLiteral("trade.settings"));
    m_settings->setText(tr("设置…"));
    m_settings->setToolTip(tr("该证券的拆单数量、默认数量和担保品默认值"));
    m_asksBefore->setObjectName(QStringLiteral("trade.ask"));
    m_asksBefore->setToolTip(tr("有风险提示的委托总会要求确认"));
    const QVariant kept = HCore::instance()->settings(asksBeforeSetting(), {}, {}, QSettings::UserScope);
    m_asksBefore->setChecked(!kept.isValid() || kept.toBool());
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("证券")));
    layout->addWidget(m_symbol, 1);
    layout->addWidget(m_settings);
    layout->addWidget(m_asksBefore);
    return line;
}

void TraderPage::connectParts()
{
    connect(m_symbol, &SymbolBox::taken, this, [this] { m_active->focusPrice(); });
    connect(m_settings, &QToolButton::clicked, this, &TraderPage::editSymbolSettings);
    connect(m_asksBefore, &QCheckBox::toggled, this,
            [](bool on) { HCore::instance()->saveSetting(asksBeforeSetting(), on, {}, {}, QSettings::UserScope); });
    for (OrderPanel *panel : {m_buy, m_sell})
        connect(panel, &OrderPanel::sendWanted, this, [this, panel] { beginOrder(panel); });
    connect(m_quote, &QuoteView::priceClicked, this, [this](double price) { m_active->setPrice(price); });
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *now) {
        for (OrderPanel *panel : {m_buy, m_sell}) {
            if (now && panel->isAncestorOf(now))
                m_active = panel;
        }
    });

    m_recheck.setSingleShot(true);
    m_recheck.setInterval(recheckMs);
    connect(&m_recheck, &QTimer::timeout, this, [this] {
        m_buy->recheck();
        m_sell->recheck();
    });
    connect(m_usage, &UsageView::usageChanged, this, [this] {
        if (!m_recheck.isActive())
            m_recheck.start();
    });
    connect(m_usage, &UsageView::closeWanted, this, &TraderPage::fillClosing);
    connect(m_sender, &OrderSender::sentChanged, m_results, &ResultsView::take);
    connect(m_sender, &OrderSender::answered, this, &TraderPage::takeAnswer);
    connect(m_sender, &OrderSender::fateKnown, this, &TraderPage::tellResults);
}

void TraderPage::addCommands()
{
    PageShell *shell = PageShell::instance();
    if (!shell)
        return;
    const auto add = [&](const char *id, const QString &text, const char *keys, const std::function<void()> &run) {
        shell->addCommand({QLatin1String(id), text, QKeySequence(QLatin1String(keys))}, nullptr, run);
    };
    add("trade.buy", tr("买入"), "F1", [this] { goToPanel(m_buy); });
    add("trade.sell", tr("卖出"), "F2", [this] { goToPanel(m_sell); });
    add("trade.orders", tr("委托"), "F3", [this] {
        goTo(m_orders);
        m_orders->focusTable();
    });
    add("trade.usage", tr("额度与敞口"), "F4", [this] {
        goTo(m_usage);
        m_usage->focusInstrument();
    });
    add("trade.panels", tr("单面板/双面板"), "F6", [this] { togglePanels(); });
    add("trade.symbol", tr("选择证券"), "F7", [this] {
        goTo(m_symbol);
        m_symbol->lineEdit()->selectAll();
    });
    connect(shell, &PageShell::sendingGateChanged, this, &TraderPage::showGate);
    connect(shell, &PageShell::appearanceChanged, this, [this] {
        m_buy->takeColors();
        m_sell->takeColors();
    });
}

void TraderPage::goTo(QWidget *widget)
{
    PageShell::instance()->showPage(description().id);
    widget->setFocus(Qt::ShortcutFocusReason);
}

void TraderPage::goToPanel(OrderPanel *panel)
{
    m_active = panel;
    panel->show();
    if (m_selection->symbol().isEmpty()) {
        goTo(m_symbol);
        return;
    }
    PageShell::instance()->showPage(description().id);
    panel->focusPrice();
}

void TraderPage::togglePanels()
{
    OrderPanel *other = m_active == m_buy ? m_sell : m_buy;
    other->setVisible(other->isHidden());
}

void TraderPage::editSymbolSettings()
{
    if (m_selection->symbol().isEmpty()) {
        PageShell::instance()->notify(PageShell::Notice::Info, tr("请先选择证券"));
        return;
    }
    auto *dialog = new SymbolSettingsDialog(m_selection->symbol(), this);
    connect(dialog, &QDialog::accepted, m_buy, &OrderPanel::takeSettings);
    connect(dialog, &QDialog::accepted, m_sell, &OrderPanel::takeSettings);
    dialog->open();
}

void TraderPage::showGate()
{
    const PageShell *shell = PageShell::instance();
    const QString gate = shell ? shell->sendingGate() : QString();
    m_buy->setGate(gate);
    m_sell->setGate(gate);
}

void TraderPage::beginOrder(OrderPanel *panel)
{
    const QString gate = PageShell::instance()->sendingGate();
    const OrderPlan plan = gate.isEmpty() ? OrderPlan::of(panel->wish()) : OrderPlan();
    const QString refusal = gate.isEmpty() ? plan.refusal : gate;
    if (!refusal.isEmpty()) {
        panel->showRefusal(refusal);
        PageShell::instance()->notify(PageShell::Notice::Refusal, refusal);
    } else if (m_asksBefore->isChecked() || !plan.isHarmless()) {
        confirm(panel, plan);
    } else {
        send(panel, plan.rows);
    }
}

void TraderPage::confirm(OrderPanel *panel, const OrderPlan &plan)
{
    auto *dialog = new ConfirmDialog(panel->wish(), plan, this);
    connect(dialog, &QDialog::accepted, this, [this, panel, rows = plan.rows] { send(panel, rows); });
    // Enter on a warning goes back, which must not look like sending.
    connect(dialog, &QDialog::rejected, this,
            [] { PageShell::instance()->notify(PageShell::Notice::Info, tr("未发送")); });
    dialog->open();
}

void TraderPage::send(OrderPanel *panel, const RecordList &rows)
{
    const QString gate = PageShell::instance()->sendingGate(); // it may have come while the user was asked
    if (!gate.isEmpty()) {
        PageShell::instance()->notify(PageShell::Notice::Refusal, gate);
        return;
    }
    panel->beginSending();
    m_sending.insert(m_sender->send(rows), panel);
}

/// Of an order whose result is not known the fields are emptied as well: it may stand, and must not be sent again.
void TraderPage::takeAnswer(int sending, const RecordList &sent)
{
    if (OrderPanel *panel = m_sending.take(sending))
        panel->endSending(!std::all_of(sent.cbegin(), sent.cend(), OrderResults::isRefused));
    tellResults(sent);
}

void TraderPage::fillClosing(const VariantRecord &usage)
{
    using namespace Orvane_Fields;
    const qint64 open = usage.value(Master_Fields::ManualT0::OpenPosQty).toLongLong();
    if (open == 0)
        return;
    const QString symbol = usage.value(Security::symbol).toString();
    OrderPanel *panel = open > 0 ? m_sell : m_buy;
    m_selection->setInstrument(symbol, usage.value(UserAccount::securityExchange).toString());
    panel->fillFor(usage.value(UserAccount::tradingAccount).toString(),
                   SymbolQuote::of(symbol).opposite(panel->isBuy()), std::abs(open));
    goToPanel(panel);
}

void TraderPage::tellResults(const RecordList &sent)
{
    const auto count = [&](bool (*is)(const VariantRecord &)) {
        return int(std::count_if(sent.cbegin(), sent.cend(), is));
    };
    const int accepted = count(OrderResults::isAccepted);
    const int refused = count(OrderResults::isRefused);
    const int unknown = count(OrderResults::isUnknown);
    QStringList parts;
    if (accepted > 0)
        parts.append(tr("已报 %1 笔").arg(accepted));
    if (refused > 0) {
        const auto first = std::find_if(sent.cbegin(), sent.cend(), OrderResults::isRefused);
        parts.append(
            tr("失败 %1 笔：%2")
                .arg(QString::number(refused), first->value(Orvane_Fields::System::textDescription).toString()));
    }
    if (unknown > 0)
        parts.append(tr("结果未知 %1 笔，正在查询").arg(unknown));
    PageShell::instance()->notify(refused + unknown > 0 ? PageShell::Notice::Refusal : PageShell::Notice::Success,
                                  parts.join(tr("；")));
}
