#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <array>

/// How a data family stands.
struct FamilyStatus {
    enum class State { NotStarted, Loading, Ready, PartlyFailed, Failed };

    State state = State::NotStarted;
    int done = 0;         ///< queries that the load under way has finished
    int expected = 1;     ///< queries that a load takes
    qint64 received = 0;  ///< rows that the load under way has received
    QDateTime finishedAt; ///< of the last load; invalid: none has finished
    int durationMs = -1;  ///< of the last load; -1: unknown
};

/// Watches the library's data families load, and refreshes them. GUI thread only.
class FamilyWatch : public QObject
{
    Q_OBJECT

public:
    static constexpr int familyCount = 6;

    /// The one that everything in the window shares; made when first asked for, goes with the window.
    static FamilyWatch *ofWindow();

    explicit FamilyWatch(QObject *parent);

    const FamilyStatus &status(int type) const { return m_families.at(size_t(type)).status; }
    bool isStale() const { return m_staleSince.isValid(); } ///< disconnected: what is held may be old

    static QString name(int type);       ///< as shown
    QString stateText(int type) const;   ///< as shown
    QString description(int type) const; ///< its name, its state and the times that belong to it
    static QString requestOf(int type);  ///< the type of the message that asks for the family

    /// How many records the library holds. Copies them: not for every repaint.
    static int rowsOf(int type);

    /// One family; Products, Traders, Resources and SecurityPools only.
    void refresh(int type);

    /// All families; refused, with a business message, before secondsToRefresh() is 0.
    void refreshAll();
    int secondsToRefresh() const;

signals:
    void changed();          ///< some status
    void finished(int type); ///< a load has ended, either way

private:
    /// A moment at which a family was not loading.
    struct Mark {
        QDateTime at;
        int requests = 0; ///< queries that had finished then
        qint64 received = 0;
    };
    struct Family {
        FamilyStatus status;
        Mark before; ///< a load under way or ended since began after it
        Mark latest; ///< the look after that: the load may have begun and ended in between, untold yet
    };

    void look();
    void lookAt(int type);
    void finish(int type);
    static Mark markNow(int type);
    void watchConnection();

    std::array<Family, familyCount> m_families;
    QDateTime m_staleSince;
    QDateTime m_refreshedAt; ///< the last refresh of everything that was not refused
    QTimer m_timer;
};
