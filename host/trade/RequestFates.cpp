#include "RequestFates.h"

#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "core/Activity.h"
#include "framework/SingleThread.h"
#include "message/AnswerStatus.h"
#include "message/Ask.h"
#include "message/RequestTexts.h"
#include "message/Server.h"

#include <QtCore/QDateTime>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QWaitCondition>

#include <algorithm>
#include <thread>

namespace {

constexpr int retryMs = 250;

struct Followed {
    qint64 validUntil = 0;
    int orders = 0;
    QDeadlineTimer due;
    Activity::Token firstTry; ///< waiting for a later try is not work under way
};

struct State {
    QMutex mutex;
    QWaitCondition woken;
    QHash<QString, Followed> followed; ///< by request id
    std::thread thread;
    bool ends = false;
};

State &state()
{
    static auto *state = new State; // never deleted: a request may be tried while the process ends
    return *state;
}

/// Before that the request may still be on its way. True for one that nobody follows: that is long over.
bool isOver(const QString &requestId)
{
    QMutexLocker lock(&state().mutex);
    return state().followed.value(requestId).validUntil < QDateTime::currentMSecsSinceEpoch();
}

bool readFate(const MessageChannel::Reply &reply, MessageBody &fate)
{
    QString errorText;
    return reply.outcome == MessageChannel::Outcome::Answered &&
           MessageBody::decode(reply.envelope.body, fate, errorText) &&
           statusOfAnswer(fate, errorText) == Orvane_Values::RequestExeStatus::success;
}

int accepted(const RecordList &rows)
{
    return int(std::count_if(rows.cbegin(), rows.cend(), [](const VariantRecord &row) {
        return row.value(Orvane_Fields::System::requestExeStatus).toString() ==
               Orvane_Values::RequestExeStatus::success;
    }));
}

/// Whoever learns it first tells the user.
void announce(const QString &requestId, const OrderAnswer &answer, bool known)
{
    QMutexLocker lock(&state().mutex);
    const auto found = state().followed.find(requestId);
    if (found == state().followed.end())
        return;
    const Followed followed = *found; // its activity ends after the message is there
    state().followed.erase(found);
    lock.unlock();
    const int done = qMin(accepted(answer.rows), followed.orders);
    using namespace Master_Values;
    MasterBusinessDataInterface::AddBusiMsg(BusiMsgLevel::Normal,
                                            known ? RequestTexts::fateKnown(done, followed.orders - done)
                                                  : RequestTexts::neverAccepted(),
                                            BusiMsgType::SystemMsg, {}, false, {});
}

/// With the mutex held.
QHash<QString, Followed>::iterator nextDue()
{
    QHash<QString, Followed> &followed = state().followed;
    return std::min_element(followed.begin(), followed.end(),
                            [](const Followed &a, const Followed &b) { return a.due < b.due; });
}

void run()
{
    QMutexLocker lock(&state().mutex);
    while (!state().ends) {
        const auto next = nextDue();
        if (next == state().followed.end()) {
            state().woken.wait(&state().mutex);
        } else if (!next->due.hasExpired()) {
            state().woken.wait(&state().mutex, next->due);
        } else {
            const QString id = next.key();
            lock.unlock();
            RequestFates::ask(id);
            lock.relock();
            const auto unknown = state().followed.find(id);
            if (unknown != state().followed.end()) {
                unknown->due = QDeadlineTimer(retryMs);
                unknown->firstTry.reset();
            }
        }
    }
}

} // namespace

OrderAnswer OrderAnswer::unknown(const QString &requestId)
{
    return {requestId, Master_Values::RequestExeStatus::timeout, RequestTexts::resultUnknown(), {}};
}

void RequestFates::follow(const Envelope &request, int orders)
{
    QMutexLocker lock(&state().mutex);
    state().followed.insert(request.id, {request.validUntil, orders, QDeadlineTimer(0), Activity::begin()});
    if (!state().thread.joinable() && !SingleThread::isOn())
        state().thread = std::thread(run);
    state().woken.wakeAll();
}

OrderAnswer RequestFates::ask(const QString &requestId)
{
    const Server::Lease server;          // closing waits until the user is told
    const bool over = isOver(requestId); // before the question leaves: what comes after the answer is no proof
    const Asked asked =
        ::ask(nullptr, Stand_MsgType::QueryRequestFateRequest, {{}, {{{Stand_Fields::Order::requestId, requestId}}}});
    MessageBody fate;
    if (!readFate(asked.reply, fate))
        return OrderAnswer::unknown(requestId);
    const bool known = fate.values.value(Stand_Fields::Order::known).toBool();
    const QString status = fate.values.value(Stand_Fields::Order::fateStatus).toString();
    if (known ? status.isEmpty() : !over)
        return OrderAnswer::unknown(requestId);
    OrderAnswer answer{requestId, Orvane_Values::RequestExeStatus::fail, RequestTexts::neverAccepted(), {}};
    if (known) {
        answer.status = status;
        answer.text = fate.values.value(Stand_Fields::Order::fateText).toString();
        answer.rows = fate.rows;
    }
    announce(requestId, answer, known);
    return answer;
}

void RequestFates::clear()
{
    QMutexLocker lock(&state().mutex);
    state().ends = true;
    state().followed.clear();
    state().woken.wakeAll();
    std::thread thread = std::move(state().thread);
    lock.unlock();
    if (thread.joinable())
        thread.join();
    lock.relock();
    state().ends = false;
}
