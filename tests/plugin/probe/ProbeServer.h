#pragma once

#include "ScriptedChannel.h"

/// The trading server of the probes: a manager with three accounts and a little of every family; resources come
/// in three pages.
namespace ProbeServer {

/// A session with it. Requests time out after a minute, so that a program which waits for an answer at its end is
/// seen to hang. channel stays valid until the session ends.
std::unique_ptr<HostSession> open(ScriptedChannel *&channel);

/// A usage record of the manager; a higher time is newer.
VariantRecord usage(qint64 time);

} // namespace ProbeServer
