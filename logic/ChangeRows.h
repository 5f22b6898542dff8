#pragma once

#include "VariantRecord.h"

#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QStringList>

// What the operations that change data on the server share: the checks of a row, groups of rows that go out in
// one request each, and how such a batch ended. Checks return the text a user reads, empty when they pass.

namespace ChangeRows {

/// Rows by what they have in common, a trading account or a resource id, ascending.
using Groups = QMap<QString, RecordList>;

/// The row's account is one of the T0 accounts and its symbol, which is handed out, is known.
QString checkAccountAndSymbol(const VariantRecord &row, const QSet<QString> &t0Accounts, QString &symbol);

/// The display quantity is whole server units. what: UserTexts::resourceQuantity() or poolQuantity().
QString checkMultiple(const QString &symbol, const QString &what, qint64 quantity);

/// The text of a check with the row's number, from 1; a single row needs none.
QString inRow(int row, const RecordList &rows, const QString &text);

/// The row with the quantity in a field converted from display to server units. What is no whole number stays as the
/// caller wrote it, and so does that of a security that is counted the same by both: the server judges it, and
/// refuses what a conversion would have turned into some other quantity.
VariantRecord inServerUnits(const VariantRecord &row, const QString &quantityField, const QString &symbol);

/// success when none failed, also of none at all; fail when all did; else ParticalFail.
QString overallCode(int failed, int all);

/// Nobody knows what became of a request that timed out.
bool mayBeInForce(const QString &code);

/// The requests of one batch.
class Batch
{
public:
    /// The code and the error text one request ended with.
    void add(const QString &code, const QString &errorText);

    QString code() const { return overallCode(m_failures.size(), m_count); }
    QString errorTexts() const; ///< of the failed requests, joined with ","

private:
    int m_count = 0;
    QStringList m_failures;
};

} // namespace ChangeRows
