#pragma once

#include "ImportModel.h"
#include "VariantRecord.h"

#include <QtCore/QHash>

/// What an import shows beside its rows: what is set aside already, and how much more may be.
class ImportItems
{
public:
    ImportItems(); ///< reads the resources that exist now

    double held(const ResourceRow &row) const;
    ImportModel::Item of(const ResourceRow &row) const; ///< ticked

    /// Of a candidate of the facade, prefilled with what may still be set aside; to be ticked by hand.
    ImportModel::Item of(const VariantRecord &candidate, int line) const;

private:
    QHash<QString, double> m_held; ///< quantity by account, symbol and market
};
