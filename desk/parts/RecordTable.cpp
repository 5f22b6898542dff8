#include "RecordTable.h"

#include "BarDelegate.h"
#include "CsvText.h"
#include "EventBus.h"
#include "Format.h"
#include "Layout.h"
#include "PageShell.h"
#include "PinyinInitials.h"
#include "VantaKeys.h"

#include <QtCore/QSaveFile>
#include <QtCore/QSortFilterProxyModel>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>

#include <algorithm>

namespace {

int defaultCharacters(const Column &column)
{
    if (column.width > 0)
        return column.width;
    switch (column.kind) {
    case CellKind::Text:
    case CellKind::Bar:
        return 14;
    case CellKind::Money:
        return 15;
    case CellKind::Share:
        return 8;
    default:
        return 12;
    }
}

} // namespace

/// Sorts by values, what has none last, and hides what does not pass filter and search.
class RecordTable::Proxy : public QSortFilterProxyModel
{
public:
    Proxy(RecordModel *model, QObject *parent)
        : QSortFilterProxyModel(parent)
        , m_model(model)
    {
        setSourceModel(model);
        setSortRole(RecordModel::ValueRole);
        setDynamicSortFilter(true);
    }

    void setFilter(std::function<bool(const VariantRecord &)> passes)
    {
        m_passes = std::move(passes);
        invalidateFilter();
    }

    void search(const QString &text)
    {
        m_text = text.trimmed();
        invalidateFilter();
    }

    void setThenBy(const QVector<int> &columns) { m_thenBy = columns; }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &) const override
    {
        const VariantRecord record = m_model->record(row);
        if (m_passes && !m_passes(record))
            return false;
        if (m_text.isEmpty())
            return true;
        const QVector<Column> &columns = m_model->columns();
        return std::any_of(columns.cbegin(), columns.cend(), [&](const Column &column) {
            const QString cell = Format::cell(column, record);
            return cell.contains(m_text, Qt::CaseInsensitive) ||
                   (column.kind == CellKind::Text && PinyinInitials(cell).contains(m_text.toLower()));
        });
    }

    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override
    {
        const QVariant a = left.data(RecordModel::ValueRole);
        const QVariant b = right.data(RecordModel::ValueRole);
        if (a.isValid() != b.isValid())
            return a.isValid() == (sortOrder() == Qt::AscendingOrder);
        if (a != b)
            return isLess(a, b);
        for (const int column : m_thenBy) {
            const QVariant first = left.siblingAtColumn(column).data(RecordModel::ValueRole);
            const QVariant second = right.siblingAtColumn(column).data(RecordModel::ValueRole);
            if (first != second)
                return isLess(first, second);
        }
        return false;
    }

private:
    static bool isLess(const QVariant &a, const QVariant &b)
    {
        if (a.userType() == QMetaType::Double)
            return a.toDouble() < b.toDouble();
        return QString::compare(a.toString(), b.toString()) < 0;
    }

    QVector<int> m_thenBy;
    RecordModel *m_model;
    std::function<bool(const VariantRecord &)> m_passes;
    QString m_text;
};

RecordTable::RecordTable(const QString &name, RecordModel *model, QWidget *parent)
    : QTableView(parent)
    , m_model(model)
    , m_proxy(new Proxy(model, this))
    , m_search(new QLineEdit(this))
{
    setObjectName(name);
    setModel(m_proxy);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setSortingEnabled(true);
    setWordWrap(false);
    setShowGrid(false); // drawGrid()
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (int i = 0; i < model->columns().size(); ++i) {
        if (model->columns().at(i).kind == CellKind::Bar)
            setItemDelegateForColumn(i, new BarDelegate(this));
    }

    m_search->setObjectName(name + QStringLiteral(".search"));
    m_search->setPlaceholderText(tr("查找"));
    m_search->setClearButtonEnabled(true);
    m_search->hide();
    connect(m_search, &QLineEdit::textChanged, this, &RecordTable::search);

    restoreLayout();
    connect(horizontalHeader(), &QHeaderView::sectionMoved, this, &RecordTable::saveLayout);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &RecordTable::saveLayout);
    connect(horizontalHeader(), &QHeaderView::sortIndicatorChanged, this, &RecordTable::saveLayout);
    connect(this, &QTableView::doubleClicked, this,
            [this](const QModelIndex &index) { emit activatedRecord(recordsOf({index}).value(0)); });

    // Names of traders come with a load, and may come after the rows that show them.
    EventBus::listen(Vanta_Keys::EventMsgName::ManualT0DataInited, this,
                     [this](const QVariant &) { viewport()->update(); });
    const PageShell *shell = PageShell::instance();
    if (!shell)
        return;
    connect(shell, &PageShell::layoutReset, this, [this](const QString &page) {
        if (page == Layout::pageOf(objectName()))
            resetLayout();
    });
    connect(shell, &PageShell::appearanceChanged, this, &RecordTable::takeFont);
    connect(shell, &PageShell::searchRequested, this, [this](const QWidget *focus) {
        if (focus == this || focus == m_search)
            openSearch();
    });
    connect(shell, &PageShell::exportRequested, this, [this](const QWidget *focus) {
        if (focus == this)
            askForExport();
    });
}

