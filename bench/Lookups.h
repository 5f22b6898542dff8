#pragma once

#include "BenchHub.h"

/// The lookups that are measured: each finds every key, counts the fields it was given and ends the program
/// with a message when a record is not whole, so that nothing but whole hits is timed.
namespace Lookups {

using Lookup = void (*)(const BenchHub &hub, const QVector<Records::Keys> &keys);

/// GetRealtimePoolDetail.
void usageRecords(const BenchHub &hub, const QVector<Records::Keys> &keys);

/// GetSecurityPoolDetailByTrading; its result has the trader's name besides.
void pools(const BenchHub &hub, const QVector<Records::Keys> &keys);

} // namespace Lookups
