#pragma once

#include "Envelope.h"
#include "trade/OrderAnswer.h"

/// What became of requests whose answer never came. Each is asked for until the server tells, by one thread for all
/// that begins with the first; then the user gets one message about it. Thread-safe.
namespace RequestFates {

/// Follows a request of so many orders. The caller holds a Server::Lease.
void follow(const Envelope &request, int orders);

/// Asks the server once and blocks for the answer: that of the request itself, or a failure when it never came in time,
/// or OrderAnswer::unknown.
OrderAnswer ask(const QString &requestId);

/// Nothing is followed any more and nobody asks. After Server::close(), which ends what is under way.
void clear();

} // namespace RequestFates
