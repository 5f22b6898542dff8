#include "ScriptTables.h"

#include "RecordModel.h"
#include "ScriptWidgets.h"

#include <QtCore/QAbstractProxyModel>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>

namespace {

constexpr int mostListed = 20; ///< rows of a table that a message shows

QAbstractItemView *findView(const QString &name, QString &errorText)
{
    QWidget *widget = ScriptWidgets::find(name, errorText);
    auto *view = qobject_cast<QAbstractItemView *>(widget);
    if (widget && (!view || !view->model()))
        errorText = QStringLiteral("\"%1\" is no table").arg(name);
    return errorText.isEmpty() ? view : nullptr;
}

const RecordModel *recordsOf(const QAbstractItemModel *model)
{
    while (const auto *proxy = qobject_cast<const QAbstractProxyModel *>(model))
        model = proxy->sourceModel();
    return qobject_cast<const RecordModel *>(model);
}

/// -1: there is none.
int columnOf(const QAbstractItemModel *model, const QString &name)
{
    const RecordModel *records = recordsOf(model);
    for (int i = 0; i < model->columnCount(); ++i)
        if ((records && records->columns().value(i).id == name) ||
            model->headerData(i, Qt::Horizontal).toString() == name)
            return i;
    bool isNumber = false;
    const int column = name.toInt(&isNumber);
    return isNumber && column >= 0 && column < model->columnCount() ? column : -1;
}

struct Condition {
    int column = -1;
    QString text;
};

bool readConditions(const QAbstractItemModel *model, const QStringList &texts, QVector<Condition> &conditions,
                    QString &errorText)
{
    for (const QString &text : texts) {
        const int equals = text.indexOf(QLatin1Char('='));
        const Condition condition{columnOf(model, text.left(equals)), text.mid(equals + 1)};
        if (equals < 1)
            errorText = QStringLiteral("\"%1\" is no COLUMN=TEXT").arg(text);
        else if (condition.column < 0)
            errorText = QStringLiteral("there is no column \"%1\"").arg(text.left(equals));
        if (!errorText.isEmpty())
            return false;
        conditions.append(condition);
    }
    return true;
}

QString shownText(const QModelIndex &row, int column)
{
    return row.sibling(row.row(), column).data(Qt::DisplayRole).toString();
}

/// The first row that meets all conditions, children included; invalid: none does.
QModelIndex findRow(const QAbstractItemModel *model, const QVector<Condition> &conditions,
                    const QModelIndex &parent = {})
{
    for (int i = 0; i < model->rowCount(parent); ++i) {
        const QModelIndex row = model->index(i, 0, parent);
        const auto isMet = [&](const Condition &condition) {
            return shownText(row, condition.column) == condition.text;
        };
        if (std::all_of(conditions.cbegin(), conditions.cend(), isMet))
            return row;
        const QModelIndex below = findRow(model, conditions, row);
        if (below.isValid())
            return below;
    }
    return {};
}

QString listing(const QAbstractItemModel *model, const QVector<Condition> &conditions)
{
    QStringList rows;
    for (int i = 0; i < model->rowCount() && i < mostListed; ++i) {
        QStringList cells;
        for (const Condition &condition : conditions)
            cells.append(shownText(model->index(i, 0), condition.column));
        rows.append(cells.join(QStringLiteral(" | ")));
    }
    return QStringLiteral("%1 rows: %2").arg(QString::number(model->rowCount()), rows.join(QStringLiteral("; ")));
}

void clickIndex(QAbstractItemView *view, const QModelIndex &index, const QString &how)
{
    const QPoint at = view->visualRect(index).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    if (how == QLatin1String("dclick"))
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
}

/// A cell of the row that can be clicked: the wanted one unless it is hidden.
QModelIndex visibleCell(const QAbstractItemView *view, const QModelIndex &wanted)
{
    QModelIndex cell = wanted;
    for (int column = 0; view->visualRect(cell).isEmpty() && column < wanted.model()->columnCount(wanted.parent());
         ++column)
        cell = wanted.sibling(wanted.row(), column);
    return cell;
}

QString check(QAbstractItemView *view, const QModelIndex &row)
{
    for (int column = 0; column < row.model()->columnCount(row.parent()); ++column) {
        const QModelIndex index = row.sibling(row.row(), column);
        if (!index.data(Qt::CheckStateRole).isValid())
            continue;
        view->setFocus(Qt::MouseFocusReason);
        view->setCurrentIndex(index);
        QTest::keyClick(view, Qt::Key_Space);
        return {};
    }
    return QStringLiteral("the row has no tick");
}

/// Reads table and conditions; row is what meets them, invalid when nothing does.
QString search(const QString &table, const QStringList &texts, QAbstractItemView *&view, QVector<Condition> &conditions,
               QModelIndex &row)
{
    QString errorText;
    view = findView(table, errorText);
    if (view && readConditions(view->model(), texts, conditions, errorText))
        row = findRow(view->model(), conditions);
    return errorText;
}

} // namespace

QString ScriptTables::cell(const QString &table, const QString &condition, const QString &how)
{
    if (!QStringList{QStringLiteral("click"), QStringLiteral("dclick"), QStringLiteral("check")}.contains(how))
        return QStringLiteral("\"%1\" is not click, dclick or check").arg(how);
    QAbstractItemView *view = nullptr;
    QVector<Condition> conditions;
    QModelIndex row;
    const QString errorText = search(table, {condition}, view, conditions, row);
    if (!errorText.isEmpty())
        return errorText;
    if (!row.isValid())
        return QStringLiteral("%1 has no row %2, but %3").arg(table, condition, listing(view->model(), conditions));
    view->scrollTo(row);
    if (how == QLatin1String("check"))
        return check(view, row);
    clickIndex(view, visibleCell(view, row.sibling(row.row(), conditions.constFirst().column)), how);
    return {};
}

QString ScriptTables::expectRow(const QString &table, const QStringList &texts)
{
    QAbstractItemView *view = nullptr;
    QVector<Condition> conditions;
    QModelIndex row;
    const QString errorText = search(table, texts, view, conditions, row);
    if (!errorText.isEmpty() || row.isValid())
        return errorText;
    return QStringLiteral("expected a row %1 in %2, there are %3")
        .arg(texts.join(QLatin1Char(' ')), table, listing(view->model(), conditions));
}

QString ScriptTables::expectNoRow(const QString &table, const QStringList &texts)
{
    QAbstractItemView *view = nullptr;
    QVector<Condition> conditions;
    QModelIndex row;
    const QString errorText = search(table, texts, view, conditions, row);
    if (!errorText.isEmpty() || !row.isValid())
        return errorText;
    return QStringLiteral("expected no row %1 in %2, there is one").arg(texts.join(QLatin1Char(' ')), table);
}

QString ScriptTables::expectRows(const QString &table, const QString &number)
{
    QString errorText;
    const QAbstractItemView *view = findView(table, errorText);
    if (!view || QString::number(view->model()->rowCount()) == number)
        return errorText;
    return QStringLiteral("expected %1 rows in %2, there are %3")
        .arg(number, table, QString::number(view->model()->rowCount()));
}

void ScriptTables::flush()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows)
        for (RecordModel *model : window->findChildren<RecordModel *>())
            model->flush();
}
