#pragma once

#include "VariantRecord.h"

#include <QtWidgets/QWidget>

class FilterBar;
class QCheckBox;
class QLabel;
class QPushButton;
class RecordModel;
class RecordTable;
struct ChangeOutcome;

/// Every pool, with a switch that puts the public quantity beside a private pool of the same stock; deletes pools.
class PoolsView : public QWidget
{
    Q_OBJECT

public:
    explicit PoolsView(QWidget *parent = nullptr);

private:
    void follow();
    void showRows();
    void showState();
    void askToDelete();
    void sendDeleted(const QStringList &ids);
    void takeOutcome(const QStringList &ids, const ChangeOutcome &outcome);

    FilterBar *m_filter;
    QCheckBox *m_merged;
    RecordModel *m_model;
    RecordTable *m_table;
    QPushButton *m_delete;
    QLabel *m_status;
};
