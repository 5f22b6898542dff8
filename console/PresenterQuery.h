#pragma once

#include "JournalRecord.h"

#include <QtCore/QVector>

/// A query that the library's presenter asks, as a replay repeats it.
struct PresenterQuery {
    QString type;
    QByteArray slot; ///< of the presenter; its argument is the query's row
    int family;
    JournalRecord::Kind taken; ///< the note of the family that says that an answer was taken

    static const QVector<PresenterQuery> &all();
    static const PresenterQuery *of(const QString &type); ///< null for what no presenter asks

    /// The answer to a request makes the query whole: it has no further page, and nothing else is asked with it.
    static bool isWhole(const JournalRecord &request, const JournalRecord &end);

    /// Whether the note comes. A failed query that ends its load, or is asked again, has none.
    bool isNoted(const JournalRecord &end) const;
};
