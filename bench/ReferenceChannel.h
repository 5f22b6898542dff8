#pragma once

#include "MessageChannel.h"

/// The server of the benchmark: answers the host's login and reference data from memory, at once; every
/// other request with no rows. It never pushes.
class ReferenceChannel : public MessageChannel
{
public:
    /// instruments: rows of Stand_MsgType::QueryInstrumentsRequest.
    ReferenceChannel(const QString &user, const RecordList &instruments);

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    bool subscribe(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                   int timeoutMs) override;
    void setPushHandler(PushHandler handler) override;
    Connection connection() const override;
    QDateTime connectionSince() const override;
    void close() override;

private:
    RecordList rowsFor(const QString &msgType) const;

    const QString m_user;
    const RecordList m_instruments;
    const QDateTime m_since;
};
