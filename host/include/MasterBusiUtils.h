#pragma once

#include "HostExport.h"

#include <QtCore/QStringList>

namespace MasterBusiUtils {

/// The order statuses in which an order may still be cancelled: accepted, partly filled.
T0_HOST_EXPORT QStringList GetCancelableOrderStatusList();

} // namespace MasterBusiUtils
