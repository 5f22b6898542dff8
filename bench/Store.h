#pragma once

#include "BenchHub.h"

/// What answers the same questions about the same records: the library and its peers. Every answer is a copy.
class Store
{
public:
    Store() = default;
    virtual ~Store() = default;
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    /// The record of one account, trader, symbol and exchange; empty when there is none.
    virtual VariantRecord one(const Records::Keys &keys) const = 0;
    virtual RecordList list(const Records::Filter &filter) const = 0;
};

enum class Side { Library, Reference, Scan, Sqlite, MultiIndex };
constexpr Side AllSides[] = {Side::Library, Side::Reference, Side::Scan, Side::Sqlite, Side::MultiIndex};

const char *nameOf(Side side);

/// Holds what the hub holds of its family, Usage or Pools. The library's and the scan's share its records.
std::unique_ptr<Store> makeStore(Side side, Family family, BenchHub &hub);

/// One store of a kind, on BenchHub::of(), kept until forgetStores(), which comes before BenchHub::forgetAll().
const Store &keptStore(Side side, Family family, int records);
void forgetStores();
