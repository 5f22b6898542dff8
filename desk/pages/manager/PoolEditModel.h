#pragma once

#include "PoolEdit.h"

#include <QtCore/QAbstractTableModel>

/// The rows of a PoolEdit as a table in which numbers are typed. Owns the edit. GUI thread only.
class PoolEditModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Trader, Quantity, Exposure, PendExposure, Difference, Server, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    const PoolEdit &edit() const { return m_edit; }
    void setEdit(const PoolEdit &edit); ///< rows that stay keep their place, and what is being typed in a cell

    QString traderAt(int row) const;
    int rowOf(const QString &trader) const;
    void setEditable(bool editable);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    void edited(); ///< by the user, in a cell

private:
    QVariant foreground(const PoolEdit::Row &row) const;
    QString display(const PoolEdit::Row &row, int column) const;

    PoolEdit m_edit;
    QVector<PoolEdit::Row> m_rows;
    bool m_isEditable = true;
};
