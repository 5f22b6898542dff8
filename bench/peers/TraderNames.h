#pragma once

#include "MasterFields.h"
#include "VariantRecord.h"

#include <optional>

/// Fills the name of a pool's trader into a copy, as every answer about pools has it. Without names: leaves records
/// as they are.
class TraderNames
{
public:
    TraderNames() = default;
    explicit TraderNames(const QMap<QString, QString> &names)
        : m_names(names)
    {}

    void fill(VariantRecord &pool) const
    {
        using namespace Master_Fields::ManualT0;
        if (!m_names || pool.isEmpty())
            return;
        const QString trader = pool.value(T0TraderId).toString();
        pool.insert(T0TraderName, m_names->value(trader, trader)); // the public trader's name is his id
    }

private:
    std::optional<QMap<QString, QString>> m_names;
};
