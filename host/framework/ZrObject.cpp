#include "ZrObject.h"

#include "core/LivingObjects.h"
#include "framework/LoopThread.h"
#include "framework/SingleThread.h"

ZrObject::ZrObject(bool ownThread, QObject *parent)
    : QObject(parent)
{
    if (!ownThread || SingleThread::isOn())
        return;
    Q_ASSERT_X(!parent, "ZrObject", "an object with a parent cannot move to a thread of its own");
    m_thread = new LoopThread;
    moveToThread(m_thread);
    m_thread->startLoop();
    LivingObjects::add(this);
}

ZrObject::~ZrObject()
{
    quitThread();
    delete m_thread;
}

void ZrObject::setThreadName(const QString &name)
{
    if (m_thread)
        m_thread->setObjectName(name);
}

void ZrObject::quitThread()
{
    if (!m_thread)
        return;
    Q_ASSERT_X(QThread::currentThread() != m_thread, "ZrObject::quitThread", "called on the own thread");
    LivingObjects::remove(this);
    m_thread->endLoop();
}
