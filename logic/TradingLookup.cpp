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

TradingLookup::Candidates TradingLookup::candidates(const TradingFilter &filter) const
{
    if (!filter.symbol.isEmpty())
        return candidatesOfSymbol(filter);
    Candidates best{HeldIds::under(m_indexes.byAccount, filter.accounts), true};
    if (!filter.traders.isEmpty()) {
        const HeldIds ofTraders = HeldIds::under(m_indexes.byTrader, filter.traders);
        const qint64 pairs = qint64(filter.accounts.size()) * filter.traders.size();
        if (pairs < qMin(best.ids.size(), ofTraders.size()))
            return {HeldIds::underPairs(m_indexes.byAccountAndTrader, filter.accounts, filter.traders), true, true};
        if (ofTraders.size() < best.ids.size())
            best = {ofTraders, false, true};
    }
    if (!filter.exchange.isEmpty()) {
        const HeldIds ofExchange = HeldIds::under(m_indexes.byExchange, std::array{filter.exchange});
        if (ofExchange.size() < best.ids.size())
            best = {ofExchange, false, false, false, true};
    }
    return best;
}

TradingLookup::Candidates TradingLookup::candidatesOfSymbol(const TradingFilter &filter) const
{
    if (filter.accounts.size() > 1) {
        const HeldIds ofSymbol = HeldIds::under(m_indexes.bySymbol, std::array{filter.symbol});
        if (ofSymbol.size() < filter.accounts.size())
            return {ofSymbol, false, false, true};
    }
    return {HeldIds::underPairs(m_indexes.byAccountAndSymbol, filter.accounts, filter.symbol), true, false, true};
}
