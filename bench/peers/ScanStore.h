#pragma once

#include "Store.h"
#include "TraderNames.h"

/// Reads every record for every question.
class ScanStore : public Store
{
public:
    ScanStore(const RecordList &rows, const TraderNames &names)
        : m_rows(rows)
        , m_names(names)
    {}

    VariantRecord one(const Records::Keys &keys) const override;
    RecordList list(const Records::Filter &filter) const override;

private:
    const RecordList m_rows;
    const TraderNames m_names;
};
