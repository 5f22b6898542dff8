#include "ScanStore.h"

#include "DisplayUnits.h"
#include "OrvaneFields.h"

using Master_Fields::ManualT0::T0TraderId;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

bool meets(const VariantRecord &row, const Records::Filter &filter)
{
    return (filter.symbol.isEmpty() || text(row, symbol) == filter.symbol) &&
           filter.accounts.contains(text(row, tradingAccount)) &&
           (filter.traders.isEmpty() || filter.traders.contains(text(row, T0TraderId))) &&
           (filter.exchange.isEmpty() || text(row, securityExchange) == filter.exchange);
}

} // namespace

VariantRecord ScanStore::one(const Records::Keys &keys) const
{
    const Records::Filter filter{{keys.account}, {keys.trader}, keys.symbol, keys.exchange};
    for (const VariantRecord &row : m_rows) {
        if (!meets(row, filter))
            continue;
        VariantRecord found = row;
        m_names.fill(found);
        return found;
    }
    return {};
}

RecordList ScanStore::list(const Records::Filter &filter) const
{
    RecordList found;
    for (const VariantRecord &row : m_rows) {
        if (!meets(row, filter))
            continue;
        found.append(row);
        m_names.fill(found.last());
    }
    return found;
}
