#include "FaultChannel.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "core/Activity.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>

#include <algorithm>
#include <thread>
#include <vector>

namespace {

constexpr int interruptCheckMs = 20;

struct Rule {
    QString msgType;
    FaultChannel::Fault fault;
    int argument;
    int times; ///< left; -1: without end
    QString tradingAccount;
    int page = 0; ///< of the paged query under way
};

struct Later {
    QDeadlineTimer due;
    std::function<void()> run;
};

MessageBody bodyOf(const Envelope &envelope)
{
    MessageBody body;
    QString errorText;
    MessageBody::decode(envelope.body, body, errorText);
    return body;
}

bool concernsAccount(const MessageBody &body, const QString &tradingAccount)
{
    return tradingAccount.isEmpty() || std::any_of(body.rows.cbegin(), body.rows.cend(), [&](const VariantRecord &row) {
               return row.value(Orvane_Fields::UserAccount::tradingAccount).toString() == tradingAccount;
           });
}

/// Follows a paged query: by its page number, or by counting positions from the empty one.
bool reachesPage(Rule &rule, const MessageBody &body)
{
    if (body.values.contains(Stand_Fields::Paging::pageIndex))
        return body.values.value(Stand_Fields::Paging::pageIndex).toInt() >= rule.argument;
    const bool first = body.values.value(Stand_Fields::Paging::position).toString().isEmpty();
    rule.page = first ? 0 : rule.page + 1;
    return rule.page >= rule.argument;
}

MessageChannel::Reply refusal(const Envelope &request)
{
    MessageBody body;
    body.values.insert(Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::fail);
    body.values.insert(Orvane_Fields::System::textDescription, QStringLiteral("注入的故障"));
    return {MessageChannel::Outcome::Answered, request.answer(body), {}};
}

MessageChannel::Reply timedOut()
{
    return {MessageChannel::Outcome::TimedOut, {}, QStringLiteral("timed out")};
}

/// An answer that never arrives.
MessageChannel::Reply lost(const MessageChannel::Reply &reply)
{
    return reply.outcome == MessageChannel::Outcome::Answered ? timedOut() : reply;
}

} // namespace

class FaultChannel::Private
{
public:
    /// The rule that strikes this message, counted down; false when none does.
    bool strike(const Envelope &envelope, Rule &struck);

    /// Blocks the caller until due, at most until the deadline, close() or his thread's interruption.
    void hold(const QDeadlineTimer &due, const QDeadlineTimer &deadline);

    void push(const Envelope &envelope); ///< on the inner channel's thread
    void handOverLate(const Envelope &envelope, int copies);
    void runLater(int delayMs, std::function<void()> run);
    void queue(const QDeadlineTimer &due, std::function<void()> run); ///< with the mutex held
    void runQueue();

    QMutex mutex;
    std::vector<Rule> rules;
    std::shared_ptr<const PushHandler> pushHandler;
    std::vector<Later> later;
    QWaitCondition woken;
    std::thread thread; ///< hands over what a fault delays
    int latePushes = 0; ///< queued or running; while there are some, no push overtakes them
    QDeadlineTimer lastPushDue;
    bool runsPush = false;
    bool closed = false; ///< what is queued is due
    bool ends = false;   ///< nobody queues any more
};

bool FaultChannel::Private::strike(const Envelope &envelope, Rule &struck)
{
    QMutexLocker lock(&mutex);
    if (closed)
        return false; // the inner channel refuses it
    for (auto rule = rules.begin(); rule != rules.end(); ++rule) {
        if (rule->msgType != envelope.type)
            continue;
        const MessageBody body = bodyOf(envelope);
        if (!concernsAccount(body, rule->tradingAccount))
            continue;
        if (rule->fault == Fault::Truncate && (envelope.kind == Envelope::Kind::Push || !reachesPage(*rule, body)))
            continue;
        struck = *rule;
        if (rule->times > 0 && --rule->times == 0)
            rules.erase(rule);
        return true;
    }
    return false;
}

