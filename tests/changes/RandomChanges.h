#pragma once

#include "Model.h"

#include <random>

/// Makes changes that a manager might make, many of them bad.
class RandomChanges
{
public:
    RandomChanges(const Books &books, quint32 seed);

    Change next(const Model &model);
    bool oneIn(int times) { return below(times) == 0; }

private:
    int below(int end) { return int(m_random() % quint32(end)); }

    /// Mostly any of the good ones, one in `rarely` times any of the odd.
    template <typename List> typename List::value_type any(const List &good, int rarely, const List &odd);

    VariantRecord place();                                              ///< account and security
    RecordList rowsOf(const Model &model, Change::Operation operation); ///< one, or some of one resource
    QMap<QString, QStringList> products();

    const Books &m_books;
    QStringList m_accounts;
    std::mt19937 m_random;
};
