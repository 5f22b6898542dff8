#pragma once

#include "Column.h"

#include <QtCore/QAbstractTableModel>
#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QTimer>

/// Records as a table, each under its key. Changes are taken at any rate and shown ten times a second: one dataChanged
/// over the rows that changed, rows that came are appended, rows that went are removed; a row's place is kept.
/// GUI thread only.
class RecordModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using KeyOf = std::function<QString(const VariantRecord &row)>;

    enum Role {
        ValueRole = Qt::UserRole, ///< Format::value of the cell
        KeyRole,                  ///< the row's key
        BusyRole                  ///< bool: setBusy
    };

    RecordModel(const Columns &columns, KeyOf keyOf, QObject *parent = nullptr);

    const Columns &columns() const { return m_columns; }

    /// Exactly these rows from now on, at once; rows that stay keep their place. Of rows with one key the last counts.
    void setRows(const RecordList &rows);

    /// Adds rows or replaces those of their keys, within a tenth of a second.
    void put(const RecordList &rows);
    void remove(const QStringList &keys); ///< likewise

    /// Shows what waits at once.
    void flush();

    /// Something is under way for these rows: they are shown greyed until it is called again with false.
    void setBusy(const QStringList &keys, bool busy);
    bool isBusy(const QString &key) const { return m_busy.contains(key); }

    /// Every cell that is computed from more than its row (a price, a colour) is to be drawn again.
    void refreshCells();

    /// While dataChanged is told: whether this row of its range is among those that changed.
    bool hasChanged(int row) const { return m_changed.isEmpty() || m_changed.contains(row); }

    VariantRecord record(int row) const { return m_rows.value(row); }
    VariantRecord record(const QString &key) const; ///< as shown; empty when there is none
    RecordList records() const { return m_rows.toList(); }
    QString key(int row) const { return m_keys.value(row); }
    int rowOf(const QString &key) const { return m_index.value(key, -1); }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void shown(); ///< after a batch of changes

private:
    void wait();
    void removeShown(const QSet<QString> &keys);
    void appendShown(const QVector<QString> &keys, const QVector<VariantRecord> &rows);
    void reindex(int from);
    QVariant colour(const Column &column, const VariantRecord &row, const QString &key) const;

    Columns m_columns;
    KeyOf m_keyOf;
    QVector<VariantRecord> m_rows;
    QVector<QString> m_keys;
    QHash<QString, int> m_index;
    QSet<QString> m_busy;
    QSet<int> m_changed; ///< while they are told; empty: the whole range

    QVector<QString> m_waitingOrder; ///< keys that wait, in the order they first came
    QHash<QString, VariantRecord> m_waiting;
    QSet<QString> m_leaving;
    QTimer m_timer;
};
