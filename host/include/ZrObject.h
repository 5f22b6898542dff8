#pragma once

#include "HostExport.h"

#include <QtCore/QObject>

class LoopThread;

/// An object that may have a thread of its own.
class T0_HOST_EXPORT ZrObject : public QObject
{
    Q_OBJECT

public:
    /// ownThread: the object gets a thread of its own, is moved to it, and the thread is started; parent must
    /// be null then. Otherwise the object stays on the creating thread.
    ZrObject(bool ownThread, QObject *parent);

    /// quitThread(). A derived class calls quitThread() first in its own destructor, so that no slot runs
    /// while its members die.
    ~ZrObject() override;

    /// Names the own thread, also as the QThread's objectName. Never waits for the thread. Without a thread
    /// of its own: no effect.
    void setThreadName(const QString &name);

    /// Ends the own thread's event loop and waits for the thread. Callable twice, from any thread but the own
    /// one, and without a QCoreApplication. Events that were still queued are dropped.
    void quitThread();

private:
    LoopThread *m_thread = nullptr;
};
