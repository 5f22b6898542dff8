#pragma once

#include "VariantRecord.h"

#include <QtCore/QString>

/// One record of a change request, while it is read. The first thing that is wrong with it is what its sender is
/// told; what is read afterwards does not matter any more.
class ChangeRow
{
public:
    /// The most that a resource or a pool may hold, in display units.
    static constexpr qint64 maxQuantity = 1'000'000'000;

    explicit ChangeRow(const VariantRecord &record);

    QString refusal() const; ///< empty: nothing is wrong so far

    /// Refuses with the text unless good; returns good.
    bool require(bool good, const QString &text);

    bool has(const QString &field) const;

    /// A text that has to be there, and that clients can join with others.
    QString id(const QString &field);

    /// A whole number of server units, from `least` on, as display units; 0 when it was refused. Texts are no
    /// numbers: "100.0" would be read as another number elsewhere.
    qint64 quantity(const QString &field, qint64 dispFactor, qint64 least = 0);

    /// The same for a limit: -1, none, for every negative number; the given one when the field is not there.
    qint64 limit(const QString &field, qint64 dispFactor, qint64 otherwise);

    /// A whole number from 0 on, a truth value or a text; what it was when the field is not there.
    int numberOr(const QString &field, int most, int otherwise);
    bool flagOr(const QString &field, bool otherwise);
    QString textOr(const QString &field, const QStringList &choices, const QString &otherwise);

    /// Whether a header says that what is given replaces what there is; else it is added.
    bool covers();

    /// 0 public, 1 private; -1 when it was refused.
    int poolType();

private:
    qint64 wholeNumber(const QString &field);

    const VariantRecord &m_record;
    QString m_refusal;
};

/// Whether a variant holds a whole number; the number itself where it fits 64 bits, else the nearest that does.
bool readWholeNumber(const QVariant &value, qint64 &number);

/// Reads data rows in their order; stops at the first that is refused. Its text, with the row's number; empty: good.
template <typename Read> QString readRows(const RecordList &rows, Read read);

/// Why a request without data rows has nothing to do, or as readRows.
template <typename Read> QString readSomeRows(const RecordList &rows, Read read);

QString refusalInRow(int index, const QString &text); ///< index: from 0
QString refusalOfNoRows();

template <typename Read> QString readRows(const RecordList &rows, Read read)
{
    for (int i = 0; i < rows.size(); ++i) {
        ChangeRow row(rows.at(i));
        read(row);
        if (!row.refusal().isEmpty())
            return refusalInRow(i, row.refusal());
    }
    return QString();
}

template <typename Read> QString readSomeRows(const RecordList &rows, Read read)
{
    return rows.isEmpty() ? refusalOfNoRows() : readRows(rows, read);
}