void FaultChannel::Private::hold(const QDeadlineTimer &due, const QDeadlineTimer &deadline)
{
    const QDeadlineTimer end = qMin(due, deadline);
    const QThread *caller = QThread::currentThread();
    QMutexLocker lock(&mutex);
    while (!closed && !end.hasExpired() && !caller->isInterruptionRequested())
        woken.wait(&mutex, qMin(end, QDeadlineTimer(interruptCheckMs)));
}

void FaultChannel::Private::push(const Envelope &envelope)
{
    Rule rule;
    const bool struck = strike(envelope, rule);
    if (struck && (rule.fault == Fault::Fail || rule.fault == Fault::Timeout || rule.fault == Fault::Lose))
        return;
    const int copies = struck && rule.fault == Fault::Duplicate ? 2 : 1;
    const int delayMs = struck && rule.fault == Fault::Delay ? rule.argument : 0;

    QMutexLocker lock(&mutex);
    if (delayMs == 0 && latePushes == 0) {
        const auto handler = pushHandler;
        lock.unlock();
        for (int i = 0; handler && i < copies; ++i)
            (*handler)(envelope);
        return;
    }
    const QDeadlineTimer due(delayMs);
    lastPushDue = latePushes == 0 ? due : qMax(lastPushDue, due);
    ++latePushes;
    queue(lastPushDue, [this, envelope, copies, token = Activity::begin()] { handOverLate(envelope, copies); });
}

void FaultChannel::Private::handOverLate(const Envelope &envelope, int copies)
{
    QMutexLocker lock(&mutex);
    const auto handler = closed ? nullptr : pushHandler;
    runsPush = true;
    lock.unlock();
    for (int i = 0; handler && i < copies; ++i)
        (*handler)(envelope);
    lock.relock();
    runsPush = false;
    --latePushes;
    woken.wakeAll();
}

void FaultChannel::Private::runLater(int delayMs, std::function<void()> run)
{
    QMutexLocker lock(&mutex);
    queue(QDeadlineTimer(delayMs), std::move(run));
}

void FaultChannel::Private::queue(const QDeadlineTimer &due, std::function<void()> run)
{
    later.push_back({due, std::move(run)});
    if (!thread.joinable())
        thread = std::thread([this] { runQueue(); });
    woken.wakeAll();
}

void FaultChannel::Private::runQueue()
{
    const auto earlier = [](const Later &a, const Later &b) { return a.due < b.due; };
    QMutexLocker lock(&mutex);
    while (!ends || !later.empty()) {
        const auto next = std::min_element(later.begin(), later.end(), earlier); // the first of several
        if (next == later.end()) {
            woken.wait(&mutex);
        } else if (!closed && !next->due.hasExpired()) {
            woken.wait(&mutex, next->due);
        } else {
            const std::function<void()> run = std::move(next->run);
            later.erase(next);
            lock.unlock();
            run();
            lock.relock();
        }
    }
}

FaultChannel::FaultChannel(std::unique_ptr<MessageChannel> inner)
    : m_inner(std::move(inner))
    , d(std::make_unique<Private>())
{}

FaultChannel::~FaultChannel()
{
    FaultChannel::close();
    m_inner.reset(); // its handlers use what is below, and queue until it is gone
    {
        QMutexLocker lock(&d->mutex);
        d->ends = true;
        d->woken.wakeAll();
    }
    if (d->thread.joinable())
        d->thread.join();
}

void FaultChannel::addFault(const QString &msgType, Fault fault, int argument, int times, const QString &tradingAccount)
{
    QMutexLocker lock(&d->mutex);
    d->rules.push_back({msgType, fault, argument, times, tradingAccount});
}

void FaultChannel::clearFaults()
{
    QMutexLocker lock(&d->mutex);
    d->rules.clear();
}

bool FaultChannel::faultOfName(const QString &name, Fault &fault)
{
    static const char *const names[] = {"fail", "timeout", "delay", "truncate", "duplicate", "lose"};
    const auto found = std::find(std::begin(names), std::end(names), name.toStdString());
    if (found == std::end(names))
        return false;
    fault = Fault(found - std::begin(names));
    return true;
}

