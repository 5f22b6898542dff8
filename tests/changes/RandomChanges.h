#pragma once

#include "Model.h"

#include <random>

/// Makes changes that a manager might make, many of them bad.
class RandomChanges
{
public:
    RandomChanges(const Books &books, quint32 seed);

    Change next(const Model &model);
    int below(int end);
    bool oneIn(int times) { return below(times) == 0; }

private:
    template <typename List> typename List::value_type anyOf(const List &list);
    VariantRecord place(); ///< account and security, seldom an impossible one
    QVariant quantity();   ///< mostly a good one
    QString trader();
    QString resourceId(const Model &model);
    VariantRecord poolRow(const Model &model, const Model::Resource &resource);
    RecordList poolRows(const Model &model);
    QStringList poolIds(const Model &model);
    QMap<QString, QStringList> products();

    const Books &m_books;
    std::mt19937 m_random;
};
