#include "ViewParts.h"

#include "EventBus.h"
#include "Layout.h"
#include "PageShell.h"

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <algorithm>

Later::Later(int everyMs, std::function<void()> show, QObject *parent)
    : QTimer(parent)
    , m_everyMs(everyMs)
{
    setSingleShot(true);
    connect(this, &QTimer::timeout, this, [this] { m_sinceShown.start(); });
    connect(this, &QTimer::timeout, this, std::move(show));
}

void Later::ask()
{
    if (!isActive())
        start(m_sinceShown.isValid() ? int(std::max<qint64>(0, m_everyMs - m_sinceShown.elapsed())) : 0);
}

void Later::follow(const QStringList &events)
{
    for (const QString &event : events)
        EventBus::listen(event, this, [this](const QVariant &) { ask(); });
}

QPushButton *ViewParts::button(const QString &name, const QString &text)
{
    auto *button = new QPushButton(text);
    button->setObjectName(name);
    return button;
}

QLabel *ViewParts::label(const QString &name)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    label->setWordWrap(true);
    return label;
}

QString ViewParts::gate()
{
    const PageShell *shell = PageShell::instance();
    return shell ? shell->sendingGate() : QString();
}

void ViewParts::keepLayout(QHeaderView *header, const QString &name)
{
    const QByteArray initial = header->saveState();
    header->restoreState(Layout::kept(name));
    QObject::connect(header, &QHeaderView::sectionResized, header,
                     [header, name] { Layout::keep(name, header->saveState()); });
    if (const PageShell *shell = PageShell::instance())
        QObject::connect(shell, &PageShell::layoutReset, header, [header, name, initial](const QString &page) {
            if (page == Layout::pageOf(name))
                header->restoreState(initial);
        });
}

const char *const ViewParts::changeLane = "manage";
