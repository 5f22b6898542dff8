#pragma once

#include <functional>

class QObject;

/// The objects whose event loops belong to the host's work: those with threads of their own and presenters.
namespace LivingObjects {

void add(QObject *object);
void remove(QObject *object); ///< at the latest in the destructor

/// Calls back for each, while none can leave: nobody may wait inside.
void forEach(const std::function<void(QObject *)> &call);

/// Sends an empty call through the event queue of every living object, runs the calling thread's events
/// meanwhile, and returns true when all calls have come through or were dropped with their object; false
/// when timeoutMs passed before.
bool passThroughAll(int timeoutMs);

/// The same without waiting: then() runs on the thread of whoever is last, or at once when there is nobody.
void afterAll(std::function<void()> then);

} // namespace LivingObjects