MessageChannel::Reply FaultChannel::request(const Envelope &envelope, int timeoutMs)
{
    Rule rule;
    if (!d->strike(envelope, rule) || rule.fault == Fault::Duplicate)
        return m_inner->request(envelope, timeoutMs);
    if (rule.fault == Fault::Timeout)
        return timedOut();
    if (rule.fault == Fault::Lose)
        return lost(m_inner->request(envelope, timeoutMs));
    if (rule.fault != Fault::Delay)
        return refusal(envelope);

    const QDeadlineTimer deadline(timeoutMs);
    const QDeadlineTimer due(rule.argument);
    const Reply reply = m_inner->request(envelope, timeoutMs);
    d->hold(due, deadline);
    return due < deadline || reply.outcome != Outcome::Answered ? reply : timedOut();
}

bool FaultChannel::send(const Envelope &envelope, int timeoutMs, ReplyHandler handler)
{
    Rule rule;
    if (!d->strike(envelope, rule))
        return m_inner->send(envelope, timeoutMs, std::move(handler));
    switch (rule.fault) {
    case Fault::Timeout:
        d->runLater(0, [handler] { handler(timedOut()); });
        return true;
    case Fault::Fail:
    case Fault::Truncate:
        d->runLater(0, [handler, envelope] { handler(refusal(envelope)); });
        return true;
    case Fault::Duplicate:
        return m_inner->send(envelope, timeoutMs, [handler](const Reply &reply) {
            handler(reply);
            handler(reply);
        });
    case Fault::Lose:
        return m_inner->send(envelope, timeoutMs, [handler](const Reply &reply) { handler(lost(reply)); });
    case Fault::Delay:
        break;
    }
    const bool inTime = rule.argument < timeoutMs;
    const int delayMs = qMin(rule.argument, timeoutMs);
    return m_inner->send(envelope, timeoutMs, [this, handler, delayMs, inTime](const Reply &reply) {
        const Reply late = inTime || reply.outcome != Outcome::Answered ? reply : timedOut();
        d->runLater(delayMs, [handler, late] { handler(late); });
    });
}

bool FaultChannel::subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                             int timeoutMs)
{
    Rule rule;
    const MessageBody asked{{{Stand_Fields::Subscription::pushType, pushType}}, {filter}};
    if (!d->strike(Envelope::request(Stand_MsgType::SubscribeRequest, {}, timeoutMs, asked), rule) ||
        rule.fault == Fault::Duplicate)
        return m_inner->subscribe(pushType, filter, serviceName, timeoutMs);
    if (rule.fault == Fault::Lose)
        m_inner->subscribe(pushType, filter, serviceName, timeoutMs);
    if (rule.fault != Fault::Delay)
        return false;
    const QDeadlineTimer deadline(timeoutMs);
    const QDeadlineTimer due(rule.argument);
    const bool accepted = m_inner->subscribe(pushType, filter, serviceName, timeoutMs);
    d->hold(due, deadline);
    return accepted && due < deadline;
}

void FaultChannel::setPushHandler(PushHandler handler)
{
    const bool isEmpty = !handler;
    {
        QMutexLocker lock(&d->mutex);
        d->pushHandler = isEmpty ? nullptr : std::make_shared<const PushHandler>(std::move(handler));
    }
    if (isEmpty)
        m_inner->setPushHandler({});
    else
        m_inner->setPushHandler([this](const Envelope &envelope) { d->push(envelope); });
    QMutexLocker lock(&d->mutex);
    while (d->runsPush && d->thread.get_id() != std::this_thread::get_id())
        d->woken.wait(&d->mutex);
}

MessageChannel::Connection FaultChannel::connection() const
{
    return m_inner->connection();
}

QDateTime FaultChannel::connectionSince() const
{
    return m_inner->connectionSince();
}

void FaultChannel::close()
{
    m_inner->close();
    QMutexLocker lock(&d->mutex);
    d->closed = true;
    d->woken.wakeAll();
}
