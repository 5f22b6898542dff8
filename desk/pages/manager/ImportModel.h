#pragma once

#include "ChangeOutcome.h"
#include "ResourceRows.h"

#include <QtCore/QAbstractTableModel>

/// What is to be set aside, row by row: ticked or not, with what is wrong with it or how it ended. GUI thread only.
class ImportModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Line, Account, Code, Exchange, Name, Quantity, Held, Advice, Trader, Remark, ColumnCount };

    struct Item {
        ResourceRow row;
        qint64 unit = 1;
        double held = 0;    ///< what the resource has already
        double advice = -1; ///< how much more may be set aside; below 0: unknown
        bool isTicked = false;
        bool isDone = false;
        QString result; ///< how sending it ended
    };

    using QAbstractTableModel::QAbstractTableModel;

    void setItems(const QVector<Item> &items);
    const QVector<Item> &items() const { return m_items; }
    void tickAll(bool ticked); ///< those that are not done
    void setHeld(const std::function<double(const ResourceRow &row)> &held);

    /// How sending rows ended. Those of which nobody knows lose their ticks: sent again they might count twice.
    void setResult(const QVector<int> &rows, const ChangeOutcome &outcome);

    QVector<int> tickedRows() const;
    int badTicked() const; ///< ticked, but something is wrong

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    void changed();

private:
    QString display(const Item &item, int column) const;
    void changeRow(int row);

    QVector<Item> m_items;
};
