#pragma once

#include "StreamChannel.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

/// The server of the benchmark: answers the host's login and reference data, every other request with no rows.
/// It never pushes.
class ReferenceChannel : public StreamChannel
{
public:
    /// instruments: rows of Stand_MsgType::QueryInstrumentsRequest.
    ReferenceChannel(const QString &user, const RecordList &instruments);
    ~ReferenceChannel() override;

protected:
    bool transmit(const QByteArray &envelope) override;

private:
    void answerAll();
    QByteArray answerTo(const QByteArray &envelope) const;

    const QString m_user;
    const RecordList m_instruments;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<QByteArray> m_queue;
    bool m_stopping = false;
    std::thread m_thread;
};
