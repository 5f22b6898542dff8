#pragma once

#include "RowReader.h"

#include <QtCore/QSet>

#include <functional>

/// Reads the files in the order in which they refer to one another, so that every relation is checked at the
/// row that states it. A file that could not be read silences the checks against it: one error, not hundreds.
class BooksLoader
{
public:
    explicit BooksLoader(const QString &dir);

    Books::Loaded load();

private:
    bool forEachRow(const QString &file, const std::function<void(RowReader &)> &read);
    bool headerIsGood(const QString &file, const CsvRow &header);

    // BooksLoader.cpp
    void readTick(RowReader &row);
    void readSession(RowReader &row);
    void readAccount(RowReader &row);
    void readUser(RowReader &row);
    void readQuote(RowReader &row);

    // BooksLoader_Instruments.cpp
    void readInstrument(RowReader &row);
    void checkTickTable(RowReader &row, const Instrument &instrument);
    void checkPrices(RowReader &row, const Instrument &instrument);
    void checkSameSymbol(RowReader &row, const Instrument &instrument);

    // BooksLoader_Holdings.cpp
    Holding readHolding(RowReader &row);
    QString readTrader(RowReader &row, const Holding &holding = Holding());
    void checkUnique(RowReader &row, const char *column, const QString &key, const QString &what);
    void checkUnits(RowReader &row, const char *column, qint64 quantity, const Holding &holding);
    void readPosition(RowReader &row);
    void readMargin(RowReader &row);
    void readResource(RowReader &row);
    void readPool(RowReader &row);
    void readCarried(RowReader &row);
    void readSafety(RowReader &row);

    const QString m_dir;
    Books m_books;
    QVector<BookError> m_errors;
    bool m_haveTicks = false;
    bool m_haveInstruments = false;
    bool m_haveAccounts = false;
    bool m_haveUsers = false;
    bool m_haveResources = false;
    QSet<QString> m_seen; ///< keys of the file being read
    QHash<QString, int> m_accountAt;
    QHash<QString, int> m_instrumentAt; ///< by securityID and exchange
    QSet<QString> m_symbols;
    QHash<QString, int> m_firstOfSymbol; ///< the first instrument whose cells the others must repeat
    QSet<QString> m_unknownEnds;         ///< tick tables whose last band's end could not be read
    QHash<Holding, qint64> m_poolRoom;   ///< what a resource has left for pools
    QHash<QString, QString> m_phaseEnds; ///< end of the last phase of a market
    QHash<QString, QString> m_productNames;
};

namespace BookTexts {
QStringList exchanges();
QString suffixOf(const QString &exchange);
} // namespace BookTexts
