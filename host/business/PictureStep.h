#pragma once

#include "HostSession.h"

/// Whether what the session holds is what the server has. After every reconnection the server sends what was missed,
/// then answers an echo: once that has come, and everybody in this process has taken what came before it, the picture
/// is in step again. Thread-safe; without a session nothing is in step.
namespace PictureStep {

/// A session begins to load: what this connection brings needs no more.
void begin();

PictureState state();

/// Asks for the echo when it is needed and none is under way; returns at once. One that is lost is asked for again with
/// the next call.
void synchronise();

void heard(); ///< something has come from the server
void clear();

} // namespace PictureStep
