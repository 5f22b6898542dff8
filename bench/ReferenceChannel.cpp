#include "ReferenceChannel.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandMsgType.h"

ReferenceChannel::ReferenceChannel(const QString &user, const RecordList &instruments)
    : m_user(user)
    , m_instruments(instruments)
    , m_thread(&ReferenceChannel::answerAll, this)
{
    setConnection(Connection::Connected);
}

ReferenceChannel::~ReferenceChannel()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
    close();
}

bool ReferenceChannel::transmit(const QByteArray &envelope)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_queue.push_back(envelope);
    }
    m_changed.notify_all();
    return true;
}

void ReferenceChannel::answerAll()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stopping || !m_queue.empty(); });
        if (m_stopping)
            return;
        const QByteArray request = m_queue.front();
        m_queue.pop_front();
        lock.unlock();
        received(answerTo(request));
        lock.lock();
    }
}

QByteArray ReferenceChannel::answerTo(const QByteArray &bytes) const
{
    Envelope request;
    QString errorText;
    if (!Envelope::decode(bytes, request, errorText))
        qFatal("the host sent no envelope: %s", qPrintable(errorText));
    MessageBody body;
    body.values.insert(Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::success);
    if (request.type == Stand_MsgType::LoginRequest)
        body.rows = {{{Orvane_Fields::UserAccount::userID, m_user}}};
    else if (request.type == Stand_MsgType::QueryInstrumentsRequest)
        body.rows = m_instruments;
    return request.answer(body).encode();
}
