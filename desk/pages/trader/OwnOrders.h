#pragma once

#include "VariantRecord.h"

/// The user's own orders and fills of the day, from the host's stores.
namespace OwnOrders {

QString user(); ///< who has logged in
bool isOwn(const VariantRecord &orderOrFill);
bool isLive(const VariantRecord &order); ///< may still be cancelled

RecordList all(); ///< by orderID
RecordList live(const QString &symbol);
RecordList fills(); ///< by fillID

} // namespace OwnOrders
