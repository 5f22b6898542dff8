#include "NoticeBoard.h"

#include "Appearance.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int mostNotes = 3;
constexpr int noteWidth = 380;
constexpr int edgeWidth = 5;
constexpr int padding = 8;
constexpr int distance = 16; ///< from the window's border

int shownMs(PageShell::Notice kind)
{
    return kind == PageShell::Notice::Refusal ? 12000 : 4000;
}

/// One note, with an edge in the colour of its kind.
class Note : public QLabel
{
public:
    Note(PageShell::Notice kind, const QString &text, const Appearance &appearance)
        : QLabel(text)
        , m_kind(kind)
        , m_appearance(appearance)
    {
        setObjectName(QStringLiteral("notice"));
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        setContentsMargins(edgeWidth + padding, padding, padding, padding);
        setFixedSize(noteWidth, heightForWidth(noteWidth));
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(palette().color(QPalette::Base));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        painter.fillRect(0, 0, edgeWidth, height(), edge());
        QLabel::paintEvent(event);
    }

private:
    QColor edge() const
    {
        switch (m_kind) {
        case PageShell::Notice::Success:
            return palette().color(QPalette::Highlight);
        case PageShell::Notice::Refusal:
            return Appearance::red(m_appearance.choice().isDark);
        case PageShell::Notice::Info:
            break;
        }
        return palette().color(QPalette::Mid);
    }

    const PageShell::Notice m_kind;
    const Appearance &m_appearance;
};

} // namespace

NoticeBoard::NoticeBoard(const Appearance &appearance, QMainWindow *over)
    : QWidget(over)
    , m_appearance(appearance)
    , m_over(over)
    , m_notes(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("notices"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    m_notes->setContentsMargins(0, 0, 0, 0);
    m_notes->setSpacing(6);
    over->installEventFilter(this);
    hide();
}

void NoticeBoard::add(PageShell::Notice kind, const QString &text)
{
    for (int i = 0; i < m_notes->count(); ++i) {
        if (static_cast<Note *>(m_notes->itemAt(i)->widget())->text() == text)
            return; // it is being read
    }
    if (m_notes->count() >= mostNotes)
        delete m_notes->itemAt(0)->widget();
    auto *note = new Note(kind, text, m_appearance);
    m_notes->addWidget(note);
    note->show();
    QTimer::singleShot(shownMs(kind), this, [this, note = QPointer<QWidget>(note)] {
        delete note.data();
        place();
    });
    show();
    place();
}

void NoticeBoard::place()
{
    if (m_notes->count() == 0)
        return hide();
    adjustSize();
    const QRect middle = m_over->centralWidget()->geometry();
    // Left of the middle: results of orders stand in the lower right, buttons in the corners.
    move(middle.center().x() - width() - distance, middle.bottom() - height() - distance);
    raise();
}

bool NoticeBoard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}
