#pragma once

#include "MessageChannel.h"

#include <QtCore/QMutex>
#include <QtCore/QVector>
#include <QtCore/QWaitCondition>

#include <memory>

class PresenterThread;
class ZrPresenterClass;

/// One blocked query: the answer comes from the channel's thread, the end also from a presenter's release.
/// The first of both counts.
class QueryWait
{
public:
    void end(const MessageChannel::Reply &reply);
    MessageChannel::Reply wait();

private:
    QMutex m_mutex;
    QWaitCondition m_ended;
    bool m_done = false;
    MessageChannel::Reply m_reply;
};

/// What the channel's threads know of a presenter. Outlives it: what comes later finds nobody and is dropped.
/// Thread-safe.
class PresenterLine
{
public:
    PresenterLine(ZrPresenterClass *presenter, PresenterThread *thread);

    QString pid() const { return m_pid; }
    PresenterThread *thread() const { return m_thread; }
    ZrPresenterClass *presenter() const;

    /// Runs call on the presenter's thread, through its event loop, unless the presenter is gone by then.
    void post(const std::function<void(ZrPresenterClass *)> &call);

    /// A query begins; false when the presenter is being released.
    bool enter(const std::shared_ptr<QueryWait> &wait);
    void leave(const std::shared_ptr<QueryWait> &wait);

    bool isReleasing() const;
    void release(); ///< ends the queries under way and refuses new ones
    void detach();  ///< the presenter is being destroyed

private:
    const QString m_pid;
    PresenterThread *const m_thread; ///< null: the creating thread
    mutable QMutex m_mutex;
    ZrPresenterClass *m_presenter;
    bool m_releasing = false;
    QVector<std::shared_ptr<QueryWait>> m_waits;
};

/// All lines of the process, and which line gets which pushes.
namespace PresenterLines {

void add(const ZrPresenterClass *presenter, const std::shared_ptr<PresenterLine> &line);
void remove(const ZrPresenterClass *presenter);

/// Null for a presenter that is gone; it is compared, never entered.
std::shared_ptr<PresenterLine> of(const ZrPresenterClass *presenter);

void subscribe(const QString &pid, const QString &msgType);
void push(const Envelope &envelope); ///< queues it for every subscribed presenter

} // namespace PresenterLines
