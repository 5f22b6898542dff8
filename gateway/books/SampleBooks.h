#pragma once

#include "Books.h"

namespace SampleBooks {

constexpr int maxScale = 1000;

/// Books with invented securities, accounts and people; the same for the same scale, on every machine.
/// scale, 1 to maxScale: how many times accounts, securities and all that hangs on them are there; the users
/// stay the same six.
Books make(int scale);

} // namespace SampleBooks
