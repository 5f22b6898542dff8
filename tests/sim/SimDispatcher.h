#pragma once

#include <QtCore/QAbstractEventDispatcher>

#include <functional>
#include <map>

/// Qt's timers in the time of the simulation. Nothing happens by itself: the world asks for the next timer and
/// fires it.
class SimDispatcher : public QAbstractEventDispatcher
{
    Q_OBJECT

public:
    using Allowed = std::function<bool(QObject *owner)>;

    /// The timer that is due first of those whose owners may run; 0: none.
    int nextTimer(const Allowed &allowed) const;
    qint64 dueOf(int timer) const { return m_timers.at(timer).due; }
    QObject *ownerOf(int timer) const { return m_timers.at(timer).owner; }
    void fire(int timer);

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    bool hasPendingEvents() override { return false; }
    void registerSocketNotifier(QSocketNotifier *) override {}
    void unregisterSocketNotifier(QSocketNotifier *) override {}
    void registerTimer(int timer, int intervalMs, Qt::TimerType type, QObject *owner) override;
    bool unregisterTimer(int timer) override;
    bool unregisterTimers(QObject *owner) override;
    QList<TimerInfo> registeredTimers(QObject *owner) const override;
    int remainingTime(int timer) override;
    void wakeUp() override {}
    void interrupt() override {}
    void flush() override {}

private:
    struct Timer {
        qint64 due = 0;      ///< microseconds
        qint64 interval = 0; ///< microseconds
        Qt::TimerType type = Qt::CoarseTimer;
        QObject *owner = nullptr;
        quint64 order = 0; ///< among those that are due at the same time; ids depend on what was before this seed
    };
    std::map<int, Timer> m_timers; ///< by id
    quint64 m_lastOrder = 0;
};
