#pragma once

#include "HostExport.h"

#include <functional>

/// For simulations: everything runs on one thread. While it is on, no object gets a thread of its own and the host
/// starts none; a call that waits for an answer lets the others have a turn until it has come.
namespace SingleThread {

/// Before anything of the host is made. turn: runs something else, once; called over and over by whoever waits.
/// An empty one ends it. What became of a request is asked for only by MasterTradeLogic::fateOfRequest then.
T0_HOST_EXPORT void setTurn(std::function<void()> turn);

bool isOn();
void giveTurn(); ///< only while it is on

} // namespace SingleThread
