#pragma once

#include "VariantRecord.h"

/// What became of orders that were sent. A sent order is its order row with requestExeStatus, orderID or
/// textDescription, and Stand_Fields::Order::requestId while nobody knows. Without requestExeStatus it is being sent,
/// or, with a text, was never submitted.
namespace OrderResults {

/// The sent orders with their results, those of an account in the order they were sent. An account that is not the
/// user's has none.
RecordList match(const RecordList &sent, const RecordList &results, const QString &notSubmitted);

/// Orders of one request, all of them, with what the server says of it (MasterTradeLogic::transFate): known orders stay
/// as they are.
RecordList withFate(const RecordList &requestOrders, const RecordList &fate);

bool isUnknown(const VariantRecord &sent);
bool isAccepted(const VariantRecord &sent);
bool isRefused(const VariantRecord &sent); ///< or never submitted

} // namespace OrderResults
