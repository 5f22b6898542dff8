#pragma once

#include "ResourceRows.h"

/// Accounts enabled for T0, securities and traders, as library and host know them.
namespace HostDirectory {

ResourceRows::Directory directory();

} // namespace HostDirectory
