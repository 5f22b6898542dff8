#include "MainWindow.h"

#include "Appearance.h"
#include "Banner.h"
#include "CBusinessDataBase.h"
#include "CommandList.h"
#include "ConnectionWatch.h"
#include "DeskSettings.h"
#include "HostLog.h"
#include "HostSession.h"
#include "KeysDialog.h"
#include "MasterValues.h"
#include "NoticeBoard.h"
#include "OrvaneFields.h"
#include "PreferencesDialog.h"
#include "RecordTable.h"
#include "StandFields.h"
#include "StatusLine.h"
#include "TradeNotices.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

const QLatin1String geometrySetting("window.1"); ///< with the version of what is kept

QStringList rolesOfUser()
{
    return CBusinessDataBase::GetLoginAccountDetail().value(Stand_Fields::User::roles).toStringList();
}

/// Who gets the focus when a page is shown: who had it there last, else the first that takes it.
QWidget *entryOf(QWidget *page)
{
    if (page->focusWidget() || page->focusProxy())
        return page->focusWidget() ? page->focusWidget() : page;
    for (QWidget *widget = page->nextInFocusChain(); widget != page; widget = widget->nextInFocusChain())
        if (page->isAncestorOf(widget) && widget->isVisibleTo(page) && widget->isEnabled() &&
            (widget->focusPolicy() & Qt::TabFocus))
            return widget;
    return page;
}

} // namespace

/// What plug-ins see of the window.
namespace {

/// A Return that is held down answers once: what it sends or confirms must not be followed by the next thing that has
/// it as its default.
class HeldReturn : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto *press = static_cast<QKeyEvent *>(event);
        return press->isAutoRepeat() && (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter);
    }
};

} // namespace

class MainWindow::Shell : public PageShell
{
public:
    explicit Shell(MainWindow &window)
        : m_window(window)
    {
        connect(window.m_connection, &ConnectionWatch::changed, this, &PageShell::sendingGateChanged);
        connect(window.m_appearance, &Appearance::changed, this, &PageShell::appearanceChanged);
    }

    void addPage(const PageDescription &page) override { m_pages.append(page); }
    QVector<PageDescription> takePages() { return std::exchange(m_pages, {}); }

    bool showPage(const QString &id) override { return m_window.showPage(id); }
    void addStatusWidget(QWidget *widget) override { m_window.statusBar()->addWidget(widget); }
    QAction *addCommand(const CommandDescription &command, QWidget *context, std::function<void()> run) override
    {
        return m_window.m_commands->add(command, context, std::move(run));
    }
    QString sendingGate() const override { return m_window.m_connection->gate(); }
    void notify(Notice kind, const QString &text) override
    {
        HOST_INFO("Desk", text);
        if (!PreferencesDialog::areNoticesOn() && kind != Notice::Refusal)
            return;
        m_window.m_notices->add(kind, text);
        if (PreferencesDialog::isSoundOn())
            QApplication::beep();
    }

    QColor riseColor() const override { return m_window.m_appearance->riseColor(); }
    QColor fallColor() const override { return m_window.m_appearance->fallColor(); }
    bool isDark() const override { return m_window.m_appearance->choice().isDark; }

private:
    MainWindow &m_window;
    QVector<PageDescription> m_pages; ///< added and not yet made
};

MainWindow::MainWindow(HostSession &session, const QString &gateway, const QString &fontFamily)
    : m_appearance(new Appearance(fontFamily, this))
    , m_connection(new ConnectionWatch(session, this))
    , m_commands(new CommandList(this))
    , m_notices(new NoticeBoard(*m_appearance, this))
    , m_bar(new QToolBar)
    , m_who(new QLabel(this))
    , m_pageButtons(new QButtonGroup(this))
    , m_stack(new QStackedWidget)
    , m_shell(std::make_unique<Shell>(*this))
{
    setObjectName(QStringLiteral("window"));
    qApp->installEventFilter(new HeldReturn(this));
    setTitle(gateway);
    m_bar->setObjectName(QStringLiteral("pages"));
    m_bar->setMovable(false);
    m_bar->setContextMenuPolicy(Qt::PreventContextMenu);
    addToolBar(m_bar);
    auto *middle = new QWidget;
    auto *layout = new QVBoxLayout(middle);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(new Banner(*m_connection, middle));
    layout->addWidget(m_stack, 1);
    setCentralWidget(middle);
    setStatusBar(new StatusLine(session, *m_connection, *m_appearance, this));
    new TradeNotices(session.news(), *m_shell, this);
    addBuiltInCommands();
    resize(1600, 1000);
}

MainWindow::~MainWindow()
{
    if (m_keepsGeometry)
        DeskSettings::keep(geometrySetting, saveGeometry().toBase64());
    // Pages and what they put into the window may ask the shell while they go.
    delete takeCentralWidget();
    delete statusBar();
}

void MainWindow::setTitle(const QString &gateway)
{
    const VariantRecord user = CBusinessDataBase::GetLoginAccountDetail();
    const QStringList roles = rolesOfUser();
    QStringList roleNames;
    if (roles.contains(Master_Values::UserRoles::ManualT0Mangager))
        roleNames.append(tr("管理员"));
    if (roles.contains(Master_Values::UserRoles::ManualT0Trader))
        roleNames.append(tr("交易员"));
    const QString who =
        QStringLiteral("%1 (%2) · %3 · %4")
            .arg(user.value(Orvane_Fields::UserAccount::userName).toString(),
                 user.value(Orvane_Fields::UserAccount::userID).toString(), roleNames.join(tr("、")), gateway);
    setWindowTitle(QStringLiteral("T0 · ") + who);
    m_who->setText(who);
}