RecordTable::~RecordTable() = default;

void RecordTable::setFilter(std::function<bool(const VariantRecord &)> passes)
{
    m_proxy->setFilter(std::move(passes));
}

void RecordTable::search(const QString &text)
{
    m_proxy->search(text);
}

RecordList RecordTable::recordsOf(const QModelIndexList &rows) const
{
    RecordList records;
    for (const QModelIndex &row : rows)
        records.append(m_model->record(m_proxy->mapToSource(row).row()));
    return records;
}

RecordList RecordTable::shownRecords() const
{
    QModelIndexList rows;
    for (int row = 0; row < m_proxy->rowCount(); ++row)
        rows.append(m_proxy->index(row, 0));
    return recordsOf(rows);
}

RecordList RecordTable::chosenRecords() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    return recordsOf(rows);
}

QString RecordTable::currentKey() const
{
    return currentIndex().data(RecordModel::KeyRole).toString();
}

void RecordTable::chooseKey(const QString &key)
{
    const QModelIndex found = m_proxy->mapFromSource(m_model->index(m_model->rowOf(key), 0));
    if (!found.isValid())
        return;
    setCurrentIndex(found);
    scrollTo(found);
}

QVector<int> RecordTable::shownColumns() const
{
    QVector<int> columns;
    for (int place = 0; place < horizontalHeader()->count(); ++place) {
        const int column = horizontalHeader()->logicalIndex(place);
        if (!isColumnHidden(column))
            columns.append(column);
    }
    return columns;
}

QStringList RecordTable::titles() const
{
    QStringList titles;
    for (const int column : shownColumns())
        titles.append(m_model->columns().at(column).title);
    return titles;
}

QStringList RecordTable::cells(const VariantRecord &row, QString (*write)(const Column &, const VariantRecord &)) const
{
    QStringList cells;
    for (const int column : shownColumns())
        cells.append(write(m_model->columns().at(column), row));
    return cells;
}

QString RecordTable::chosenAsText() const
{
    const RecordList chosen = chosenRecords();
    const RecordList rows = chosen.isEmpty() ? shownRecords() : chosen;
    QString text = titles().join(QLatin1Char('\t')) + QLatin1Char('\n');
    for (const VariantRecord &row : rows)
        text += cells(row, Format::cell).join(QLatin1Char('\t')) + QLatin1Char('\n');
    return text;
}

QString RecordTable::exportTo(const QString &fileName) const
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return tr("%1：%2").arg(fileName, file.errorString());
    file.write("\xEF\xBB\xBF");
    file.write(CsvText::line(titles()).toUtf8());
    const RecordList rows = shownRecords();
    for (const VariantRecord &row : rows)
        file.write(CsvText::line(cells(row, Format::fileCell)).toUtf8());
    return file.commit() ? QString() : tr("%1：%2").arg(fileName, file.errorString());
}

void RecordTable::askForExport()
{
    const QString proposed = objectName().replace(QLatin1Char('.'), QLatin1Char('-')) + QStringLiteral(".csv");
    auto *dialog = new QFileDialog(this, tr("导出"), proposed, tr("CSV 文件 (*.csv)"));
    dialog->setObjectName(QStringLiteral("export"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->selectFile(proposed);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &fileName) {
        const QString errorText = exportTo(fileName);
        if (PageShell *shell = PageShell::instance())
            shell->notify(errorText.isEmpty() ? PageShell::Notice::Success : PageShell::Notice::Refusal,
                          errorText.isEmpty() ? tr("已导出到 %1").arg(fileName) : tr("导出失败：%1").arg(errorText));
    });
    dialog->open();
}

void RecordTable::openSearch()
{
    m_search->show();
    m_search->setFocus();
    m_search->selectAll();
    placeSearch();
}

void RecordTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    placeSearch();
}

void RecordTable::placeSearch()
{
    const QSize size = m_search->sizeHint();
    m_search->setGeometry(width() - size.width() - 24, height() - size.height() - 4, size.width(), size.height());
}

int RecordTable::endOfSeen() const
{
    const int last = rowAt(viewport()->height() - 1);
    return last < 0 ? m_proxy->rowCount() : last + 1;
}

/// One range spans all that changed, and the base class draws all of it: of the rows that are seen few have changed.
void RecordTable::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight, const QVector<int> &)
{
    const int end = std::min(bottomRight.row() + 1, endOfSeen());
    for (int row = std::max({0, topLeft.row(), rowAt(0)}); row < end; ++row) {
        if (m_model->hasChanged(m_proxy->mapToSource(m_proxy->index(row, 0)).row()))
            viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
    }
}

void RecordTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    drawGrid();
}

