#include "LiveStore.h"

#include "OrvaneFields.h"
#include "StandFields.h"
#include "business/NewsDesk.h"
#include "business/OrderStore.h"
#include "business/ReferenceStore.h"

#include <QtCore/QReadWriteLock>

namespace {

/// The rows of one account by security id and exchange: an answer may divide a holding among several.
using Positions = QMap<QPair<QString, QString>, RecordList>;

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

/// Of a market's state: yyyy-MM-dd.
QString dayOf(const VariantRecord &market)
{
    return market.value(Stand_Fields::Market::marketTime).toString().left(10);
}

void enterQuotes(const RecordList &rows, bool pushed)
{
    QWriteLocker lock(&state().lock);
    for (const VariantRecord &row : rows) {
        const QString symbol = row.value(Orvane_Fields::Security::symbol).toString();
        if (pushed || !state().quotes.contains(symbol))
            state().quotes.insert(symbol, row);
    }
}

QHash<QString, Positions> byAccount(const RecordList &rows)
{
    const auto reference = ReferenceStore::data();
    QHash<QString, Positions> accounts;
    for (VariantRecord row : rows) {
        const auto security = securityKey(row);
        row.insert(Orvane_Fields::Security::symbol, reference->symbols.value(security));
        accounts[row.value(Orvane_Fields::UserAccount::tradingAccount).toString()][security].append(row);
    }
    return accounts;
}

void enterPositions(const RecordList &rows, bool pushed)
{
    const QHash<QString, Positions> accounts = byAccount(rows);
    QWriteLocker lock(&state().lock);
    for (auto account = accounts.cbegin(); account != accounts.cend(); ++account) {
        Positions &held = state().positions[account.key()];
        for (auto position = account->cbegin(); position != account->cend(); ++position) {
            if (pushed || !held.contains(position.key()))
                held.insert(position.key(), position.value());
        }
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
    NewsDesk::quotes(rows);
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
    NewsDesk::positions(rows);
}

RecordList LiveStore::positions(const QString &tradingAccount)
{
    QReadLocker lock(&state().lock);
    RecordList rows;
    const auto account = state().positions.constFind(tradingAccount);
    if (account != state().positions.constEnd()) {
        for (const RecordList &position : *account)
            rows += position;
    }
    return rows;
}

void LiveStore::answeredMarket(const RecordList &rows)
{
    QWriteLocker lock(&state().lock);
    if (state().market.isEmpty())
        state().market = rows.value(0);
}

void LiveStore::pushedMarket(const RecordList &rows)
{
    const QString day = dayOf(rows.value(0));
    QWriteLocker lock(&state().lock);
    const bool isNewDay = !state().market.isEmpty() && dayOf(state().market) < day;
    state().market = rows.value(0);
    lock.unlock();
    if (isNewDay) {
        OrderStore::beginDay(day);
        NewsDesk::dayBegan(day);
    }
    NewsDesk::market(rows.value(0));
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
