#pragma once

#include "VariantRecord.h"

/// What moves while a session is open: quotes, positions and the market's clock. Each is subscribed first and then
/// queried, so what was pushed is the newer of both whatever came first, and an answer only fills what no push has
/// set. Thread-safe; empty without a session.
namespace LiveStore {

void answeredQuotes(const RecordList &rows);
void pushedQuotes(const RecordList &rows);
VariantRecord quote(const QString &symbol); ///< empty when there is none

void answeredPositions(const RecordList &rows); ///< after the instruments, which give the symbols
void pushedPositions(const RecordList &rows);
RecordList positions(const QString &tradingAccount); ///< by security id and exchange

void answeredMarket(const RecordList &rows);
void pushedMarket(const RecordList &rows);
VariantRecord market();

void clear();

} // namespace LiveStore
