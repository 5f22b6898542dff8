#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>

#include <atomic>
#include <functional>

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

    /// Before the start: runs on the thread, after its last event, for what must die where it lived.
    void setAtEnd(std::function<void()> atEnd) { m_atEnd = std::move(atEnd); }

    /// Ends the loop and waits for the thread, whose running call is asked to give up (isInterruptionRequested);
    /// true when all that ran on it is over. Callable twice.
    bool endLoop()
    {
        requestInterruption();
        quit();
        return wait() && m_ended;
    }

protected:
    void run() override
    {
        QEventLoop loop;
        m_hasLoop.release();
        loop.exec(); // quit() ends it, also when it came before
        if (m_atEnd)
            m_atEnd();
        m_ended = true;
    }

private:
    QSemaphore m_hasLoop;
    std::function<void()> m_atEnd;
    std::atomic<bool> m_ended{false};
};
