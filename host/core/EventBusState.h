#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

/// The host's side of the event bus.
namespace EventBusState {

void send(const QString &eventName, const QVariant &payload); ///< MasterUtils::SendEventMsg
void clear();                                                 ///< ends every registration

} // namespace EventBusState
