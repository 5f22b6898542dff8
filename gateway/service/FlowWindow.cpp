#include "FlowWindow.h"

FlowWindow::FlowWindow(qint64 spanMs)
    : m_spanMs(spanMs)
{}

bool FlowWindow::hasRoom(qint64 nowMs, int most)
{
    forgetOld(nowMs);
    return m_times.size() < size_t(most);
}

void FlowWindow::count(qint64 nowMs)
{
    m_times.push_back(nowMs);
}

void FlowWindow::forgetOld(qint64 nowMs)
{
    // A clock that was set back must not lock anybody out until it has come here again.
    if (!m_times.empty() && m_times.back() > nowMs)
        m_times.clear();
    while (!m_times.empty() && m_times.front() <= nowMs - m_spanMs)
        m_times.pop_front();
}
