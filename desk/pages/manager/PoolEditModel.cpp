#include "PoolEditModel.h"

#include "Format.h"
#include "ManagerTexts.h"
#include "ManualT0Logic.h"
#include "PageShell.h"

#include <QtGui/QFont>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

namespace {

bool isNumberColumn(int column)
{
    return column >= PoolEditModel::Quantity && column <= PoolEditModel::PendExposure;
}

PoolEdit::Field fieldOf(int column)
{
    return PoolEdit::Field(column - PoolEditModel::Quantity);
}

QString limitText(qint64 limit)
{
    return limit < 0 ? PoolEditModel::tr("不限") : Format::quantity(limit);
}

QString figuresText(const PoolEdit::Figures &figures)
{
    return QStringLiteral("%1 / %2 / %3")
        .arg(Format::quantity(figures[PoolEdit::Quantity]), limitText(figures[PoolEdit::Exposure]),
             limitText(figures[PoolEdit::PendExposure]));
}

QString differenceText(const PoolEdit::Row &row)
{
    if (row.state == PoolEdit::State::Removed)
        return PoolEditModel::tr("删除");
    if (row.state == PoolEdit::State::Same)
        return {};
    const qint64 before = row.server ? (*row.server)[PoolEdit::Quantity] : 0;
    const qint64 more = row.shown[PoolEdit::Quantity] - before;
    const QString sign = more > 0 ? QStringLiteral("+") : QString();
    const QString quantity = more == 0 ? QString() : sign + Format::quantity(more);
    if (row.state == PoolEdit::State::Added)
        return PoolEditModel::tr("新增 %1").arg(quantity).trimmed();
    const bool limits = row.shown[PoolEdit::Exposure] != (*row.server)[PoolEdit::Exposure] ||
                        row.shown[PoolEdit::PendExposure] != (*row.server)[PoolEdit::PendExposure];
    return limits ? PoolEditModel::tr("%1 上限").arg(quantity).trimmed() : quantity;
}

} // namespace

void PoolEditModel::setEdit(const PoolEdit &edit)
{
    const QVector<PoolEdit::Row> rows = edit.rows();
    m_edit = edit;
    for (int row = m_rows.size() - 1; row >= 0; --row) {
        if (edit.hasRow(m_rows.at(row).trader))
            continue;
        beginRemoveRows({}, row, row);
        m_rows.remove(row);
        endRemoveRows();
    }
    // Both are in one order, so a row that is not at its place is a new one.
    for (int row = 0; row < rows.size(); ++row) {
        if (traderAt(row) == rows.at(row).trader)
            continue;
        beginInsertRows({}, row, row);
        m_rows.insert(row, rows.at(row));
        endInsertRows();
    }
    for (int row = 0; row < rows.size(); ++row) {
        if (m_rows.at(row) == rows.at(row))
            continue;
        m_rows[row] = rows.at(row);
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    }
}

QString PoolEditModel::traderAt(int row) const
{
    return m_rows.value(row).trader;
}

int PoolEditModel::rowOf(const QString &trader) const
{
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).trader == trader)
            return row;
    }
    return -1;
}

void PoolEditModel::setEditable(bool editable)
{
    m_isEditable = editable;
}

int PoolEditModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int PoolEditModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString PoolEditModel::display(const PoolEdit::Row &row, int column) const
{
    const bool isPublic = row.trader == ManualT0Logic::PublicTrader;
    switch (column) {
    case Trader:
        return ManagerTexts::trader(row.trader);
    case Quantity:
        return Format::quantity(row.shown[PoolEdit::Quantity]);
    case Exposure:
    case PendExposure:
        return isPublic ? Format::missing() : limitText(row.shown[fieldOf(column)]);
    case Difference:
        return row.isOvertaken ? tr("%1（他人已改）").arg(differenceText(row)) : differenceText(row);
    case Server:
        if (row.state == PoolEdit::State::Same)
            return {};
        return row.server ? figuresText(*row.server) : tr("无");
    default:
        return {};
    }
}

QVariant PoolEditModel::foreground(const PoolEdit::Row &row) const
{
    const PageShell *shell = PageShell::instance();
    if (shell && (row.isOffUnit || row.isOvertaken))
        return shell->riseColor();
    if (row.state == PoolEdit::State::Removed)
        return QApplication::palette().color(QPalette::Disabled, QPalette::Text);
    return {};
}

QVariant PoolEditModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const PoolEdit::Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return display(row, index.column());
    case Qt::EditRole: {
        const qint64 value = isNumberColumn(index.column()) ? row.shown[fieldOf(index.column())] : -1;
        return value < 0 ? QString() : QString::number(value);
    }
    case Qt::TextAlignmentRole:
        return QVariant(int(Qt::AlignVCenter | (isNumberColumn(index.column()) ? Qt::AlignRight : Qt::AlignLeft)));
    case Qt::ForegroundRole:
        return foreground(row);
    case Qt::FontRole: {
        QFont font = QApplication::font("QTableView");
        font.setBold(row.state == PoolEdit::State::Added || row.state == PoolEdit::State::Changed);
        font.setStrikeOut(row.state == PoolEdit::State::Removed);
        return font;
    }
    case Qt::ToolTipRole:
        return row.isOffUnit ? tr("数量和上限须为最小单位的整数倍") : QString();
    default:
        return {};
    }
}

/// An empty limit is none; an empty quantity is no number.
bool PoolEditModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    const QString text = value.toString().remove(QLatin1Char(',')).trimmed();
    const PoolEdit::Field field = fieldOf(index.column());
    bool isNumber = false;
    qint64 number = text.toLongLong(&isNumber);
    if (text.isEmpty() && field != PoolEdit::Quantity) {
        number = ManualT0Logic::InvalidExposure;
        isNumber = true;
    }
    if (!isNumber || number > ManualT0Logic::MaxPoolQty || (number < 0 && field == PoolEdit::Quantity))
        return false;
    PoolEdit changed = m_edit;
    changed.type(traderAt(index.row()), field, number);
    setEdit(changed);
    emit edited();
    return true;
}

QVariant PoolEditModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Trader:
        return tr("交易员");
    case Quantity:
        return tr("券池数量");
    case Exposure:
        return tr("敞口上限");
    case PendExposure:
        return tr("挂单敞口上限");
    case Difference:
        return tr("变化");
    case Server:
        return tr("服务器：数量/敞口/挂单");
    default:
        return {};
    }
}

Qt::ItemFlags PoolEditModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || !m_isEditable || !isNumberColumn(index.column()))
        return flags;
    const PoolEdit::Row &row = m_rows.at(index.row());
    const bool hasLimits = row.trader != ManualT0Logic::PublicTrader;
    return index.column() == Quantity || hasLimits ? flags | Qt::ItemIsEditable : flags;
}
