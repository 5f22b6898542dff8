#pragma once

#include "PageShell.h"

#include <QtCore/QVector>
#include <QtWidgets/QMainWindow>

#include <memory>

class Appearance;
class CommandList;
class ConnectionWatch;
class HostSession;
class NoticeBoard;
class QButtonGroup;
class QLabel;
class QStackedWidget;
class QToolBar;

/// The window of the program. Made before the plug-ins are loaded, so that they find its shell; build() then makes the
/// pages that they added and that the user's roles allow. The session outlives it.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// gateway: as shown in the title. fontFamily: empty: the system's.
    MainWindow(HostSession &session, const QString &gateway, const QString &fontFamily);
    ~MainWindow() override;

    void build();

    /// The place and size kept from the last time, and keeps them at the end.
    void keepGeometry();

    bool showPage(const QString &id);
    QString shownPage() const; ///< id; empty without pages
    QStringList pageIds() const;

    CommandList &commands() { return *m_commands; }

private:
    class Shell;

    struct Page {
        QString id;
        QWidget *widget;
    };

    void setTitle(const QString &gateway);
    void addPageOf(const PageDescription &description);
    void addBuiltInCommands();
    void addMenu();
    QWidget *tableInView() const;
    QAction *addCommand(const char *id, const QString &text, const char *keys, std::function<void()> run);

    Appearance *m_appearance;
    ConnectionWatch *m_connection;
    CommandList *m_commands;
    NoticeBoard *m_notices;
    QToolBar *m_bar;
    QLabel *m_who;
    QButtonGroup *m_pageButtons;
    QStackedWidget *m_stack;
    std::unique_ptr<Shell> m_shell; ///< goes before what it shows
    QVector<Page> m_pages;
    bool m_keepsGeometry = false;
};
