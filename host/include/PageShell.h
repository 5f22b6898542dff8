#pragma once

#include "HostExport.h"

#include <QtCore/QObject>
#include <QtGui/QColor>
#include <QtGui/QKeySequence>

#include <functional>

class QAction;
class QWidget;

/// A page that a plug-in puts into the window.
struct PageDescription {
    QString id;    ///< fixed English name: of its layout, its pictures, its commands
    QString title; ///< as shown
    QString role;  ///< one of Master_Values::UserRoles: others do not get the page; empty: everybody
    std::function<QWidget *()> create; ///< called once when the window is built; the window owns the widget
};

/// Something a user can do by a key of his choice.
struct CommandDescription {
    QString id;        ///< fixed English name with that of its page first, "trade.buy": the key is kept under it
    QString text;      ///< as shown in the list of keys
    QKeySequence keys; ///< until the user chooses others; may be empty
};

/// What the program's window offers to plug-ins. Plug-ins add their pages in IPlugin::extensionsInitialized; the window
/// is built afterwards. Main thread only.
class T0_HOST_EXPORT PageShell : public QObject
{
    Q_OBJECT

public:
    /// The program's window; null in a program that has none.
    static PageShell *instance();

    virtual void addPage(const PageDescription &page) = 0; ///< pages stand in the order added

    /// Shows the page of an id; false when there is none.
    virtual bool showPage(const QString &id) = 0;

    /// Puts a widget into the status line, left to right in the order added. The window owns it.
    virtual void addStatusWidget(QWidget *widget) = 0;

    /// A command that run carries out when its key is pressed. context: works while this widget or one in it has the
    /// focus; null: in the whole window. A command of a page (context in it) never answers while the page is hidden.
    /// The action may be put on buttons and into menus; disabled it does nothing. It belongs to context, else to the
    /// window.
    virtual QAction *addCommand(const CommandDescription &command, QWidget *context, std::function<void()> run) = 0;

    /// Why nothing may be sent to the server now, as the banner says it; empty when it may.
    virtual QString sendingGate() const = 0;

    enum class Notice { Info, Success, Refusal };

    /// A short note that goes by itself, with a sound when the user wants one. Also listed in the log.
    virtual void notify(Notice kind, const QString &text) = 0;

    // What the user chose to see.
    virtual QColor riseColor() const = 0; ///< up, bought, profit
    virtual QColor fallColor() const = 0; ///< down, sold, loss
    virtual bool isDark() const = 0;

signals:
    void sendingGateChanged();
    void appearanceChanged();                ///< colours, dark or light, font
    void layoutReset(const QString &pageId); ///< the page is to forget what it kept of its layout
    void refreshRequested();                 ///< the user asks for everything anew
    void
    exportRequested(QWidget *in); ///< Ctrl+E; in: the table or other widget with the focus, else a table that is seen
    void searchRequested(QWidget *in); ///< Ctrl+F, likewise

protected:
    PageShell(); ///< becomes instance()
    ~PageShell() override;
};
