#include "NoticeBoard.h"

#include "Appearance.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int mostNotes = 5;
constexpr int noteWidth = 380;
constexpr int distance = 16; ///< from the window's border

int shownMs(PageShell::Notice kind)
{
    return kind == PageShell::Notice::Refusal ? 12000 : 4000;
}

QColor edgeColor(PageShell::Notice kind, bool isDark, const QPalette &palette)
{
    switch (kind) {
    case PageShell::Notice::Success:
        return palette.color(QPalette::Highlight);
    case PageShell::Notice::Refusal:
        return Appearance::red(isDark);
    case PageShell::Notice::Info:
        break;
    }
    return palette.color(QPalette::Mid);
}

} // namespace

NoticeBoard::NoticeBoard(const Appearance &appearance, QWidget *over)
    : QWidget(over)
    , m_appearance(appearance)
    , m_notes(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("notices"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    m_notes->setContentsMargins(0, 0, 0, 0);
    over->installEventFilter(this);
    hide();
}

void NoticeBoard::add(PageShell::Notice kind, const QString &text)
{
    if (m_notes->count() >= mostNotes)
        delete m_notes->itemAt(0)->widget();
    auto *note = new QLabel(text);
    note->setObjectName(QStringLiteral("notice"));
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setMargin(8);
    note->setFixedWidth(noteWidth);
    note->setAutoFillBackground(true);
    note->setFrameShape(QFrame::Box);
    note->setLineWidth(2);
    QPalette palette = this->palette();
    const QColor edge = edgeColor(kind, m_appearance.choice().isDark, palette);
    palette.setColor(QPalette::Window, palette.color(QPalette::ToolTipBase));
    for (const QPalette::ColorRole role : {QPalette::Dark, QPalette::Light, QPalette::Mid})
        palette.setColor(role, edge); // of the frame
    note->setPalette(palette);
    m_notes->addWidget(note);
    QTimer::singleShot(shownMs(kind), this, [this, note = QPointer<QLabel>(note)] {
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
    const int height = m_notes->hasHeightForWidth() ? m_notes->totalHeightForWidth(noteWidth) : sizeHint().height();
    const QRect over = parentWidget()->rect();
    setGeometry(over.right() - noteWidth - distance, over.bottom() - height - distance, noteWidth, height);
    raise();
}

bool NoticeBoard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}
