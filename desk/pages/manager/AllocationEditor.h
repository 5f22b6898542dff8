#pragma once

#include "PoolEdit.h"
#include "VariantRecord.h"

#include <QtCore/QMap>
#include <QtWidgets/QWidget>

class AddPoolBar;
class AllocationBar;
class AllocationRun;
class PoolEditModel;
class PoolTable;
class QLabel;
class QPushButton;

/// All pools of one resource, as a list in which a manager types. What the server has comes in while he does, is
/// announced, and overwrites nothing that was typed; what was typed for other resources waits for him.
class AllocationEditor : public QWidget
{
    Q_OBJECT

public:
    explicit AllocationEditor(QWidget *parent = nullptr);

    void edit(const QString &resourceId); ///< empty: nothing
    void startTyping();                   ///< focus into the list

private:
    void build();
    QWidget *buttonBar();
    void follow();
    void takeServer();
    void announce(const QVector<PoolEdit::ServerChange> &changes);
    void addPool(const QString &trader, qint64 quantity);
    void removeChosen();
    void revertChosen();
    void apply();
    void runFinished(bool good, const QString &text);
    void setEdit(const PoolEdit &edit);
    void showState();
    QString whyNotToSend() const;
    QString title() const;
    QString waitingInWords() const;

    VariantRecord m_resource; ///< empty: none
    QString m_resourceId;
    QString m_wantedId;                ///< to be shown when what is sent has ended
    QMap<QString, PoolEdit> m_waiting; ///< with something typed, of resources that are not shown
    PoolEditModel *m_model;
    AllocationRun *m_run = nullptr;

    QLabel *m_title;
    AllocationBar *m_bar;
    QLabel *m_sums;
    QLabel *m_notice;
    PoolTable *m_table;
    AddPoolBar *m_addBar;
    QPushButton *m_remove;
    QPushButton *m_revert;
    QPushButton *m_apply;
    QLabel *m_status;
};
