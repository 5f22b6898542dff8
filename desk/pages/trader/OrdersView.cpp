#include "OrdersView.h"

#include "HostNews.h"
#include "HostSession.h"
#include "ManualT0Logic.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "OwnOrders.h"
#include "PageShell.h"
#include "RecordTable.h"
#include "StandFields.h"
#include "TradeColumns.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

#include <algorithm>

using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;

OrdersView::OrdersView(QWidget *parent)
    : QWidget(parent)
    , m_model(new RecordModel(columns(), OrderCanceller::idOf, this))
    , m_table(new RecordTable(QStringLiteral("trade.orders"), m_model))
    , m_cancelable(new QCheckBox(tr("仅可撤")))
{
    m_table->setDefaultSort(QStringLiteral("id"), Qt::DescendingOrder);
    m_cancelable->setObjectName(QStringLiteral("trade.orders.cancelable"));
    auto *head = new QHBoxLayout;
    head->addWidget(new QLabel(tr("委托")));
    head->addWidget(m_cancelable);
    head->addStretch(1);
    addCancels(head);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(head);
    layout->addWidget(m_table);

    connect(m_cancelable, &QCheckBox::toggled, this, [this](bool on) {
        m_table->setFilter(on ? OwnOrders::isLive : std::function<bool(const VariantRecord &)>());
    });
    const HostNews *news = &HostSession::current()->news();
    connect(news, &HostNews::dayBegan, this, &OrdersView::reload);
    connect(news, &HostNews::ordersChanged, this, &OrdersView::take);
    connect(&m_canceller, &OrderCanceller::begun, this,
            [this](const QStringList &orderIds) { m_model->setBusy(orderIds, true); });
    connect(&m_canceller, &OrderCanceller::answered, this, &OrdersView::takeAnswer);
    connect(&m_canceller, &OrderCanceller::finished, this, &OrdersView::tellResult);
    reload();
}

Columns OrdersView::columns() const
{
    return {TradeColumns::time(Stand_Fields::Order::orderTime),
            TradeColumns::account(),
            TradeColumns::symbol(),
            TradeColumns::name(),
            TradeColumns::side(),
            TradeColumns::price(),
            TradeColumns::quantity(Orvane_Fields::Security::orderQty),
            TradeColumns::filledQuantity(),
            TradeColumns::orderStatus(),
            TradeColumns::remark([this](const VariantRecord &order) { return remarkOf(order); }),
            TradeColumns::orderId()};
}

void OrdersView::addCancels(QHBoxLayout *buttons)
{
    PageShell *shell = PageShell::instance();
    if (!shell)
        return;
    const auto add = [&](const char *id, const QString &text, const char *keys, const std::function<void()> &run) {
        const QString name = QLatin1String("trade.cancel.") + QLatin1String(id);
        auto *button = new QToolButton;
        button->setDefaultAction(shell->addCommand({name, text, QKeySequence(QLatin1String(keys))}, m_table, run));
        button->setObjectName(name);
        button->setFocusPolicy(Qt::NoFocus); // the table keeps it, and its keys go on working
        buttons->addWidget(button);
    };
    add("chosen", tr("撤选中"), "Z", [this] { cancelChosen(); });
    add("buys", tr("撤买单"), "X", [this] { cancelSide(Stand_Values::Side::buy); });
    add("sells", tr("撤卖单"), "C", [this] { cancelSide(Stand_Values::Side::sell); });
    add("all", tr("全撤"), "G", [this] { cancelSide(QString()); });
    add("last", tr("撤最后一笔"), "Shift+Z", [this] { cancelLast(); });
}

void OrdersView::focusTable()
{
    if (!m_table->selectionModel()->hasSelection())
        m_table->selectRow(qMax(0, m_table->currentIndex().row()));
    m_table->setFocus(Qt::ShortcutFocusReason);
}

void OrdersView::reload()
{
    m_cancelTexts.clear();
    m_model->setRows(OwnOrders::all());
}

void OrdersView::take(const RecordList &orders)
{
    RecordList own;
    std::copy_if(orders.cbegin(), orders.cend(), std::back_inserter(own), OwnOrders::isOwn);
    for (const VariantRecord &order : qAsConst(own)) {
        if (!OwnOrders::isLive(order))
            m_cancelTexts.remove(OrderCanceller::idOf(order));
    }
    m_model->put(own);
}

QString OrdersView::remarkOf(const VariantRecord &order) const
{
    const QString text = m_cancelTexts.value(OrderCanceller::idOf(order));
    return text.isEmpty() ? order.value(textDescription).toString() : text;
}

/// Also those of live orders in which the user may trade no more.
QStringList OrdersView::accounts() const
{
    QStringList accounts = ManualT0Logic::GetAllT0TradingAccountListByCurUser();
    const RecordList orders = m_model->records();
    for (const VariantRecord &order : orders)
        accounts.append(order.value(Orvane_Fields::UserAccount::tradingAccount).toString());
    accounts.removeDuplicates();
    return accounts;
}

void OrdersView::cancelChosen()
{
    RecordList live;
    const RecordList chosen = m_table->chosenRecords();
    std::copy_if(chosen.cbegin(), chosen.cend(), std::back_inserter(live), OwnOrders::isLive);
    cancel(live);
}

void OrdersView::cancelSide(const QString &side)
{
    cancel(ManualT0Logic::GetCancelableOrderList(accounts(), QString(), QString(), {OwnOrders::user()}, side, true));
}

void OrdersView::cancelLast()
{
    const RecordList live =
        ManualT0Logic::GetCancelableOrderList(accounts(), QString(), QString(), {OwnOrders::user()}, QString(), true);
    cancel(live.isEmpty() ? live : RecordList{live.constLast()}); // by order id, and ids grow
}

void OrdersView::cancel(const RecordList &orders)
{
    PageShell *shell = PageShell::instance();
    const QString gate = shell->sendingGate();
    if (!gate.isEmpty())
        shell->notify(PageShell::Notice::Refusal, gate);
    else if (orders.isEmpty())
        shell->notify(PageShell::Notice::Info, tr("没有可撤的委托"));
    else
        m_canceller.cancel(orders);
}

/// An order that ended meanwhile needs no text: its status says it all.
void OrdersView::takeAnswer(const QStringList &orderIds, const RecordList &results)
{
    QHash<QString, QString> texts;
    for (const VariantRecord &result : results) {
        const QString status = result.value(requestExeStatus).toString();
        if (status == Master_Values::RequestExeStatus::timeout)
            texts.insert(OrderCanceller::idOf(result), tr("撤单结果未知"));
        else if (status != Orvane_Values::RequestExeStatus::success)
            texts.insert(OrderCanceller::idOf(result),
                         tr("撤单失败：%1").arg(result.value(textDescription).toString()));
    }
    for (const QString &id : orderIds) {
        if (OwnOrders::isLive(m_model->record(id)))
            m_cancelTexts.insert(id, texts.value(id, tr("撤单已受理")));
    }
    m_model->setBusy(orderIds, false);
}

void OrdersView::tellResult(int accepted, int refused, int unknown)
{
    QStringList parts;
    if (accepted > 0)
        parts.append(tr("撤单已受理 %1 笔").arg(accepted));
    if (refused > 0)
        parts.append(tr("撤单失败 %1 笔").arg(refused));
    if (unknown > 0)
        parts.append(tr("撤单结果未知 %1 笔，请查看委托状态").arg(unknown));
    PageShell::instance()->notify(refused + unknown > 0 ? PageShell::Notice::Refusal : PageShell::Notice::Success,
                                  parts.join(tr("；")));
}
