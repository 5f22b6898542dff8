#pragma once

#include "MessageBody.h"

#include <QtCore/QMetaType>

/// A message on its way. The body stays encoded until its receiver reads it.
struct T0_WIRE_EXPORT Envelope {
    enum class Kind { Request = 0, Answer = 1, Push = 2 };

    Kind kind = Kind::Request;
    QString id;            ///< unique; an answer carries the id of its request
    QString sender;        ///< the user the request is sent for; the gateway takes its login's user instead
    qint64 sent = 0;       ///< ms since the epoch, UTC
    qint64 validUntil = 0; ///< ms since the epoch, UTC; a request that arrives later is refused
    QString type;          ///< Master_MsgType or Stand_MsgType
    QByteArray body;       ///< MessageBody::encode()

    /// The ids of this process begin anew, with another part in common: for simulations, which repeat themselves. Not
    /// while anybody makes messages.
    static void beginIds(const QString &first);

    QByteArray encode() const;

    /// As MessageBody::decode; the body is checked only when it is decoded itself.
    static bool decode(const QByteArray &bytes, Envelope &envelope, QString &errorText);

    /// A new request: fresh id, sent now, valid for validMs from now.
    static Envelope request(const QString &type, const QString &sender, int validMs, const MessageBody &body);

    /// The answer to this request: its id and type, the given body.
    Envelope answer(const MessageBody &body) const;

    /// What asks for pushes of a type: a Stand_MsgType::SubscribeRequest.
    static Envelope subscription(const QString &pushType, const VariantRecord &filter, const QString &serviceName,
                                 int validMs);

    /// A push of one type.
    static Envelope push(const QString &type, const MessageBody &body);
};
Q_DECLARE_METATYPE(Envelope)
