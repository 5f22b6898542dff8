#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>

/// A thread that only runs an event loop, and whose start waits until it has one. A thread that came to its
/// loop late, while the process already ends, would make Qt warn with statics that are gone.
class LoopThread : public QThread
{
    Q_OBJECT

public:
    void startLoop()
    {
        start();
        m_hasLoop.acquire();
    }

protected:
    void run() override
    {
        QEventLoop loop;
        m_hasLoop.release();
        loop.exec(); // quit() ends it, also when it came before
    }

private:
    QSemaphore m_hasLoop;
};
