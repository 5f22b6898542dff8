#include "ZrListView.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractItemDelegate>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QListView>

/// Shows the list of records as it came: nothing is copied or converted until a cell is painted.
class ZrListView::Records : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void replace(const RecordList &records)
    {
        beginResetModel();
        m_records = records;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_records.size(); }

    QVariant data(const QModelIndex &index, int role) const override
    {
        return checkIndex(index, CheckIndexOption::IndexIsValid)
                   ? m_records.at(index.row()).value(QString::number(role))
                   : QVariant();
    }

private:
    RecordList m_records;
};

namespace {

constexpr int margin = 4;

/// Background, text, and a frame where the user has chosen: the colours carry a meaning that a selection must not
/// cover.
class CellDelegate : public QAbstractItemDelegate
{
public:
    using QAbstractItemDelegate::QAbstractItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const auto background = index.data(Qt::BackgroundRole).value<QColor>();
        if (background.isValid())
            painter->fillRect(option.rect, background);
        const auto foreground = index.data(Qt::ForegroundRole).value<QColor>();
        painter->setPen(foreground.isValid() ? foreground : option.palette.color(QPalette::Text));
        painter->setFont(option.font);
        const QRect inner = option.rect.adjusted(margin / 2, 0, -margin / 2, 0);
        const QString text = index.data(Qt::DisplayRole).toString();
        painter->drawText(inner, Qt::AlignCenter | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(text, Qt::ElideRight, inner.width()));
        if (option.state & QStyle::State_Selected) {
            painter->setPen(option.palette.color(QPalette::Highlight));
            painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
        }
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const auto *list = qobject_cast<const QListView *>(option.widget);
        if (list && list->gridSize().isValid())
            return list->gridSize(); // else the background would cover the text only
        const QString text = index.data(Qt::DisplayRole).toString();
        return {option.fontMetrics.horizontalAdvance(text) + 2 * margin, option.fontMetrics.height() + margin};
    }
};

} // namespace

ZrListView::ZrListView(QWidget *parent)
    : QWidget(parent)
    , m_records(new Records(this))
    , m_list(new QListView(this))
{
    m_list->setModel(m_records);
    m_list->setItemDelegate(new CellDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
}

ZrListView::~ZrListView() = default;

void ZrListView::setViewMode(int mode)
{
    const bool grid = mode == QListView::IconMode;
    m_list->setViewMode(grid ? QListView::IconMode : QListView::ListMode);
    m_list->setMovement(QListView::Static); // icon mode would let the user drag cells out of their order
    m_list->setResizeMode(grid ? QListView::Adjust : QListView::Fixed);
}

void ZrListView::setGridSize(const QSize &size)
{
    m_list->setGridSize(size);
}

void ZrListView::setKeyEnable(bool enable)
{
    m_keyEnable = enable;
    m_list->setFocusPolicy(enable ? Qt::StrongFocus : Qt::NoFocus);
}

void ZrListView::updateRecordDataList(const RecordList &records)
{
    m_records->replace(records);
}

QListView *ZrListView::getOriginListView() const
{
    return m_list;
}

bool ZrListView::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (m_keyEnable || !isKey)
        return QWidget::eventFilter(watched, event);
    event->ignore(); // so that Qt offers the key to the parent
    return true;
}
