#pragma once

#include "ManualT0LogicExport.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtGui/QColor>
#include <QtWidgets/QWidget>

class ZrListView;

/// The orders that wait at one price of a security, one cell each in the order of the queue, in lots of 100 shares.
/// Large orders stand on the highlight colour. Where one of the user's orders lies at the price, cells of the monitored
/// quantity are marked, all of them: a queue does not tell whose an order is. Quantities are shares, prices money;
/// prices are the same when they differ by less than 1e-10. It is told everything and asks nobody. GUI thread only.
class MANUALT0LOGIC_EXPORT OrderQueuePanel : public QWidget
{
    Q_OBJECT

public:
    explicit OrderQueuePanel(QWidget *parent = nullptr);
    ~OrderQueuePanel() override;

    void SetOrderQueue(double price, const QList<int> &queue); ///< replaces both and draws

    void SetOrderInfos(const QMap<QString, double> &infos); ///< replaces the user's orders, id to price, and draws
    void AppendOrderInfo(const QString &id, double price);  ///< adds an order or alters its price, and draws
    void RemoveOrderInfo(const QString &id);                ///< draws; nothing for an unknown id

    /// The quantity of the user's order and the text colour of its cells; draws. Below 1: no cell is marked.
    void SetMonitorQty(int qty, QColor color);

    // The next three draw nothing: they are seen with the next operation that does.
    void SetBaseQty(int qty);             ///< orders of at least this quantity are large; below 1: none is
    void SetHighlightColor(QColor color); ///< background of large orders; invalid: the skin's
    void SetNormalColor(QColor color);    ///< text of cells that are not marked; invalid: the skin's

    void SetGridSize(QSize size); ///< of one cell, in pixels
    void Clear(); ///< empties the picture; queue, price and orders are kept and come with the next drawing

protected:
    void changeEvent(QEvent *event) override;

private:
    void updateOrderQueue();
    bool isLarge(int qty) const;
    bool anyOrderAtPrice() const;

    int m_baseQty = 0;
    QColor m_normalColor;
    QColor m_highlightColor;
    int m_monitorQty = 0;
    QColor m_monitorColor;
    double m_price = 0;
    QList<int> m_queue;
    QMap<QString, double> m_orderInfos;
    ZrListView *m_list;
};
