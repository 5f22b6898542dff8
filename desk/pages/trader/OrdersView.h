#pragma once

#include "Column.h"
#include "OrderCanceller.h"

#include <QtCore/QHash>
#include <QtWidgets/QWidget>

class QCheckBox;
class QHBoxLayout;
class RecordModel;
class RecordTable;

/// The user's orders of the day, and what cancels them.
class OrdersView : public QWidget
{
    Q_OBJECT

public:
    explicit OrdersView(QWidget *parent = nullptr);

    void focusTable(); ///< and a row of it

private:
    Columns columns() const;
    void addCancels(QHBoxLayout *buttons);
    void reload();
    void take(const RecordList &orders);
    void takeAnswer(const QStringList &orderIds, const RecordList &results);
    void tellResult(int accepted, int refused, int unknown);
    void cancel(const RecordList &orders);
    void cancelChosen();
    void cancelSide(const QString &side); ///< empty: both
    void cancelLast();
    QStringList accounts() const;
    QString remarkOf(const VariantRecord &order) const;

    QHash<QString, QString> m_cancelTexts; ///< what became of the last try to cancel, by order id, while it is live
    OrderCanceller m_canceller;
    RecordModel *m_model;
    RecordTable *m_table;
    QCheckBox *m_cancelable;
};
