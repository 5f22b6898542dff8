#pragma once

#include "Envelope.h"
#include "HostExport.h"

/// One entry of a session's journal: a message as it passed the border to the server, or what belongs to the order of
/// messages without being one.
struct JournalRecord {
    enum class Kind : quint8 {
        Opened,     ///< a session begins; sender: its user
        Request,    ///< left this process, or was to; also asynchronous ones and subscriptions
        Answer,     ///< id and type of its request
        TimedOut,   ///< so ended the wait of the request of this id, without a body
        NotSent,    ///< likewise
        Push,       ///< of the server
        Connection, ///< type: one of the names below; noticed when somebody looks
        // What MasterInitStateMgr is told and asked of a family; type: its key. Says where in the order of messages the
        // library began to load, and where it took an answer for that of a load or of a later query.
        FamilyReset,    ///< it is to be loaded anew
        FamilyStarted,  ///< its load begins
        FamilyFinished, ///< its load has ended, either way
        FamilyAsked,    ///< an object with a thread of its own, at work on an answer, asks how it stands
        Closed          ///< the last record of a journal that was ended, not cut off
    };

    static constexpr char connected[] = "connected"; ///< of Connection, as are the next two
    static constexpr char disconnected[] = "disconnected";
    static constexpr char closed[] = "closed";

    Kind kind = Kind::Opened;
    quint64 sequence = 0; ///< from 1, without a gap
    qint64 time = 0;      ///< ms since the epoch, UTC
    Envelope envelope;
};

/// Takes down what happens. Any thread may call, also under a lock of its own: append returns at once.
class T0_HOST_EXPORT JournalSink
{
public:
    JournalSink() = default;
    virtual ~JournalSink();
    JournalSink(const JournalSink &) = delete;
    JournalSink &operator=(const JournalSink &) = delete;

    virtual void append(JournalRecord::Kind kind, const Envelope &envelope) = 0;
};
