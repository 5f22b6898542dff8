#include "MasterComboBox.h"

#include "PinyinInitials.h"

#include <QtCore/QAbstractProxyModel>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QLineEdit>

namespace {

constexpr int searchRole = Qt::UserRole + 1; ///< what typed text is looked for in; UserRole is the item's data

/// Searches one text of an item and shows another.
class SearchCompleter : public QCompleter
{
public:
    explicit SearchCompleter(QComboBox *box)
        : QCompleter(box->model(), box->lineEdit())
    {
        setCompletionRole(searchRole);
        setFilterMode(Qt::MatchContains);
        setCaseSensitivity(Qt::CaseInsensitive);
        setMaxVisibleItems(12);
    }

    QString pathFromIndex(const QModelIndex &index) const override { return index.data(Qt::DisplayRole).toString(); }

    QModelIndex item(const QModelIndex &completion) const
    {
        return static_cast<QAbstractProxyModel *>(completionModel())->mapToSource(completion);
    }

protected:
    /// While its list is open a completer keeps it from the box that the focus has gone to another widget.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QWidget *focused = QApplication::focusWidget();
        if (watched == widget() && event->type() == QEvent::FocusOut && focused && focused != widget())
            popup()->hide();
        return QCompleter::eventFilter(watched, event);
    }
};

} // namespace

MasterComboBox::MasterComboBox(QWidget *parent)
    : QComboBox(parent)
    , IMasterShortCut(this)
    , InputStatusStyle(this)
{
    setInsertPolicy(QComboBox::NoInsert);
    setFocusPolicy(Qt::StrongFocus);
    connect(model(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { makeSearchable(first, last); });
}

MasterComboBox::~MasterComboBox() = default;

void MasterComboBox::clear()
{
    QComboBox::clear();
    clearEditText();
}

void MasterComboBox::setSearchEnabled(bool enabled)
{
    if (enabled == isSearchEnabled())
        return;
    setEditable(enabled);
    if (!enabled)
        return;
    setCompleter(new SearchCompleter(this));
    applySkin();
}

bool MasterComboBox::isSearchEnabled() const
{
    return isEditable();
}

void MasterComboBox::AddItemsList(const QStringList &texts, const QStringList &data)
{
    Q_ASSERT(texts.size() == data.size());
    for (int i = 0; i < texts.size(); ++i)
        addItem(texts.at(i), data.value(i));
}

void MasterComboBox::selectFirstItem()
{
    if (count() > 0)
        setCurrentIndex(0);
}

void MasterComboBox::makeSearchable(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const QString text = itemText(row);
        setItemData(row, QString(text + QLatin1Char('\n') + PinyinInitials(text)), searchRole);
    }
}

bool MasterComboBox::isTyping() const
{
    return lineEdit()->text() != itemText(currentIndex());
}

bool MasterComboBox::isListOpen() const
{
    return completer()->popup()->isVisible();
}

/// What Enter takes: the marked item of the list, else the item of just this text, else the first that begins with it,
/// else the first that fits: whoever types "00003" does not mean 000003.
int MasterComboBox::typedItem() const
{
    const auto *search = static_cast<SearchCompleter *>(completer());
    const QModelIndex marked = search->popup()->currentIndex();
    if (isListOpen() && marked.isValid())
        return search->item(marked).row();
    const QString typed = lineEdit()->text();
    if (typed.isEmpty())
        return -1;
    const int same = findText(typed, Qt::MatchFixedString);
    if (same >= 0)
        return same;
    const int begins = findText(typed, Qt::MatchStartsWith);
    if (begins >= 0)
        return begins;
    completer()->setCompletionPrefix(typed);
    return completer()->completionCount() > 0 ? search->item(search->completionModel()->index(0, 0)).row() : -1;
}

void MasterComboBox::openWholeList()
{
    completer()->setCompletionPrefix(QString());
    completer()->complete();
    QAbstractItemView *list = completer()->popup();
    list->setCurrentIndex(list->model()->index(qMax(0, currentIndex()), 0));
}

void MasterComboBox::take(int item)
{
    const QString typed = lineEdit()->text();
    if (item >= 0)
        setCurrentIndex(item);
    closeSearch();
    if (item < 0) {
        if (!typed.isEmpty())
            emit nothingFits(typed);
        return;
    }
    emit activated(item);
    emit textActivated(itemText(item));
}

void MasterComboBox::closeSearch()
{
    completer()->popup()->hide();
    setEditText(itemText(currentIndex()));
}

/// True when the key was one of the search; others belong to the line edit, or to the window.
bool MasterComboBox::searchKey(int key)
{
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        openWholeList(); // the list takes these keys itself as soon as it is open
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!isTyping() && !isListOpen())
            return false;
        take(typedItem());
        return true;
    case Qt::Key_Escape:
        if (!isTyping() && !isListOpen())
            return false;
        closeSearch();
        return true;
    default:
        return false;
    }
}

void MasterComboBox::keyPressEvent(QKeyEvent *event)
{
    if (isSearchEnabled() && searchKey(event->key()))
        event->accept();
    else
        QComboBox::keyPressEvent(event);
}

/// The tabulator takes the item that is marked in the list; typed text alone is no choice yet.
bool MasterComboBox::focusNextPrevChild(bool next)
{
    if (isSearchEnabled() && isListOpen() && completer()->popup()->currentIndex().isValid())
        take(typedItem());
    return QComboBox::focusNextPrevChild(next);
}

void MasterComboBox::focusInEvent(QFocusEvent *event)
{
    QComboBox::focusInEvent(event);
    if (!isSearchEnabled() || isTyping()) // back from the list or the context menu: what was typed stays
        return;
    if (event->reason() == Qt::MouseFocusReason)
        QTimer::singleShot(0, lineEdit(), &QLineEdit::selectAll); // the press that follows takes a selection away
    else
        lineEdit()->selectAll();
}

void MasterComboBox::focusOutEvent(QFocusEvent *event)
{
    QComboBox::focusOutEvent(event); // takes the item whose whole text was typed
    if (isSearchEnabled() && event->reason() != Qt::PopupFocusReason)
        closeSearch();
}

void MasterComboBox::applySkin()
{
    updateStatusColor();
    if (isSearchEnabled())
        completer()->popup()->setPalette(palette()); // a window of its own, which inherits none
}

void MasterComboBox::changeEvent(QEvent *event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applySkin();
}

void MasterComboBox::paintEvent(QPaintEvent *event)
{
    QComboBox::paintEvent(event);
    paintInputStatus();
}

void MasterComboBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore(); // scrolls what the box stands in
}
