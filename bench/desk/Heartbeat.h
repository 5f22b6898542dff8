#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

/// Beats every 10 ms on the GUI thread's event loop and notes how late each beat comes. A beat that the loop was too
/// busy for counts as late as the one that came in its place.
class Heartbeat
{
public:
    static constexpr int IntervalMs = 10;
    static constexpr int LateMs = 50;

    struct Result {
        qint64 beats = 0;
        qint64 late = 0;  ///< more than LateMs
        qint64 worst = 0; ///< ms
    };

    Heartbeat();
    Result result() const { return m_result; }

private:
    void beat();

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_due = IntervalMs;
    Result m_result;
};
