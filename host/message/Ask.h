#pragma once

#include "MessageChannel.h"

class ZrPresenterClass;

/// A request and what ended the wait for its answer.
struct Asked {
    bool sent = false; ///< it has left this process: whatever the outcome, the server may have carried it out
    Envelope request;  ///< empty without a session
    MessageChannel::Reply reply;
};

/// Sends a request to the open session's server and blocks for the answer, on a waiter of this call. presenter: whose
/// release ends the wait; null: nobody's.
Asked ask(ZrPresenterClass *presenter, const QString &msgType, const MessageBody &body);
