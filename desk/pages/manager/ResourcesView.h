#pragma once

#include "VariantRecord.h"

#include <QtWidgets/QWidget>

class FilterBar;
class QLabel;
class QPushButton;
class RecordModel;
class RecordTable;
struct ChangeOutcome;

/// Stock set aside, with what of it is handed out; adds, alters and deletes.
class ResourcesView : public QWidget
{
    Q_OBJECT

public:
    explicit ResourcesView(QWidget *parent = nullptr);

signals:
    void chosen(const QString &resourceId);    ///< empty: none
    void editAsked(const QString &resourceId); ///< double click or Enter

private:
    void follow();
    void showRows();
    void showState();
    void add();
    void alter();
    void sendAltered(const VariantRecord &resource);
    void askToDelete();
    void sendDeleted(const RecordList &resources);
    void takeOutcome(const QString &what, const QStringList &keys, const ChangeOutcome &outcome);

    FilterBar *m_filter;
    RecordModel *m_model;
    RecordTable *m_table;
    QPushButton *m_add;
    QPushButton *m_alter;
    QPushButton *m_delete;
    QLabel *m_status;
};
