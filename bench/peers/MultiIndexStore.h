#pragma once

#include "Store.h"
#include "TraderNames.h"

/// Hash indexes over plain structs that hold the keys and the record to copy out: about what can be reached.
class MultiIndexStore : public Store
{
public:
    MultiIndexStore(const RecordList &rows, const TraderNames &names);
    ~MultiIndexStore() override;

    VariantRecord one(const Records::Keys &keys) const override;
    RecordList list(const Records::Filter &filter) const override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};
