#pragma once

class RecordTable;

/// Tables that grow at their end.
namespace FollowEnd {

/// Who stands at the end of the table sees what comes; who has scrolled up is left where he is.
void keep(RecordTable *table);

} // namespace FollowEnd
