#pragma once

#include "PageShell.h"
#include "VariantRecord.h"

class HostNews;

/// Tells the user what happened to his orders: fills, expiries, messages of the business; one note a batch.
class TradeNotices : public QObject
{
    Q_OBJECT

public:
    TradeNotices(HostNews &news, PageShell &shell, QObject *parent);

private:
    void onFills(const RecordList &fills);
    void onOrders(const RecordList &orders);
    void onMessages(const QStringList &lines);

    PageShell &m_shell;
};
