#include "LiveStore.h"

#include "OrvaneFields.h"
#include "business/ReferenceStore.h"

#include <QtCore/QReadWriteLock>

namespace {

using Positions = QMap<QPair<QString, QString>, VariantRecord>; ///< by security id and exchange

struct State {
    QReadWriteLock lock;
    QHash<QString, VariantRecord> quotes;
    QHash<QString, Positions> positions; ///< by trading account; never handed out: a push would copy it
    VariantRecord market;
};

State &state()
{
    static auto *state = new State; // never deleted: look-ups may come while the process ends
    return *state;
}

template <typename Map, typename Key> void enter(Map &map, const Key &key, const VariantRecord &row, bool pushed)
{
    if (pushed || !map.contains(key))
        map.insert(key, row);
}

void enterQuotes(const RecordList &rows, bool pushed)
{
    QWriteLocker lock(&state().lock);
    for (const VariantRecord &row : rows)
        enter(state().quotes, row.value(Orvane_Fields::Security::symbol).toString(), row, pushed);
}

void enterPositions(const RecordList &rows, bool pushed)
{
    const auto reference = ReferenceStore::data();
    QWriteLocker lock(&state().lock);
    for (VariantRecord row : rows) {
        const auto security = securityKey(row);
        row.insert(Orvane_Fields::Security::symbol, reference->symbols.value(security));
        const QString account = row.value(Orvane_Fields::UserAccount::tradingAccount).toString();
        enter(state().positions[account], security, row, pushed);
    }
}

} // namespace

void LiveStore::answeredQuotes(const RecordList &rows)
{
    enterQuotes(rows, false);
}

void LiveStore::pushedQuotes(const RecordList &rows)
{
    enterQuotes(rows, true);
}

VariantRecord LiveStore::quote(const QString &symbol)
{
    QReadLocker lock(&state().lock);
    return state().quotes.value(symbol);
}

void LiveStore::answeredPositions(const RecordList &rows)
{
    enterPositions(rows, false);
}

void LiveStore::pushedPositions(const RecordList &rows)
{
    enterPositions(rows, true);
}

RecordList LiveStore::positions(const QString &tradingAccount)
{
    QReadLocker lock(&state().lock);
    const auto found = state().positions.constFind(tradingAccount);
    return found == state().positions.constEnd() ? RecordList() : found->values();
}

void LiveStore::answeredMarket(const RecordList &rows)
{
    QWriteLocker lock(&state().lock);
    if (state().market.isEmpty())
        state().market = rows.value(0);
}

void LiveStore::pushedMarket(const RecordList &rows)
{
    QWriteLocker lock(&state().lock);
    state().market = rows.value(0);
}

VariantRecord LiveStore::market()
{
    QReadLocker lock(&state().lock);
    return state().market;
}

void LiveStore::clear()
{
    QWriteLocker lock(&state().lock);
    state().quotes.clear();
    state().positions.clear();
    state().market.clear();
}
