#pragma once

#include "HostExport.h"

#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <functional>

/// Where the host's named events are heard. Callable from any thread.
namespace EventBus {

using Listener = std::function<void(const QVariant &payload)>;

/// From now on listener runs on context's thread, through its event loop, for every event of this name sent
/// with MasterUtils::SendEventMsg; until context is destroyed or stopListening is called with it. A listener
/// never runs inside SendEventMsg, also when the sender is on context's own thread. context must not live
/// on a presenter's thread (asserted): a listener there would hold up the pushes.
T0_HOST_EXPORT void listen(const QString &eventName, QObject *context, Listener listener);

/// Hears every event: name and payload, in sending order.
T0_HOST_EXPORT void listenToAll(QObject *context,
                                std::function<void(const QString &eventName, const QVariant &payload)> listener);

/// Ends every registration of context. Events that are already queued for it are dropped.
T0_HOST_EXPORT void stopListening(QObject *context);

} // namespace EventBus
