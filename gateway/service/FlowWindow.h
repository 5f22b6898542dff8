#pragma once

#include <QtCore/QtGlobal>

#include <deque>

/// How often something happened within the last span of a clock. What one call costs does not grow with it.
class FlowWindow
{
public:
    explicit FlowWindow(qint64 spanMs);

    /// Whether it may happen once more, when it may happen at most `most` times in any span.
    bool hasRoom(qint64 nowMs, int most);

    void count(qint64 nowMs); ///< it has happened

private:
    void forgetOld(qint64 nowMs);

    const qint64 m_spanMs;
    std::deque<qint64> m_times; ///< ascending
};
