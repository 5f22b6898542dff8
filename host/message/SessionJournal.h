#pragma once

#include "JournalRecord.h"

#include <memory>

/// Where the host's other parts hand in what the open session's journal is to hold beside messages. Callable from any
/// thread; without a journal nothing happens.
namespace SessionJournal {

void open(std::shared_ptr<JournalSink> journal); ///< may be null
void close();
void note(JournalRecord::Kind kind, const QString &text);

} // namespace SessionJournal
