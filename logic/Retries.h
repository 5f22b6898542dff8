#pragma once

namespace Retries {

/// Requests for products or traders in a row, the first one counted, before a load is given up.
constexpr int MaxRequests = 5;

} // namespace Retries
