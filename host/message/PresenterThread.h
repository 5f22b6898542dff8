#pragma once

#include "framework/LoopThread.h"

/// The own thread of a presenter; a type of its own, so that it can be told from other threads.
class PresenterThread : public LoopThread
{
    Q_OBJECT
};
