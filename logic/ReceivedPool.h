#pragma once

#include "VariantRecord.h"

/// A pool as the server sent it, and what it is in display units. Most pools of an answer are those that are held
/// already, so that they are compared before a record is made of them.
class ReceivedPool
{
public:
    enum class Likeness { Same, SameValues, Different };

    ReceivedPool() = default;
    /// Asks the host for symbol and display factor.
    explicit ReceivedPool(VariantRecord row);

    /// The record when it is of a first answer of a load; this pool is empty then.
    VariantRecord takeAsFirst();
    /// Overwrites a record with it as of a later answer; fields that the record has already keep their place in memory.
    void writeTo(VariantRecord &record) const;
    /// To a record that is held in display units, this one being of a later answer. SameValues: equal, but
    /// some may be told apart, such as 5 and 5.0.
    Likeness likenessTo(const VariantRecord &held) const;

private:
    VariantRecord m_row;
    QString m_symbol;
    int m_factor = 1;
};
