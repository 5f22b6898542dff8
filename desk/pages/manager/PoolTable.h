#pragma once

#include <QtWidgets/QTableView>

class PoolEditModel;

/// The table of the allocation editor, for the keyboard: a digit typed anywhere in a row goes into its quantity, Enter
/// opens the cell, Delete removes the chosen rows.
class PoolTable : public QTableView
{
    Q_OBJECT

public:
    PoolTable(const QString &name, PoolEditModel *model, QWidget *parent = nullptr);

    QStringList chosenTraders() const;
    void choose(const QString &trader);
    void closeCell(); ///< takes what is typed in an open one

signals:
    void removalAsked();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    PoolEditModel *m_model;
};
