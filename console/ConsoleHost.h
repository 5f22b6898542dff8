#pragma once

#include "Companions.h"
#include "EventRecorder.h"
#include "FaultChannel.h"
#include "HostSession.h"
#include "PaperGateway.h"

/// The console's session with the server and the plug-in in it, opened when something first needs them.
/// Lives on the main thread. Texts that are returned are empty or say what went wrong.
class ConsoleHost
{
public:
    struct Settings {
        std::shared_ptr<PaperGateway> gateway; ///< embedded; null: serverName is connected to
        QString serverName;
        QString user; ///< empty: the first manager of the embedded gateway's books
        QString settingsDir;
        QString pluginDir;
        int requestTimeoutMs = 5000;
        std::shared_ptr<JournalSink> journal;                         ///< of all sessions; null: none
        std::function<std::unique_ptr<MessageChannel>()> otherServer; ///< in place of both gateways; empty: none
    };

    explicit ConsoleHost(Settings settings);

    /// Closes the session. The library must have stopped: the application object does that when exec() ends.
    ~ConsoleHost();

    /// Ends the connection to the server, so that nobody has to wait for an answer before he can stop.
    void hangUp();

    /// Begins a session for a user, in place of an open one. Refused once the library is in use: it has asked
    /// for its user and will not ask again.
    QString login(const QString &user);

    QString openSession(); ///< unless one is open
    QString openLibrary(); ///< session and plug-in: from here on the facade may be called
    bool isLibraryOpen() const;

    /// Where faults are put in, also before the session opens. A new login and a failed one begin without.
    FaultChannel *faults(QString &errorText);

    EventRecorder &events();

    /// Consoles of other users at the same gateway.
    Companions &companions();

private:
    std::unique_ptr<MessageChannel> connectServer(QString &errorText) const;
    QString loadPlugin() const;

    Settings m_settings;
    EventRecorder m_events;
    std::unique_ptr<FaultChannel> m_waitingChannel; ///< of the session to come
    FaultChannel *m_channel = nullptr;              ///< of the open session or the one to come
    std::unique_ptr<HostSession> m_session;
    bool m_isLibraryOpen = false;
    Companions m_companions;
};
