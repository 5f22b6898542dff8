#pragma once

#include "Input.h"
#include "MessageBody.h"

/// Messages that a server might send, good or not, made of an input: few ids, so that they meet, and now and then a
/// field that is missing, of another type, out of every range, or a body that is none.
namespace FuzzedRows {

QStringList accounts();
QStringList products();
QStringList assetProps();
QStringList traders(); ///< the first is the login user
QStringList symbols();
QStringList exchanges();
QStringList sides();
QStringList resourceIds();
QStringList poolIds();
QStringList pushTypes();

QVariant value(Input &input, int depth = 0); ///< anything

/// One row of what a message type carries. account: whose it is where it belongs to one; empty: any.
VariantRecord row(Input &input, const QString &msgType, const QString &account = {});

/// The answer to a request. The first row of one for products repeats the request, or should.
QByteArray answer(Input &input, const QString &msgType, const MessageBody &request);

/// What a good server answers while the session opens; without it there is nothing behind the hub.
QByteArray goodAnswer(const QString &msgType);

} // namespace FuzzedRows
