#include "TradingLookup.h"

#include "DisplayUnits.h"

#include <array>

using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

/// Whether a text is one of a list; many questions about a long list are answered through a set.
class TextChoice
{
public:
    TextChoice(const QStringList &texts, int questions)
        : m_texts(texts)
    {
        constexpr int few = 8;
        if (qMin(texts.size(), questions) > few)
            m_set = QSet<QString>(texts.cbegin(), texts.cend());
    }

    bool contains(const QString &text) const { return m_set.isEmpty() ? m_texts.contains(text) : m_set.contains(text); }

private:
    const QStringList m_texts;
    QSet<QString> m_set;
};

} // namespace

QVector<HeldRecord> TradingLookup::find(const TradingFilter &filter) const
{
    const Candidates found = candidates(filter);
    const TextChoice accounts(filter.accounts, found.ofAccounts ? 0 : found.ids.size());
    const TextChoice traders(filter.traders, found.ofTraders ? 0 : found.ids.size());
    QVector<HeldRecord> records;
    found.ids.forEach([&](const QString &id) {
        const HeldRecord record = m_cache.constFind(id);
        if ((found.ofSymbol || filter.symbol.isEmpty() || text(*record, symbol) == filter.symbol) &&
            (found.ofTraders || filter.traders.isEmpty() || traders.contains(text(*record, m_traderField))) &&
            (found.ofExchange || filter.exchange.isEmpty() || text(*record, securityExchange) == filter.exchange) &&
            (found.ofAccounts || accounts.contains(text(*record, tradingAccount))))
            records.append(record);
    });
    return records;
}

HeldRecord TradingLookup::findFirst(const QString &account, const QString &trader, const QString &symbol,
                                    const QString &exchange) const
{
    HeldRecord first = m_cache.cend();
    const IdSet *ids = symbol.isEmpty() ? m_indexes.byAccountAndTrader.find({account, trader})
                                        : m_indexes.byAccountAndSymbol.find({account, symbol});
    if (!ids || trader.isEmpty())
        return first;
    for (const QString &id : *ids) {
        const HeldRecord record = m_cache.constFind(id);
        if ((first == m_cache.cend() || id < first.key()) && text(*record, m_traderField) == trader &&
            (exchange.isEmpty() || text(*record, securityExchange) == exchange))
            first = record;
    }
    return first;
}

TradingLookup::Candidates TradingLookup::candidates(const TradingFilter &filter) const
{
    if (!filter.symbol.isEmpty())
        return candidatesOfSymbol(filter);
    Candidates best{IdSets::under(m_indexes.byAccount, filter.accounts), true};
    if (!filter.traders.isEmpty()) {
        const IdSets ofTraders = IdSets::under(m_indexes.byTrader, filter.traders);
        const qint64 pairs = qint64(filter.accounts.size()) * filter.traders.size();
        if (pairs < qMin(best.ids.size(), ofTraders.size()))
            return {IdSets::underPairs(m_indexes.byAccountAndTrader, filter.accounts, filter.traders), true, true};
        if (ofTraders.size() < best.ids.size())
            best = {ofTraders, false, true};
    }
    if (!filter.exchange.isEmpty()) {
        const IdSets ofExchange = IdSets::under(m_indexes.byExchange, std::array{filter.exchange});
        if (ofExchange.size() < best.ids.size())
            best = {ofExchange, false, false, false, true};
    }
    return best;
}

TradingLookup::Candidates TradingLookup::candidatesOfSymbol(const TradingFilter &filter) const
{
    const std::array symbols{filter.symbol};
    if (filter.accounts.size() > 1) {
        const IdSets ofSymbol = IdSets::under(m_indexes.bySymbol, symbols);
        if (ofSymbol.size() < filter.accounts.size())
            return {ofSymbol, false, false, true};
    }
    return {IdSets::underPairs(m_indexes.byAccountAndSymbol, filter.accounts, symbols), true, false, true};
}
