#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QThread>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtCore/QWaitCondition>

/// Writes down every event of the host, on a thread of its own: their times are right also while a command
/// keeps the main thread. Everything may be called from the main thread only.
class EventRecorder : public QObject
{
    Q_OBJECT

public:
    struct Event {
        QString name;
        QVariant payload;
    };

    EventRecorder();
    ~EventRecorder() override;

    /// Hears the session that has just been opened; closing it ends that.
    void listen();

    /// The events since the last call, in order.
    QVector<Event> take();

    /// Load times count from here; the first call counts.
    void startClock();

    /// From the start of the clock to the first ManualT0DataInited of a family, in ms.
    QMap<int, qint64> loadTimes() const;

    /// To be called after everything that may begin a load: each family that is not loaded now has to be
    /// announced anew before it counts as such.
    void noteLoading();

    /// Waits until ManualT0DataInited of every family has come, after a reload that was noted again, and none
    /// of them is loading. Returns those of which that is not true after timeoutMs or when the program is told
    /// to end.
    QList<int> waitForInited(const QList<int> &families, int timeoutMs);

private:
    void record(const QString &name, const QVariant &payload);
    QList<int> unfinished(const QList<int> &families); ///< with the mutex held

    QThread m_thread;
    mutable QMutex m_mutex; ///< guards what follows
    QWaitCondition m_recorded;
    QVector<Event> m_events;
    QMap<int, qint64> m_loadTimes;
    QSet<int> m_announced; ///< since they were last seen not loaded
    QElapsedTimer m_clock;
};
