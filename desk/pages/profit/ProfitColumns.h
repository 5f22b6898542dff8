#pragma once

#include "Column.h"
#include "ProfitRows.h"

namespace ProfitColumns {

/// What is shown of the rows of a group.
Columns of(ProfitRows::Group group);

} // namespace ProfitColumns
