#include "ZrPresenterClass.h"

#include "core/LivingObjects.h"
#include "framework/SingleThread.h"
#include "message/PresenterLine.h"
#include "message/PresenterThread.h"
#include "message/Server.h"

namespace {

constexpr int ownThreadType = 15;
enum ResponseStatus { Answered = 0, TimedOut = 1, Failed = 2 };

ResponseStatus statusOf(const MessageChannel::Reply &reply)
{
    MessageBody body;
    QString errorText;
    if (reply.outcome == MessageChannel::Outcome::TimedOut)
        return TimedOut;
    if (reply.outcome == MessageChannel::Outcome::NotSent)
        return Failed;
    return MessageBody::decode(reply.envelope.body, body, errorText) ? Answered : Failed;
}

} // namespace

class ZrPresenterClass::Link
{
public:
    std::shared_ptr<PresenterLine> line;
};

ZrPresenterClass::ZrPresenterClass(const QString &, ZrPluginBaseObject *, int threadType)
    : m_link(new Link)
{
    const bool ownThread = threadType == ownThreadType && !SingleThread::isOn();
    PresenterThread *thread = ownThread ? new PresenterThread : nullptr;
    m_link->line = std::make_shared<PresenterLine>(this, thread);
    PresenterLines::add(this, m_link->line);
    if (thread) {
        moveToThread(thread);
        thread->startLoop();
    }
    LivingObjects::add(this);
}

ZrPresenterClass::~ZrPresenterClass()
{
    LivingObjects::remove(this);
    PresenterLines::remove(this);
    const bool released = m_link->line->isReleasing();
    m_link->line->detach();
    PresenterThread *thread = m_link->line->thread();
    delete m_link;
    if (released || !thread)
        return; // release() ends the thread
    if (QThread::currentThread() == thread)
        connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->quit();
    if (QThread::currentThread() != thread) {
        thread->endLoop();
        delete thread;
    }
}

QString ZrPresenterClass::pluginPid() const
{
    return m_link->line->pid();
}

void ZrPresenterClass::Sub(const QString &pid, const QString &msgType, int)
{
    PresenterLines::subscribe(pid, msgType);
}

int ZrPresenterClass::sendRequest_Async(CMessageCommon *message)
{
    const Server::Lease server;
    const std::shared_ptr<PresenterLine> line = m_link->line;
    if (!message || !server || line->isReleasing())
        return 1;

    Envelope envelope = Envelope::request(message->type(), server->user, server->timeoutMs, {});
    envelope.body = message->msg();
    const QString srcId = message->srcId();
    const auto answered = [line, srcId, type = envelope.type](const MessageChannel::Reply &reply) {
        line->post([reply, srcId, type](ZrPresenterClass *presenter) {
            presenter->onResponse(statusOf(reply), srcId, type, reply.envelope.body);
        });
    };
    if (!server->channel->send(envelope, server->timeoutMs, answered))
        return 2;
    delete message;
    return 0;
}

void ZrPresenterClass::release(ZrPresenterClass *presenter)
{
    const std::shared_ptr<PresenterLine> line = PresenterLines::of(presenter);
    if (!line)
        return;
    PresenterThread *thread = line->thread();
    if (!thread) {
        delete presenter;
        return;
    }
    Q_ASSERT_X(QThread::currentThread() != thread, "ZrPresenterClass::release", "called on the presenter's thread");
    line->release();
    presenter->deleteLater();
    thread->endLoop();
    // Without an application object nothing was delivered at the thread's end; nobody else can enter it now.
    delete line->presenter();
    delete thread;
}
