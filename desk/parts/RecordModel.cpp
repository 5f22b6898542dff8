#include "RecordModel.h"

#include "Format.h"
#include "PageShell.h"

#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

#include <algorithm>

namespace {

constexpr int showEveryMs = 100;

bool isLeft(CellKind kind)
{
    return kind == CellKind::Text || kind == CellKind::Code || kind == CellKind::Time;
}

} // namespace

RecordModel::RecordModel(const Columns &columns, KeyOf keyOf, QObject *parent)
    : QAbstractTableModel(parent)
    , m_columns(columns)
    , m_keyOf(std::move(keyOf))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(showEveryMs);
    connect(&m_timer, &QTimer::timeout, this, &RecordModel::flush);
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::appearanceChanged, this, &RecordModel::refreshCells);
}

void RecordModel::setRows(const RecordList &rows)
{
    m_waiting.clear();
    m_waitingOrder.clear();
    m_leaving.clear();
    QSet<QString> stay;
    for (const VariantRecord &row : rows)
        stay.insert(m_keyOf(row));
    for (const QString &key : qAsConst(m_keys)) {
        if (!stay.contains(key))
            m_leaving.insert(key);
    }
    put(rows);
    flush();
}

void RecordModel::put(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        const QString key = m_keyOf(row);
        if (!m_waiting.contains(key))
            m_waitingOrder.append(key);
        m_waiting.insert(key, row);
        m_leaving.remove(key);
    }
    wait();
}

void RecordModel::remove(const QStringList &keys)
{
    for (const QString &key : keys) {
        m_leaving.insert(key);
        if (m_waiting.remove(key) > 0)
            m_waitingOrder.removeOne(key);
    }
    wait();
}

void RecordModel::wait()
{
    if (!m_timer.isActive())
        m_timer.start();
}

void RecordModel::flush()
{
    m_timer.stop();
    if (m_waitingOrder.isEmpty() && m_leaving.isEmpty())
        return;
    const QVector<QString> order = std::move(m_waitingOrder);
    const QHash<QString, VariantRecord> waiting = std::move(m_waiting);
    m_waitingOrder.clear();
    m_waiting.clear();
    removeShown(std::exchange(m_leaving, {}));

    int first = m_rows.size();
    int last = -1;
    QVector<QString> newKeys;
    QVector<VariantRecord> newRows;
    for (const QString &key : order) {
        const int row = rowOf(key);
        const VariantRecord record = waiting.value(key);
        if (row < 0) {
            newKeys.append(key);
            newRows.append(record);
        } else if (m_rows.at(row) != record) {
            m_rows[row] = record;
            m_changed.insert(row);
            first = std::min(first, row);
            last = std::max(last, row);
        }
    }
    if (last >= 0)
        emit dataChanged(index(first, 0), index(last, m_columns.size() - 1));
    m_changed.clear();
    appendShown(newKeys, newRows);
    emit shown();
}

/// Neighbours go together: views pay for every removal.
void RecordModel::removeShown(const QSet<QString> &keys)
{
    if (keys.isEmpty())
        return;
    const auto leaves = [&](int row) { return keys.contains(m_keys.at(row)); };
    for (int last = m_keys.size() - 1; last >= 0; --last) {
        if (!leaves(last))
            continue;
        int first = last;
        while (first > 0 && leaves(first - 1))
            --first;
        beginRemoveRows(QModelIndex(), first, last);
        for (int row = first; row <= last; ++row)
            m_index.remove(m_keys.at(row));
        m_rows.remove(first, last - first + 1);
        m_keys.remove(first, last - first + 1);
        reindex(first);
        endRemoveRows();
        last = first;
    }
    m_busy.subtract(keys);
}

void RecordModel::appendShown(const QVector<QString> &keys, const QVector<VariantRecord> &rows)
{
    if (keys.isEmpty())
        return;
    const int first = m_rows.size();
    beginInsertRows(QModelIndex(), first, first + keys.size() - 1);
    m_keys += keys;
    m_rows += rows;
    reindex(first);
    endInsertRows();
}

void RecordModel::reindex(int from)
{
    for (int row = from; row < m_keys.size(); ++row)
        m_index.insert(m_keys.at(row), row);
}

void RecordModel::setBusy(const QStringList &keys, bool busy)
{
    for (const QString &key : keys) {
        if (busy)
            m_busy.insert(key);
        else
            m_busy.remove(key);
        const int row = rowOf(key);
        if (row >= 0)
            emit dataChanged(index(row, 0), index(row, m_columns.size() - 1));
    }
}

void RecordModel::refreshCells()
{
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, m_columns.size() - 1));
}

VariantRecord RecordModel::record(const QString &key) const
{
    return m_rows.value(rowOf(key));
}

int RecordModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int RecordModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant RecordModel::colour(const Column &column, const VariantRecord &row, const QString &key) const
{
    if (isBusy(key))
        return QApplication::palette().color(QPalette::Disabled, QPalette::Text);
    const PageShell *shell = PageShell::instance();
    double value = 0;
    if (column.sign)
        value = column.sign(row);
    else if (column.isSigned)
        value = Format::value(column, row).toDouble();
    if (value == 0 || !shell)
        return {};
    return value > 0 ? shell->riseColor() : shell->fallColor();
}

QVariant RecordModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Column &column = m_columns.at(index.column());
    const VariantRecord &row = m_rows.at(index.row());
    const QString &key = m_keys.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return Format::cell(column, row);
    case Qt::TextAlignmentRole:
        return QVariant(int(Qt::AlignVCenter | (isLeft(column.kind) ? Qt::AlignLeft : Qt::AlignRight)));
    case Qt::ForegroundRole:
        return colour(column, row, key);
    case ValueRole:
        return Format::value(column, row);
    case KeyRole:
        return key;
    case BusyRole:
        return isBusy(key);
    default:
        return {};
    }
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return {};
    const Column &column = m_columns.at(section);
    if (role == Qt::DisplayRole)
        return column.title;
    if (role == Qt::TextAlignmentRole)
        return QVariant(int(Qt::AlignVCenter | (isLeft(column.kind) ? Qt::AlignLeft : Qt::AlignRight)));
    return {};
}
