#pragma once

#include "HostExport.h"

#include <QtCore/QVariantMap>

/// For the replay of a journal: presenters ask what was asked, when it was asked, and not what their plug-ins want to
/// know now. At rest only (HostSession::settle).
namespace PresenterTakeover {

/// From here on no object with a thread of its own reaches a presenter by a signal; its signals go to nobody.
/// Presenters reach them as before.
T0_HOST_EXPORT void begin();

/// Queues a call of a slot on the thread of every presenter that has it. slot: its signature as Qt normalises it, with
/// one argument of type QVariantMap or none.
T0_HOST_EXPORT void call(const QByteArray &slot, const QVariantMap &argument);

} // namespace PresenterTakeover
