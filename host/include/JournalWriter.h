#pragma once

#include "HostExport.h"
#include "JournalRecord.h"

#include <memory>

/// A journal in a file that is only ever appended to. A thread of its own encodes, hashes and writes; who appends
/// waits for neither. Everything it has is handed to the system each time it runs out of work, and forced to the disk
/// once a second: a crash of the program costs the last moment at most, a crash of the machine the last second.
///
/// When the file cannot be written any more, or its disk falls far behind, the journal ends where it is, and a business
/// message says so: the client works on.
class T0_HOST_EXPORT JournalWriter : public JournalSink
{
public:
    /// Null when there is such a file already, or it cannot be made: errorText says why.
    static std::shared_ptr<JournalWriter> create(const QString &path, QString &errorText);

    ~JournalWriter() override; ///< writes what is left, and the closing record

    void append(JournalRecord::Kind kind, const Envelope &envelope) override;

private:
    class Private;
    explicit JournalWriter(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};
