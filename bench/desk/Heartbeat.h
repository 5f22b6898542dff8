#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

#include <atomic>
#include <thread>

/// Beats that are due every 10 ms, and how late they came. A beat that its thread was too busy for counts as late as
/// the one that came in its place.
class Beats
{
public:
    static constexpr int IntervalMs = 10;
    static constexpr int LateMs = 50;

    struct Result {
        qint64 beats = 0;
        qint64 late = 0;  ///< more than LateMs
        qint64 worst = 0; ///< ms
    };

    void beat(qint64 now); ///< ms since the first was 10 ms ahead
    qint64 due() const { return m_due; }
    const Result &result() const { return m_result; }

private:
    qint64 m_due = IntervalMs;
    Result m_result;
};

/// Beats on the GUI thread's event loop.
class Heartbeat
{
public:
    Heartbeat();
    Beats::Result result() const { return m_beats.result(); }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    Beats m_beats;
};

/// Beats on a thread that does nothing else: what of the lateness is the machine's.
class BareThread
{
public:
    BareThread();
    ~BareThread();
    Beats::Result stop(); ///< callable twice

private:
    void run();

    Beats m_beats; ///< of the thread until it is stopped
    std::atomic<bool> m_stops{false};
    std::thread m_thread;
};
