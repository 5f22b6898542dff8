#include "ImportModel.h"

#include "Format.h"
#include "ManagerTexts.h"
#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "PageShell.h"

namespace {

/// What is wrong with an item as it is now: a quantity that was typed here counts, but not of one that stays behind.
QStringList problemsOf(const ImportModel::Item &item)
{
    QStringList problems = item.row.problems;
    const QString quantity = ResourceRows::quantityProblem(item.row.quantity, item.unit);
    if (problems.isEmpty() && item.isTicked && !quantity.isEmpty())
        problems.append(ImportModel::tr("数量：%1").arg(quantity));
    return problems;
}

} // namespace

void ImportModel::setItems(const QVector<Item> &items)
{
    beginResetModel();
    m_items = items;
    endResetModel();
    emit changed();
}

void ImportModel::changeRow(int row)
{
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

void ImportModel::tickAll(bool ticked)
{
    for (int row = 0; row < m_items.size(); ++row) {
        m_items[row].isTicked = ticked && !m_items.at(row).isDone;
        changeRow(row);
    }
    emit changed();
}

void ImportModel::setHeld(const std::function<double(const ResourceRow &row)> &held)
{
    for (int row = 0; row < m_items.size(); ++row) {
        const double now = held(m_items.at(row).row);
        if (now == m_items.at(row).held)
            continue;
        m_items[row].held = now;
        changeRow(row);
    }
}

void ImportModel::setResult(const QVector<int> &rows, const ChangeOutcome &outcome)
{
    for (const int row : rows) {
        Item &item = m_items[row];
        item.result = outcome.isUnknown ? tr("结果未知：核对已有资源后再勾选") : outcome.inWords();
        item.isDone = outcome.isGood();
        item.isTicked = !outcome.isGood() && !outcome.isUnknown;
        changeRow(row);
    }
    emit changed();
}

QVector<int> ImportModel::tickedRows() const
{
    QVector<int> rows;
    for (int row = 0; row < m_items.size(); ++row) {
        if (m_items.at(row).isTicked)
            rows.append(row);
    }
    return rows;
}

int ImportModel::badTicked() const
{
    int bad = 0;
    for (const Item &item : m_items)
        bad += int(item.isTicked && !problemsOf(item).isEmpty());
    return bad;
}

int ImportModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_items.size();
}

int ImportModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString ImportModel::display(const Item &item, int column) const
{
    switch (column) {
    case Line:
        return QString::number(item.row.line);
    case Account:
        return item.row.account;
    case Code:
        return item.row.symbol;
    case Exchange:
        return item.row.exchange;
    case Name:
        return MasterBusinessDataInterface::GetSecurityDetailsBySymbol(item.row.symbol)
            .value(Orvane_Fields::Security::chineseName)
            .toString();
    case Quantity:
        return item.row.isNumber ? Format::quantity(item.row.quantity) : Format::missing();
    case Held:
        return item.held > 0 ? Format::quantity(item.held) : QString();
    case Advice:
        return item.advice < 0 ? Format::missing() : Format::quantity(item.advice);
    case Trader:
        return item.row.trader.isEmpty() ? QString() : ManagerTexts::trader(item.row.trader);
    case Remark:
        if (!item.result.isEmpty())
            return item.result;
        if (const QStringList problems = problemsOf(item); !problems.isEmpty())
            return problems.join(tr("；"));
        return item.advice >= 0 && double(item.row.quantity) > item.advice ? tr("超过可设数量，仅提示") : QString();
    default:
        return {};
    }
}

QVariant ImportModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Item &item = m_items.at(index.row());
    const bool isNumber = index.column() >= Quantity && index.column() <= Advice;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return display(item, index.column());
    case Qt::EditRole:
        return QString::number(item.row.quantity);
    case Qt::CheckStateRole:
        return index.column() == Line ? QVariant(int(item.isTicked ? Qt::Checked : Qt::Unchecked)) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(int(Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft)));
    case Qt::ForegroundRole: {
        const PageShell *shell = PageShell::instance();
        const bool isBad = !item.isDone && (!problemsOf(item).isEmpty() || !item.result.isEmpty());
        return shell && isBad ? QVariant(shell->riseColor()) : QVariant();
    }
    default:
        return {};
    }
}

bool ImportModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!flags(index).testFlag(role == Qt::CheckStateRole ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable))
        return false;
    Item &item = m_items[index.row()];
    if (role == Qt::CheckStateRole) {
        item.isTicked = value.toInt() == Qt::Checked;
    } else {
        bool isNumber = false;
        const qint64 quantity = value.toString().remove(QLatin1Char(',')).trimmed().toLongLong(&isNumber);
        if (!isNumber)
            return false;
        item.row.quantity = quantity;
        item.isTicked = true;
    }
    changeRow(index.row());
    emit changed();
    return true;
}

QVariant ImportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList titles{tr("行"),   tr("资金账号"), tr("代码"),     tr("市场"),   tr("名称"),
                             tr("数量"), tr("已有资源"), tr("可设数量"), tr("交易员"), tr("问题或结果")};
    return titles.value(section);
}

Qt::ItemFlags ImportModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || m_items.at(index.row()).isDone)
        return flags;
    if (index.column() == Line)
        flags |= Qt::ItemIsUserCheckable;
    // Of a row that could not be read it would hide what was written.
    if (index.column() == Quantity && m_items.at(index.row()).row.problems.isEmpty())
        flags |= Qt::ItemIsEditable;
    return flags;
}
