#include "SymbolSettings.h"

#include "ManualT0Logic.h"
#include "MasterConstants.h"

using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;

namespace {

// Fields of the desk's own, beside the library's.
QString defaultQtyField()
{
    return QStringLiteral("DeskDefaultQty");
}

QString collateralField()
{
    return QStringLiteral("DeskCollateral");
}

} // namespace

SymbolSettings SymbolSettings::of(const QString &symbol)
{
    const VariantRecord kept = ManualT0Logic::GetSymbolTradeSettings(symbol, nullptr);
    return {kept.value(TradeCustQty).toLongLong(), kept.value(defaultQtyField()).toLongLong(),
            kept.value(collateralField()).toBool()};
}

/// What else is set for the symbol stays.
void SymbolSettings::keepFor(const QString &symbol) const
{
    VariantRecord settings = ManualT0Logic::GetSymbolTradeSettings(symbol, nullptr);
    settings.insert(TradeCustQty, cutQty);
    settings.insert(defaultQtyField(), defaultQty);
    settings.insert(collateralField(), isCollateral);
    ManualT0Logic::SetSymbolTradeSettings(symbol, settings);
}
