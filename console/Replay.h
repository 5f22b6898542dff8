#pragma once

#include "MessageChannel.h"
#include "RecordedDay.h"

#include <memory>

class FamilyNotes;
class ReplayChannel;

/// Brings a fresh library to where a recorded one was. Walks through the records one by one: answers and pushes come
/// from the journal in the order they had; the library's own asking reaches nobody, since its timers know nothing of
/// the recorded day. A query is asked when the journal has its last page, through the presenter, so that its pages are
/// read as ever; a load is begun, and a change is made, where that changes the caller's own picture. Orders, cancels
/// and other changes are not sent: what they did is in the answers and pushes.
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
    void repeat(int record);
    void repeatNote(int record);
    void repeatRequest(int request, int end);
    void repeatChange(int request, int end);
    void checkRepeated(int request);
    void takeQuery(int request, int end);
    void repeatNextQuery(const QString &type);
    void repeatQuery(int request);
    void prepare();
    bool beginsFullRefresh(int reset) const;
    void settle(const JournalRecord &record);
    QStringList otherCourse() const;

    RecordedDay m_day;
    const std::shared_ptr<FamilyNotes> m_now;  ///< what this library has noted since it was prepared
    const std::shared_ptr<FamilyNotes> m_then; ///< what the recorded one had noted by the record that is repeated
    ReplayChannel *m_channel = nullptr;
    QHash<QString, QVector<int>> m_answered; ///< by type: queries that have their answer, which was not taken yet
    bool m_isRefreshingAll = false;
    QStringList m_remarks;
    QString m_halt; ///< why it cannot go on
};
