#pragma once

#include "JournalRecord.h"
#include "MessageChannel.h"

#include <QtCore/QMutex>

#include <memory>

/// Takes down everything that goes through another channel. A request is in the journal before it leaves, an answer and
/// a push before anybody is told of them, so that causes stand before their effects. Echoes are left out: they carry
/// nothing, and how many there are depends on the speed of the machine.
class JournalChannel : public MessageChannel
{
public:
    JournalChannel(std::unique_ptr<MessageChannel> inner, std::shared_ptr<JournalSink> journal);

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;
    void setPushHandler(PushHandler handler) override;
    Connection connection() const override;
    QDateTime connectionSince() const override;
    void close() override;

private:
    const std::shared_ptr<JournalSink> m_journal; ///< goes last: the channel may still call
    std::unique_ptr<MessageChannel> m_inner;
    mutable QMutex m_mutex;
    mutable Connection m_noted = Connection::Connected; ///< under the mutex
};
