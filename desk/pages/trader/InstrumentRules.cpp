#include "InstrumentRules.h"

#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <cmath>

int InstrumentRules::decimals(const QString &symbol)
{
    return MasterBusinessDataInterface::GetPricePrecisionBySymbol(symbol, {});
}

double InstrumentRules::unitAbove(const QString &symbol, double price, const QString &sideUnion)
{
    return MasterBusinessDataInterface::GetPriceUnitBySymbol(symbol, price, sideUnion);
}

/// Half of the last decimal lower is in the band below at the start of one, and in the same band everywhere else.
double InstrumentRules::unitBelow(const QString &symbol, double price, const QString &sideUnion)
{
    const double slightly = 0.5 * std::pow(10, -decimals(symbol));
    return MasterBusinessDataInterface::GetPriceUnitBySymbol(symbol, price - slightly, sideUnion);
}

qint64 InstrumentRules::quantityStep(const QString &symbol)
{
    return MasterBusinessDataInterface::GetQtyStepBySymbol(symbol);
}

qint64 InstrumentRules::lot(const QString &symbol)
{
    const VariantRecord details = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(symbol);
    return qMax(details.value(Stand_Fields::Security::lotSize).toLongLong(), quantityStep(symbol));
}

QString InstrumentRules::name(const QString &symbol)
{
    return MasterBusinessDataInterface::GetSecurityDetailsBySymbol(symbol)
        .value(Orvane_Fields::Security::chineseName)
        .toString();
}
