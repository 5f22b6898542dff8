#pragma once

#include "VariantRecord.h"

#include <QtWidgets/QWidget>

class OrderQueuePanel;
class QLabel;

/// The orders that wait at the best price of one side, with the user's own marked.
class QueueView : public QWidget
{
    Q_OBJECT

public:
    explicit QueueView(bool isBids, QWidget *parent = nullptr);

    void setQueue(double price, const QList<int> &queue, int decimals);
    void setOwnOrders(const RecordList &liveOrders); ///< of the symbol, both directions, by order id

private:
    void mark();

    const bool m_isBids;
    double m_price = 0;
    RecordList m_own; ///< of this side
    QLabel *m_title;
    OrderQueuePanel *m_panel;
};
