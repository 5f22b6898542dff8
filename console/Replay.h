#pragma once

#include "MessageChannel.h"
#include "RecordedDay.h"

#include <memory>

class FamilyNotes;
class ReplayChannel;

/// Brings a fresh library to where a recorded one was: walks through the records one by one and repeats what the
/// library does not do by itself. Answers and pushes come from the journal; a query that nobody asks is asked through
/// the presenter, so that its pages are read as ever; a reload is begun, and a change is made, where the caller's own
/// picture changes with it. Orders, cancels and other changes are not sent: what they did is in the answers and pushes.
///
/// Not repeated: what is in no message. That is what the user chose in his client (accounts, settings of symbols), and
/// which of two threads of that client was first where the journal does not say.
class Replay
{
public:
    Replay();
    ~Replay();

    /// As RecordedDay::load.
    bool load(const QString &path, quint64 until, QString &errorText);

    // What the session is opened with. The channel is valid until the session ends.
    QString user() const { return m_day.user(); }
    std::unique_ptr<MessageChannel> connect();
    std::shared_ptr<JournalSink> journal() const;

    /// On the main thread, with the library open; an empty text, or why it came to a halt.
    QString run();

    /// What a reader should know: of the journal, and what could not be repeated.
    QStringList remarks() const;

private:
    QString repeat(int record);
    QString repeatNote(const JournalRecord &note, int record);
    QString repeatRequest(int request, int end);
    QString repeatQuery(const JournalRecord &query, const QByteArray &slot);
    bool beginsFullRefresh(int reset) const;
    QString settle(const JournalRecord &record) const;

    RecordedDay m_day;
    const std::shared_ptr<FamilyNotes> m_now;  ///< what this library has noted
    const std::shared_ptr<FamilyNotes> m_then; ///< what the recorded one had noted by the record that is repeated
    ReplayChannel *m_channel = nullptr;
    bool m_isRefreshingAll = false;
    QStringList m_remarks;
};
