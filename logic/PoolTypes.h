#pragma once

/// Values of Master_Fields::ManualT0::PoolType.
namespace PoolTypes {

constexpr int Public = 0; ///< in the sums of a resource everything that is not Private counts as public
constexpr int Private = 1;
constexpr int All = 3; ///< in lookups only

} // namespace PoolTypes
