#pragma once

#include "StreamChannel.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <set>
#include <thread>

/// The trading server of the probes: a manager with three accounts and a little of every family, answered one
/// request after the other on a thread of its own. Resources come in three pages. Any thread may call.
class ProbeServer : public StreamChannel
{
public:
    static const QString user; ///< the manager who logs in

    ProbeServer();
    ~ProbeServer() override;

    void refuse(const QString &msgType); ///< every such request fails from now on
    void hold(const QString &msgType);   ///< no such request is answered from now on, nor anything after it

    int requests(const QString &msgType) const; ///< that have arrived
    int requests() const;

    /// Until so many requests have arrived, of the type or at all; false after ten seconds.
    bool waitForRequests(const QString &msgType, int count);
    bool waitForRequests(int count);

    /// Sends one usage record, newer than the ones before.
    void push();

protected:
    bool transmit(const QByteArray &envelope) override;

private:
    void answerAll();
    bool nextToAnswer(Envelope &request);
    MessageBody answerTo(const Envelope &request) const;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Envelope> m_queue;
    std::map<QString, int> m_arrived;
    int m_arrivedTotal = 0;
    std::set<QString> m_refused;
    std::set<QString> m_held;
    bool m_stopping = false;
    std::mutex m_deliveryMutex; ///< received() takes one envelope at a time
    qint64 m_pushes = 0;
    std::thread m_thread;
};
