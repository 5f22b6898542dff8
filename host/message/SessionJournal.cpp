#include "SessionJournal.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

namespace {

struct State {
    QMutex mutex;
    std::shared_ptr<JournalSink> journal;
};

State &state()
{
    static auto *state = new State; // never deleted: notes may come while the process ends
    return *state;
}

} // namespace

JournalSink::~JournalSink() = default;

void SessionJournal::open(std::shared_ptr<JournalSink> journal)
{
    QMutexLocker lock(&state().mutex);
    state().journal.swap(journal);
    lock.unlock(); // the former one may write its last records now
}

void SessionJournal::close()
{
    open(nullptr);
}

void SessionJournal::note(JournalRecord::Kind kind, const QString &text)
{
    QMutexLocker lock(&state().mutex);
    if (!state().journal)
        return;
    Envelope note;
    note.type = text;
    state().journal->append(kind, note);
}
