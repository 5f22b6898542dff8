#include "MultiIndexStore.h"

#include "DisplayUnits.h"
#include "OrvaneFields.h"

#include <boost/multi_index/composite_key.hpp>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index_container.hpp>

namespace bmi = boost::multi_index;

namespace {

struct Row {
    QString account;
    QString trader;
    QString symbol;
    QString exchange;
    VariantRecord record;
};

struct TextHash {
    std::size_t operator()(const QString &text) const { return qHash(text); }
};

using Account = bmi::member<Row, QString, &Row::account>;
using Trader = bmi::member<Row, QString, &Row::trader>;
using Symbol = bmi::member<Row, QString, &Row::symbol>;
using Exchange = bmi::member<Row, QString, &Row::exchange>;
using ByAll = bmi::hashed_unique<bmi::composite_key<Row, Account, Trader, Symbol, Exchange>,
                                 bmi::composite_key_hash<TextHash, TextHash, TextHash, TextHash>>;
using BySymbol =
    bmi::hashed_non_unique<bmi::composite_key<Row, Account, Symbol>, bmi::composite_key_hash<TextHash, TextHash>>;
using ByTrader =
    bmi::hashed_non_unique<bmi::composite_key<Row, Account, Trader>, bmi::composite_key_hash<TextHash, TextHash>>;
using ByAccount = bmi::hashed_non_unique<Account, TextHash>;
using Rows = bmi::multi_index_container<Row, bmi::indexed_by<ByAll, BySymbol, ByTrader, ByAccount>>;

bool meets(const Row &row, const Records::Filter &filter)
{
    return (filter.symbol.isEmpty() || row.symbol == filter.symbol) &&
           (filter.exchange.isEmpty() || row.exchange == filter.exchange) &&
           (filter.traders.isEmpty() || filter.traders.contains(row.trader));
}

} // namespace

class MultiIndexStore::Private
{
public:
    Rows rows;
    TraderNames names;
    mutable FamilyLock lock; // the library's answers are safe beside a writer too

    template <typename Range> void append(RecordList &found, const Range &range, const Records::Filter &filter) const
    {
        for (auto row = range.first; row != range.second; ++row) {
            if (!meets(*row, filter))
                continue;
            found.append(row->record);
            names.fill(found.last());
        }
    }
};

MultiIndexStore::MultiIndexStore(const RecordList &rows, const TraderNames &names)
    : d(std::make_unique<Private>())
{
    d->names = names;
    for (const VariantRecord &row : rows)
        d->rows.insert({text(row, Orvane_Fields::UserAccount::tradingAccount),
                        text(row, Master_Fields::ManualT0::T0TraderId), text(row, Orvane_Fields::Security::symbol),
                        text(row, Orvane_Fields::UserAccount::securityExchange), row});
}

MultiIndexStore::~MultiIndexStore() = default;

VariantRecord MultiIndexStore::one(const Records::Keys &keys) const
{
    ReadLock lock(d->lock);
    const auto &index = d->rows.get<0>();
    const auto row = index.find(std::tie(keys.account, keys.trader, keys.symbol, keys.exchange));
    if (row == index.end())
        return {};
    VariantRecord found = row->record;
    d->names.fill(found);
    return found;
}

RecordList MultiIndexStore::list(const Records::Filter &filter) const
{
    RecordList found;
    ReadLock lock(d->lock);
    for (const QString &account : filter.accounts) {
        if (!filter.symbol.isEmpty())
            d->append(found, d->rows.get<1>().equal_range(std::tie(account, filter.symbol)), filter);
        else if (filter.traders.size() == 1)
            d->append(found, d->rows.get<2>().equal_range(std::tie(account, filter.traders.first())), filter);
        else
            d->append(found, d->rows.get<3>().equal_range(account), filter);
    }
    return found;
}
