#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

#include <QtCore/QDateTime>

#include <memory>

class HostNews;
class JournalSink;
class MessageChannel;

/// What a session needs to open.
struct HostConfig {
    std::unique_ptr<MessageChannel> channel;   ///< the border to the server
    QString user;                              ///< logged in; empty: no login detail and no reference data
    QString settingsDir;                       ///< where settings are kept; empty: in memory only
    int requestTimeoutMs = 5000;               ///< of every request to the server
    std::shared_ptr<JournalSink> journal = {}; ///< takes down every message; null: nobody does
};

/// Progress of a paged query, for whoever shows that something is loading.
struct LoadProgress {
    int requests = 0; ///< finished queries of the type
    int running = 0;  ///< queries of the type that are under way
    qint64 rows = 0;  ///< rows received so far, all queries of the type
};

/// How far what the session holds can be trusted.
struct PictureState {
    bool isInStep = false; ///< connected, and after a reconnection all that was missed has come: orders are taken
    QDateTime since;       ///< in step: since when; else when the connection last changed
    QDateTime heardAt;     ///< when the server was last heard; invalid: never
};

/// The host from login to logout. At most one is open in a process; what the platform's singletons answer
/// is its data. Opening logs in and loads the reference data (accounts, instruments, margin securities)
/// and what moves (quotes, orders, fills, positions, the market's clock) from the server, as messages; pushes keep the
/// latter up to date. Closing leaves nothing behind: init states, listeners,
/// settings, reference data and the channel are gone, a next session starts as the first did.
///
/// Open and close on one thread; the rest may be called from any. Objects of plug-ins with threads of their
/// own (ZrObject, ZrPresenterClass) must be stopped before the session is closed.
class T0_HOST_EXPORT HostSession
{
public:
    /// Null when the login or the reference data failed: errorText says what and why, nothing stays open.
    static std::unique_ptr<HostSession> open(HostConfig config, QString &errorText);
    ~HostSession();

    /// The open session, null without one.
    static HostSession *current();

    MessageChannel &channel();
    HostNews &news(); ///< lives on the thread that opened the session

    /// A request of the program itself (console, desk): values and rows out, values and rows back. The result
    /// code of the answer, or Master_Values::RequestExeStatus::timeout; errorText is filled unless success.
    QString request(const QString &msgType, const VariantRecord &values, const RecordList &rows, QString &errorText,
                    VariantRecord &answerValues, RecordList &answerRows);

    LoadProgress loadProgress(const QString &msgType) const;

    PictureState picture() const;

    /// The fields of Stand_Fields::Market as last pushed: time, phases, held, speed.
    VariantRecord marketState() const;

    /// Business messages since the last call, oldest first: text, level and time.
    QStringList takeBusinessMessages();

    /// Returns true when everything that was caused so far has arrived: gateway, channel, presenters, objects
    /// with own threads, delay buffers and event queues are empty; false when timeoutMs passed before. Runs
    /// the calling thread's events meanwhile. Timers that wait (retries, refreshes) are not caused work.
    bool settle(int timeoutMs);

private:
    class Private;
    explicit HostSession(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};
