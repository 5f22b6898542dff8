#include "PresenterLine.h"

#include "ZrPresenterClass.h"
#include "core/Activity.h"
#include "framework/SingleThread.h"
#include "message/RequestTexts.h"

#include <QtCore/QHash>
#include <QtCore/QMutexLocker>
#include <QtCore/QSet>

#include <atomic>

namespace {

QString nextPid()
{
    static std::atomic<int> last{0};
    return QStringLiteral("presenter-%1").arg(++last);
}

struct Registry {
    QMutex mutex;
    QHash<const ZrPresenterClass *, std::shared_ptr<PresenterLine>> lines;
    QHash<QString, QSet<QString>> pidsByType;
};

Registry &registry()
{
    static auto *registry = new Registry; // never deleted: presenters may outlive every static
    return *registry;
}

} // namespace

void QueryWait::end(const MessageChannel::Reply &reply)
{
    QMutexLocker lock(&m_mutex);
    if (m_done)
        return;
    m_done = true;
    m_reply = reply;
    m_ended.wakeAll();
}

MessageChannel::Reply QueryWait::wait()
{
    QMutexLocker lock(&m_mutex);
    while (!m_done) {
        if (!SingleThread::isOn()) {
            m_ended.wait(&m_mutex);
            continue;
        }
        lock.unlock();
        SingleThread::giveTurn();
        lock.relock();
    }
    return m_reply;
}

PresenterLine::PresenterLine(ZrPresenterClass *presenter, PresenterThread *thread)
    : m_pid(nextPid())
    , m_thread(thread)
    , m_presenter(presenter)
{}

ZrPresenterClass *PresenterLine::presenter() const
{
    QMutexLocker lock(&m_mutex);
    return m_presenter;
}

void PresenterLine::post(const std::function<void(ZrPresenterClass *)> &call)
{
    QMutexLocker lock(&m_mutex);
    if (!m_presenter || m_releasing)
        return;
    // Posted under the mutex: detach() waits, so the presenter still is one.
    QMetaObject::invokeMethod(
        m_presenter, [call, presenter = m_presenter, token = Activity::begin()] { call(presenter); },
        Qt::QueuedConnection);
}

bool PresenterLine::enter(const std::shared_ptr<QueryWait> &wait)
{
    QMutexLocker lock(&m_mutex);
    if (m_releasing)
        return false;
    m_waits.append(wait);
    return true;
}

void PresenterLine::leave(const std::shared_ptr<QueryWait> &wait)
{
    QMutexLocker lock(&m_mutex);
    m_waits.removeOne(wait);
}

bool PresenterLine::isReleasing() const
{
    QMutexLocker lock(&m_mutex);
    return m_releasing;
}

void PresenterLine::release()
{
    QMutexLocker lock(&m_mutex);
    m_releasing = true;
    MessageChannel::Reply cancelled;
    cancelled.errorText = RequestTexts::cancelled();
    for (const std::shared_ptr<QueryWait> &wait : qAsConst(m_waits))
        wait->end(cancelled);
}

void PresenterLine::detach()
{
    release();
    QMutexLocker lock(&m_mutex);
    m_presenter = nullptr;
}

void PresenterLines::add(const ZrPresenterClass *presenter, const std::shared_ptr<PresenterLine> &line)
{
    QMutexLocker lock(&registry().mutex);
    registry().lines.insert(presenter, line);
}

void PresenterLines::remove(const ZrPresenterClass *presenter)
{
    QMutexLocker lock(&registry().mutex);
    const std::shared_ptr<PresenterLine> line = registry().lines.take(presenter);
    for (auto it = registry().pidsByType.begin(); line && it != registry().pidsByType.end(); ++it)
        it->remove(line->pid());
}

std::shared_ptr<PresenterLine> PresenterLines::of(const ZrPresenterClass *presenter)
{
    QMutexLocker lock(&registry().mutex);
    return registry().lines.value(presenter);
}

void PresenterLines::subscribe(const QString &pid, const QString &msgType)
{
    QMutexLocker lock(&registry().mutex);
    registry().pidsByType[msgType].insert(pid);
}

void PresenterLines::push(const Envelope &envelope)
{
    QVector<std::shared_ptr<PresenterLine>> receivers;
    {
        QMutexLocker lock(&registry().mutex);
        const QSet<QString> pids = registry().pidsByType.value(envelope.type);
        for (const std::shared_ptr<PresenterLine> &line : qAsConst(registry().lines)) {
            if (pids.contains(line->pid()))
                receivers.append(line);
        }
    }
    for (const std::shared_ptr<PresenterLine> &line : qAsConst(receivers)) {
        line->post([envelope, pid = line->pid()](ZrPresenterClass *presenter) {
            presenter->onPush(pid, envelope.type, envelope.body);
        });
    }
}
