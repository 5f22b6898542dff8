#include "FillsView.h"

#include "HostNews.h"
#include "HostSession.h"
#include "OwnOrders.h"
#include "RecordTable.h"
#include "StandFields.h"
#include "TradeColumns.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

#include <algorithm>

FillsView::FillsView(QWidget *parent)
    : QWidget(parent)
    , m_model(new RecordModel(
          {TradeColumns::time(Stand_Fields::Fill::fillTime), TradeColumns::account(), TradeColumns::symbol(),
           TradeColumns::name(), TradeColumns::side(), TradeColumns::price(),
           TradeColumns::quantity(Stand_Fields::Fill::fillQty), TradeColumns::orderId()},
          [](const VariantRecord &fill) { return fill.value(Stand_Fields::Fill::fillID).toString(); }, this))
{
    auto *table = new RecordTable(QStringLiteral("trade.fills"), m_model);
    table->setDefaultSort(QStringLiteral("time"), Qt::DescendingOrder);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("成交")));
    layout->addWidget(table);

    const HostNews *news = &HostSession::current()->news();
    connect(news, &HostNews::dayBegan, this, [this] { m_model->setRows(OwnOrders::fills()); });
    connect(news, &HostNews::fillsCame, this, [this](const RecordList &fills) {
        RecordList own;
        std::copy_if(fills.cbegin(), fills.cend(), std::back_inserter(own), OwnOrders::isOwn);
        m_model->put(own);
    });
    m_model->setRows(OwnOrders::fills());
}
