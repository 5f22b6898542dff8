#pragma once

#include "HostExport.h"

#include <QtCore/QString>

// Message types of the trading server.

namespace Master_MsgType {
extern T0_WIRE_EXPORT const QString QueryManualT0ProductsRequest;
extern T0_WIRE_EXPORT const QString QueryManualT0ProductsResponse;
extern T0_WIRE_EXPORT const QString QueryUserIdByUserRoleRequest;
extern T0_WIRE_EXPORT const QString QueryManualT0ResourceRequest;
extern T0_WIRE_EXPORT const QString QueryManualT0SecurityPoolRequest;
extern T0_WIRE_EXPORT const QString QueryManualT0RealTimePoolUsageRequest;
extern T0_WIRE_EXPORT const QString QueryManualT0TraderAccountPriorityRequest;
extern T0_WIRE_EXPORT const QString ManualT0RealTimePoolUsagePush;
extern T0_WIRE_EXPORT const QString AlterManualT0ProductsRequest;
extern T0_WIRE_EXPORT const QString AddManualT0ResourceRequest;
extern T0_WIRE_EXPORT const QString AlterManualT0ResourceRequest;
extern T0_WIRE_EXPORT const QString DeleteManualT0ResourceRequest;
extern T0_WIRE_EXPORT const QString AllocateManualT0SecurityPoolRequest;
extern T0_WIRE_EXPORT const QString AlterManualT0SecurityPoolRequest;
extern T0_WIRE_EXPORT const QString DeleteManualT0SecurityPoolRequest;
extern T0_WIRE_EXPORT const QString AddManualT0ResourceAndPoolRequest;
extern T0_WIRE_EXPORT const QString orderCancelBatchCppRequest;
} // namespace Master_MsgType
