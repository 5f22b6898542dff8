#pragma once

#include "VariantRecord.h"

#include <QtCore/QObject>
#include <QtCore/QSet>

#include <memory>

/// Cancels orders off the GUI thread: every account in a request of its own that waits for no other, so that one
/// whose answer does not come holds up nobody. GUI thread only.
class OrderCanceller : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Orders that are being cancelled are left out.
    void cancel(const RecordList &orders);

    static QString idOf(const VariantRecord &order);

signals:
    void begun(const QStringList &orderIds);

    /// Of one account. Each order with requestExeStatus and textDescription.
    void answered(const QStringList &orderIds, const RecordList &results);

    void finished(int accepted, int refused, int unknown); ///< of one cancel(), all accounts

private:
    struct Count;
    void cancelAccount(const QString &account, const RecordList &orders, const std::shared_ptr<Count> &count);

    QSet<QString> m_underWay;
};
