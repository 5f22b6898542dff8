#pragma once

#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "VariantRecord.h"

/// The symbol of a server row, from its security id and exchange; empty when the host does not know it.
inline QString symbolOf(const VariantRecord &row)
{
    return MasterBusinessDataInterface::GetSymbolBySecurityIDAndExchange(
        row.value(Orvane_Fields::Security::securityID).toString(),
        row.value(Orvane_Fields::UserAccount::securityExchange).toString());
}

/// Display units of one server unit, at least 1: a factor of 0 would wipe out every quantity.
inline int displayFactor(const QString &symbol)
{
    return qMax(1, MasterBusinessDataInterface::GetDispFactorBySymbol(symbol));
}

/// A text field of a row.
inline QString text(const VariantRecord &row, const QString &field)
{
    const auto value = row.constFind(field);
    return value == row.constEnd() ? QString() : value->toString();
}
