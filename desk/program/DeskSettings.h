#pragma once

#include <QtCore/QVariant>

/// What the frame keeps in the host's settings of the user, under fixed English names.
namespace DeskSettings {

QVariant value(const QString &name, const QVariant &otherwise = {}); ///< otherwise: when nothing is kept
void keep(const QString &name, const QVariant &value);               ///< an invalid value: nothing is kept any more

} // namespace DeskSettings