/// As filled rectangles: the lines of the view's own grid are drawn pixel by pixel, which took as long as all the
/// cells.
void RecordTable::drawGrid() const
{
    QStyleOptionViewItem option;
    option.initFrom(this);
    const QColor colour = QColor::fromRgba(QRgb(style()->styleHint(QStyle::SH_Table_GridLineColor, &option, this)));
    const int right = horizontalHeader()->length() - horizontalHeader()->offset();
    const int end = endOfSeen();
    QPainter painter(viewport());
    for (int row = std::max(0, rowAt(0)); row < end; ++row)
        painter.fillRect(0, rowViewportPosition(row) + rowHeight(row) - 1, right, 1, colour);
    const int bottom = verticalHeader()->length() - verticalHeader()->offset();
    for (int column = 0; column < m_model->columns().size(); ++column) {
        if (!isColumnHidden(column))
            painter.fillRect(columnViewportPosition(column) + columnWidth(column) - 1, 0, 1, bottom, colour);
    }
}

void RecordTable::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(chosenAsText());
    } else if (event->key() == Qt::Key_Escape && m_search->isVisible()) {
        m_search->clear();
        m_search->hide();
        setFocus();
    } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentIndex().isValid()) {
        emit activatedRecord(recordsOf({currentIndex()}).value(0));
    } else {
        QTableView::keyPressEvent(event);
    }
}

void RecordTable::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions());
    menu->addSeparator();
    menu->addAction(tr("复制"), this, [this] { QApplication::clipboard()->setText(chosenAsText()); });
    menu->addAction(tr("查找"), this, &RecordTable::openSearch);
    menu->addAction(tr("导出…"), this, &RecordTable::askForExport);
    QMenu *columns = menu->addMenu(tr("列"));
    for (int i = 0; i < m_model->columns().size(); ++i) {
        QAction *action = columns->addAction(m_model->columns().at(i).title);
        action->setCheckable(true);
        action->setChecked(!isColumnHidden(i));
        action->setEnabled(isColumnHidden(i) || shownColumns().size() > 1);
        connect(action, &QAction::toggled, this, [this, i](bool on) {
            setColumnHidden(i, !on);
            saveLayout();
        });
    }
    menu->popup(event->globalPos());
}

/// Widths that the user has chosen stay in proportion.
void RecordTable::takeFont()
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    const int character = Layout::characterWidth(fontMetrics());
    if (character == m_character)
        return;
    m_isRestoring = true;
    for (int i = 0; i < m_model->columns().size(); ++i)
        setColumnWidth(i, columnWidth(i) * character / m_character);
    m_isRestoring = false;
    m_character = character;
}

void RecordTable::setDefaultWidths()
{
    m_character = Layout::characterWidth(fontMetrics());
    for (int i = 0; i < m_model->columns().size(); ++i) {
        const Column &column = m_model->columns().at(i);
        const int ofTitle = fontMetrics().horizontalAdvance(column.title) + 2 * m_character;
        setColumnWidth(i, qMax(ofTitle, m_character * defaultCharacters(column) + 12));
    }
}

/// With the ids of the columns: a layout of other columns would put widths and orders where they do not belong.
QString RecordTable::layoutName() const
{
    QStringList ids;
    for (const Column &column : m_model->columns())
        ids.append(column.id);
    return objectName() + QLatin1Char('/') + ids.join(QLatin1Char('_'));
}

void RecordTable::restoreLayout()
{
    m_isRestoring = true;
    setDefaultWidths();
    if (!horizontalHeader()->restoreState(Layout::kept(layoutName())))
        sortByDefault();
    m_isRestoring = false;
}

int RecordTable::columnOf(const QString &columnId) const
{
    const Columns &columns = m_model->columns();
    const auto found =
        std::find_if(columns.cbegin(), columns.cend(), [&](const Column &column) { return column.id == columnId; });
    return found == columns.cend() ? -1 : int(found - columns.cbegin());
}

void RecordTable::setDefaultSort(const QString &columnId, Qt::SortOrder order, const QStringList &thenBy)
{
    m_defaultSort = columnOf(columnId);
    m_defaultOrder = order;
    QVector<int> columns;
    for (const QString &id : thenBy)
        columns.append(columnOf(id));
    m_proxy->setThenBy(columns);
    if (!Layout::kept(layoutName()).isEmpty())
        return;
    m_isRestoring = true; // what the user has not chosen is not kept
    sortByDefault();
    m_isRestoring = false;
}

void RecordTable::sortByDefault()
{
    sortByColumn(m_defaultSort, m_defaultOrder);
}

void RecordTable::saveLayout() const
{
    if (!m_isRestoring)
        Layout::keep(layoutName(), horizontalHeader()->saveState());
}

void RecordTable::resetLayout()
{
    m_isRestoring = true;
    for (int i = 0; i < m_model->columns().size(); ++i) {
        setColumnHidden(i, false);
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(i), i);
    }
    setDefaultWidths();
    sortByDefault();
    m_isRestoring = false;
    saveLayout();
}
