#include "ResultsView.h"

#include "HostNews.h"
#include "HostSession.h"
#include "OrderResults.h"
#include "OrderSender.h"
#include "OrvaneFields.h"
#include "RecordTable.h"
#include "StandFields.h"
#include "TradeColumns.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

using Orvane_Fields::System::textDescription;

namespace {

int signOfState(const VariantRecord &sent)
{
    return OrderResults::isRefused(sent) || OrderResults::isUnknown(sent) ? 1 : 0;
}

} // namespace

ResultsView::ResultsView(QWidget *parent)
    : QWidget(parent)
{
    Column state{QStringLiteral("result"), tr("结果")};
    state.value = ResultsView::stateOf;
    state.sign = signOfState;
    state.width = 7;
    const auto text = [](const VariantRecord &sent) { return sent.value(textDescription).toString(); };
    m_model = new RecordModel({TradeColumns::time(Stand_Fields::Order::orderTime), TradeColumns::account(),
                               TradeColumns::symbol(), TradeColumns::side(), TradeColumns::price(),
                               TradeColumns::quantity(Orvane_Fields::Security::orderQty), state,
                               TradeColumns::remark(text), TradeColumns::orderId()},
                              OrderSender::numberOf, this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("下单结果")));
    auto *table = new RecordTable(QStringLiteral("trade.results"), m_model);
    table->setDefaultSort(QStringLiteral("time"), Qt::DescendingOrder);
    layout->addWidget(table);
    connect(&HostSession::current()->news(), &HostNews::dayBegan, this, &ResultsView::beginDay);
}

/// What is not known yet is asked for on the new day too.
void ResultsView::beginDay()
{
    m_model->flush();
    RecordList open;
    const RecordList rows = m_model->records();
    for (const VariantRecord &sent : rows) {
        if (!OrderResults::isAccepted(sent) && !OrderResults::isRefused(sent))
            open.append(sent);
    }
    m_model->setRows(open);
}

QString ResultsView::stateOf(const VariantRecord &sent)
{
    if (OrderResults::isAccepted(sent))
        return tr("已报");
    if (OrderResults::isUnknown(sent))
        return tr("结果未知");
    if (!OrderResults::isRefused(sent))
        return tr("发送中");
    const bool wasAnswered = sent.contains(Orvane_Fields::System::requestExeStatus);
    return wasAnswered ? tr("失败") : tr("未提交");
}

void ResultsView::take(const RecordList &sent)
{
    m_model->put(sent);
}
