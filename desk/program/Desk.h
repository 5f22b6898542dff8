#pragma once

#include "DeskOptions.h"

#include <memory>

class FaultChannel;
class HostSession;
class MainWindow;
class MessageChannel;

/// The program from login to the end: gateway or connection, session, plug-ins, window. Needs the application object;
/// lives on the GUI thread.
class Desk
{
    Q_DECLARE_TR_FUNCTIONS(Desk)

public:
    explicit Desk(const DeskOptions &options);

    /// The event loop has ended: with it the library's threads. Waits for what still runs in the background, then
    /// closes the window and the session.
    ~Desk();

    /// Empty, or what went wrong.
    QString open();

    MainWindow &window() { return *m_window; }
    FaultChannel *faults() { return m_faults; } ///< null unless a script is played

private:
    QString openGateway();
    std::unique_ptr<MessageChannel> connectGateway(QString &errorText);
    QString openSession();
    QString runMarket() const;
    QString loadPlugins() const;

    DeskOptions m_options;
    std::shared_ptr<PaperGateway> m_gateway; ///< null: m_options.serverName is connected to
    FaultChannel *m_faults = nullptr;        ///< the session's channel
    std::unique_ptr<HostSession> m_session;
    std::unique_ptr<MainWindow> m_window;
};
