#pragma once

#include "HostExport.h"

#include <QtCore/QVariantMap>

/// Calls into presenters from outside of their plug-in, by name. For the replay of a journal, which repeats the queries
/// that were asked at times nobody knows, and for nothing else.
namespace PresenterCalls {

/// Queues a call of a slot on the thread of every presenter that has it. slot: its signature as Qt normalises it, with
/// one argument of type QVariantMap or none.
T0_HOST_EXPORT void call(const QByteArray &slot, const QVariantMap &argument);

} // namespace PresenterCalls
