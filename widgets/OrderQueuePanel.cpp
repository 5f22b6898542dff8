#include "OrderQueuePanel.h"

#include "MasterUtils.h"
#include "ZrListView.h"

#include <QtCore/QEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QListView>

#include <algorithm>
#include <utility>

namespace {

constexpr int lot = 100;
constexpr double priceTolerance = 1e-10;

/// Keys of a cell: the decimal texts of item-data roles.
struct CellKeys {
    QString text = QString::number(Qt::DisplayRole);
    QString qty = QString::number(Qt::UserRole);
    QString textColor = QString::number(Qt::ForegroundRole);
    QString background = QString::number(Qt::BackgroundRole);
};

} // namespace

OrderQueuePanel::OrderQueuePanel(QWidget *parent)
    : QWidget(parent, Qt::WindowFlags())
    , m_list(new ZrListView(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setMargin(0);
    layout->addWidget(m_list);
    m_list->setViewMode(QListView::IconMode);
    m_list->getOriginListView()->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->getOriginListView()->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setKeyEnable(false);
}

OrderQueuePanel::~OrderQueuePanel() = default;

void OrderQueuePanel::SetOrderQueue(double price, const QList<int> &queue)
{
    m_price = price;
    m_queue = queue;
    updateOrderQueue();
}

void OrderQueuePanel::SetOrderInfos(const QMap<QString, double> &infos)
{
    m_orderInfos = infos;
    updateOrderQueue();
}

void OrderQueuePanel::AppendOrderInfo(const QString &id, double price)
{
    m_orderInfos.insert(id, price);
    updateOrderQueue();
}

void OrderQueuePanel::RemoveOrderInfo(const QString &id)
{
    if (m_orderInfos.remove(id) > 0)
        updateOrderQueue();
}

void OrderQueuePanel::SetMonitorQty(int qty, QColor color)
{
    m_monitorQty = qty;
    m_monitorColor = std::move(color);
    updateOrderQueue();
}

void OrderQueuePanel::SetBaseQty(int qty)
{
    m_baseQty = qty;
}

void OrderQueuePanel::SetHighlightColor(QColor color)
{
    m_highlightColor = std::move(color);
}

void OrderQueuePanel::SetNormalColor(QColor color)
{
    m_normalColor = std::move(color);
}

void OrderQueuePanel::SetGridSize(QSize size)
{
    m_list->setGridSize(size);
}

void OrderQueuePanel::Clear()
{
    m_list->updateRecordDataList({});
}

bool OrderQueuePanel::anyOrderAtPrice() const
{
    const auto isAtPrice = [this](double price) { return qAbs(price - m_price) < priceTolerance; };
    return std::any_of(m_orderInfos.cbegin(), m_orderInfos.cend(), isAtPrice);
}

/// The three looks of a cell differ in their colours only, so a queue needs each of them once.
void OrderQueuePanel::updateOrderQueue()
{
    const CellKeys keys;
    const auto look = [&keys](const QColor &text, const QColor &background) {
        return VariantRecord{{keys.textColor, text}, {keys.background, background}};
    };
    const VariantRecord marked = look(m_monitorColor, MasterUtils::GetBackgroundColor(m_monitorColor));
    const VariantRecord large = look(m_normalColor, m_highlightColor);
    const VariantRecord ordinary = look(m_normalColor, MasterUtils::SystemBackgroundColor());

    const bool marks = m_monitorQty >= 1 && anyOrderAtPrice();
    RecordList cells;
    cells.reserve(m_queue.size());
    for (const int qty : qAsConst(m_queue)) {
        VariantRecord cell = marks && qty == m_monitorQty ? marked : isLarge(qty) ? large : ordinary;
        cell.insert(keys.text, QString::number(qty / lot));
        cell.insert(keys.qty, qty);
        cells.append(cell);
    }
    m_list->updateRecordDataList(cells);
}

bool OrderQueuePanel::isLarge(int qty) const
{
    return m_baseQty >= 1 && qty >= m_baseQty;
}

void OrderQueuePanel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The skin's background stands in every cell. A cleared panel stays empty.
    if (event->type() == QEvent::PaletteChange && m_list->getOriginListView()->model()->rowCount() > 0)
        updateOrderQueue();
}