void MainWindow::build()
{
    const QStringList roles = rolesOfUser();
    for (const PageDescription &description : m_shell->takePages())
        if (description.role.isEmpty() || roles.contains(description.role))
            addPageOf(description);
    addMenu();
    if (!m_pages.isEmpty())
        showPage(m_pages.constFirst().id);
    m_notices->raise();
}

void MainWindow::addPageOf(const PageDescription &description)
{
    QWidget *page = description.create();
    if (page->objectName().isEmpty())
        page->setObjectName(description.id);
    m_stack->addWidget(page);
    m_pages.append({description.id, page});

    const QString keys = QStringLiteral("Ctrl+%1").arg(m_pages.size());
    QAction *show =
        m_commands->add({QStringLiteral("frame.page.") + description.id, tr("页面：%1").arg(description.title),
                         m_pages.size() <= 9 ? QKeySequence(keys) : QKeySequence()},
                        nullptr, [this, id = description.id] { showPage(id); });
    auto *button = new QToolButton;
    button->setObjectName(QStringLiteral("page.") + description.id);
    button->setText(QStringLiteral("  %1  ").arg(description.title));
    button->setToolTip(show->shortcut().toString(QKeySequence::NativeText));
    button->setCheckable(true);
    button->setFocusPolicy(Qt::NoFocus); // the page keeps it
    connect(button, &QToolButton::clicked, show, &QAction::trigger);
    m_pageButtons->addButton(button, m_pages.size() - 1);
    m_bar->addWidget(button);
}

void MainWindow::keepGeometry()
{
    m_keepsGeometry = true;
    resize(size().boundedTo(screen()->availableSize()));
    restoreGeometry(QByteArray::fromBase64(DeskSettings::value(geometrySetting).toByteArray()));
}

bool MainWindow::showPage(const QString &id)
{
    for (int i = 0; i < m_pages.size(); ++i) {
        if (m_pages.at(i).id != id)
            continue;
        m_stack->setCurrentIndex(i);
        m_pageButtons->button(i)->setChecked(true);
        QWidget *page = m_pages.at(i).widget;
        if (!focusWidget() || !page->isAncestorOf(focusWidget()))
            entryOf(page)->setFocus();
        return true;
    }
    return false;
}

QString MainWindow::shownPage() const
{
    return m_pages.isEmpty() ? QString() : m_pages.at(m_stack->currentIndex()).id;
}

QStringList MainWindow::pageIds() const
{
    QStringList ids;
    for (const Page &page : m_pages)
        ids.append(page.id);
    return ids;
}

QAction *MainWindow::addCommand(const char *id, const QString &text, const char *keys, std::function<void()> run)
{
    return m_commands->add({QLatin1String("frame.") + QLatin1String(id), text, QKeySequence(QLatin1String(keys))},
                           nullptr, std::move(run));
}

/// The table that has the focus, else the first that is seen; what has the focus where there is none.
QWidget *MainWindow::tableInView() const
{
    for (QWidget *widget = focusWidget(); widget; widget = widget->parentWidget()) {
        if (qobject_cast<RecordTable *>(widget))
            return widget;
    }
    const QList<RecordTable *> tables = m_stack->findChildren<RecordTable *>(); // those of other pages are not visible
    const auto seen =
        std::find_if(tables.cbegin(), tables.cend(), [](const QWidget *table) { return table->isVisible(); });
    return seen == tables.cend() ? focusWidget() : *seen;
}

void MainWindow::addBuiltInCommands()
{
    addCommand("refresh", tr("刷新"), "F5", [this] { emit m_shell->refreshRequested(); });
    addCommand("search", tr("搜索"), "Ctrl+F", [this] { emit m_shell->searchRequested(tableInView()); });
    addCommand("export", tr("导出"), "Ctrl+E", [this] { emit m_shell->exportRequested(tableInView()); });
    addCommand("larger", tr("放大字号"), "Ctrl++", [this] { m_appearance->resizeText(1); });
    addCommand("smaller", tr("缩小字号"), "Ctrl+-", [this] { m_appearance->resizeText(-1); });
    addCommand("dark", tr("深色或浅色"), "Ctrl+D", [this] {
        Appearance::Choice choice = m_appearance->choice();
        choice.isDark = !choice.isDark;
        m_appearance->choose(choice);
    });
    addCommand("layout", tr("还原默认布局"), "Ctrl+Shift+L", [this] { emit m_shell->layoutReset(shownPage()); });
    addCommand("keys", tr("快捷键"), "F12", [this] { (new KeysDialog(*m_commands, this))->open(); });
    addCommand("preferences", tr("设置"), "Ctrl+,", [this] { (new PreferencesDialog(*m_appearance, this))->open(); });
    addCommand("quit", tr("退出"), "Ctrl+Q", [this] { close(); });
}

void MainWindow::addMenu()
{
    auto *space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_bar->addWidget(space);
    m_who->setObjectName(QStringLiteral("who"));
    m_bar->addWidget(m_who);
    auto *menu = new QMenu(this);
    for (const char *id : {"refresh", "layout", "dark", "larger", "smaller", "keys", "preferences", "quit"})
        menu->addAction(m_commands->find(QLatin1String("frame.") + QLatin1String(id))->action);
    auto *button = new QToolButton;
    button->setObjectName(QStringLiteral("menu"));
    button->setText(QStringLiteral("  %1  ").arg(tr("菜单")));
    button->setFocusPolicy(Qt::NoFocus);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    m_bar->addWidget(button);
}
