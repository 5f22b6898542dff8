#pragma once

#include "VariantRecord.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

/// Sends orders off the GUI thread and follows each until it is known what became of it. GUI thread only.
class OrderSender : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// rows: of an OrderPlan, confirmed just now. Each gets a number, unique as long as the program runs. What has to
    /// wait too long, or until the connection is gone, is not sent: its price was meant for another market. Returns
    /// the number that answered() tells.
    int send(const RecordList &rows);

    static QString numberOf(const VariantRecord &sent);

signals:
    void sentChanged(const RecordList &sent);           ///< new ones and those of which more is known, see OrderResults
    void answered(int sending, const RecordList &sent); ///< all of one send()
    void fateKnown(const RecordList &sent);             ///< of a request that had timed out, all its orders

private:
    static RecordList submit(const RecordList &orders, const QElapsedTimer &sinceConfirmed);
    static QString reasonNotToSend(const QElapsedTimer &sinceConfirmed);
    void take(const RecordList &requestOrders);
    void askFate(const QString &requestId, const RecordList &requestOrders);
    void takeFate(const QString &requestId, const RecordList &requestOrders, const RecordList &fate);

    int m_lastNumber = 0;
};
