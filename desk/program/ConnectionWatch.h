#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QTimer>

class HostSession;

/// Whether the gateway is there, how old what it told is, and how long it takes to answer, asked every few seconds. GUI
/// thread; never waits.
class ConnectionWatch : public QObject
{
    Q_OBJECT

public:
    ConnectionWatch(HostSession &session, QObject *parent);

    bool isConnected() const;
    QDateTime since() const;                      ///< when that last changed
    QString gate() const;                         ///< why nothing may be sent; empty when it may
    bool isInStep() const;                        ///< else the host refuses orders
    int silentSeconds() const;                    ///< since the gateway was last heard; -1: it never was
    int latencyMs() const { return m_latencyMs; } ///< of the last answer; -1: none since it is connected

signals:
    void changed();  ///< isConnected, isInStep
    void measured(); ///< latencyMs

private:
    void ask();
    void onConnection();
    void answered(int connection, bool hasAnswer, int ms);

    HostSession &m_session;
    QTimer m_timer;
    bool m_isAsking = false;
    int m_connection = 0; ///< counts connections: an answer of an earlier one says nothing
    int m_latencyMs = -1;
};
