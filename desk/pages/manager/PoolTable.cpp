#include "PoolTable.h"

#include "Layout.h"
#include "PoolEditModel.h"
#include "TypingDelegate.h"
#include "ViewParts.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QHeaderView>

#include <algorithm>

PoolTable::PoolTable(const QString &name, PoolEditModel *model, QWidget *parent)
    : QTableView(parent)
    , m_model(model)
{
    setObjectName(name);
    setModel(model);
    setItemDelegate(new TypingDelegate(this));
    setSelectionBehavior(SelectRows);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    const int character = Layout::characterWidth(fontMetrics());
    const QVector<int> widths{13, 8, 8, 9, 14};
    for (int column = 0; column < widths.size(); ++column)
        setColumnWidth(column, widths.at(column) * character + 12);
    ViewParts::keepLayout(horizontalHeader(), name);
}

QStringList PoolTable::chosenTraders() const
{
    QStringList traders;
    const QModelIndexList rows = selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        traders.append(m_model->traderAt(row.row()));
    return traders;
}

void PoolTable::choose(const QString &trader)
{
    setCurrentIndex(m_model->index(m_model->rowOf(trader), PoolEditModel::Quantity));
}

void PoolTable::closeCell()
{
    if (state() != EditingState)
        return;
    QWidget *editor = indexWidget(currentIndex());
    if (!editor)
        return;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void PoolTable::keyPressEvent(QKeyEvent *event)
{
    const QString text = event->text();
    if (event->key() == Qt::Key_Delete) {
        emit removalAsked();
        return;
    }
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && state() != EditingState) {
        edit(currentIndex().sibling(currentIndex().row(),
                                    std::max<int>(PoolEditModel::Quantity, currentIndex().column())));
        return;
    }
    const bool isDigit = text.size() == 1 && text.at(0).isDigit();
    if (isDigit && currentIndex().isValid() && !(currentIndex().flags() & Qt::ItemIsEditable))
        setCurrentIndex(m_model->index(currentIndex().row(), PoolEditModel::Quantity));
    QTableView::keyPressEvent(event);
}
