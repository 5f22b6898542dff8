#pragma once

#include "Books.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "VariantRecord.h"

#include <random>

/// What a trader might want to order of the pools he may use; some of it is more than that or an odd quantity.
class RandomOrders
{
public:
    RandomOrders(const Books &books, const QString &trader)
        : m_books(books)
    {
        for (const OpeningPool &pool : books.pools)
            if (books.user(trader)->accounts.contains(pool.holding.account) &&
                (pool.trader == trader || pool.trader == Books::publicTrader()))
                m_pools.append(pool);
    }

    std::mt19937 random{1};
    int below(int end) { return int(random() % quint32(end)); }
    bool oneIn(int times) { return below(times) == 0; }

    /// price: what to pay for an instrument.
    template <typename Price> VariantRecord next(Price price)
    {
        using namespace Master_Values::SideUnion;
        const OpeningPool pool = m_pools.at(below(m_pools.size()));
        const Instrument &instrument = *m_books.instrument(pool.holding.securityID, pool.holding.exchange);
        const int lots = 1 + below(int(pool.quantity / instrument.lotSize));
        const QStringList sides{normalBuy, normalSell, normalBuy, normalSell, collateralBuy, collateralSell};
        return {{Orvane_Fields::UserAccount::tradingAccount, pool.holding.account},
                {Orvane_Fields::Security::symbol, instrument.symbol},
                {Orvane_Fields::UserAccount::securityExchange, instrument.exchange},
                {Master_Fields::Security::SideUnion, sides.at(below(sides.size()))},
                {Orvane_Fields::Security::price, price(instrument)},
                {Orvane_Fields::Security::orderQty, oneIn(8) ? 1 + below(2000) : lots * instrument.lotSize}};
    }

private:
    const Books &m_books;
    QVector<OpeningPool> m_pools;
};
