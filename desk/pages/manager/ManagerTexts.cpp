#include "ManagerTexts.h"

#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandFields.h"

#include <QtCore/QCoreApplication>

namespace {

QString text(const char *sourceText)
{
    return QCoreApplication::translate("ManagerTexts", sourceText);
}

QString joined(const QString &first, const QString &second)
{
    return second.isEmpty() || first == second ? first : first + QLatin1Char(' ') + second;
}

} // namespace

QString ManagerTexts::trader(const QString &traderId)
{
    if (traderId == ManualT0Logic::PublicTrader)
        return text(QT_TRANSLATE_NOOP("ManagerTexts", "公共券池"));
    const QString name = ManualT0Logic::GetTraderNameByTraderId(traderId);
    return name.isEmpty() ? traderId : joined(name, traderId);
}

QString ManagerTexts::account(const QString &tradingAccount)
{
    return joined(tradingAccount,
                  MasterBusinessDataInterface::GetAccountInfoByTradingAccount(tradingAccount, 1).accountText);
}

QString ManagerTexts::security(const VariantRecord &row)
{
    using namespace Orvane_Fields::Security;
    const QString code = row.value(symbol).toString();
    return joined(code, MasterBusinessDataInterface::GetSecurityDetailsBySymbol(code).value(chineseName).toString());
}

QString ManagerTexts::product(const QString &productAccount)
{
    return joined(productAccount, MasterBusinessDataInterface::GetAllProductAccountMap().value(productAccount));
}

QString ManagerTexts::assetProp(const QString &assetProperty)
{
    if (assetProperty == Stand_Values::AssetProp::Cash)
        return text(QT_TRANSLATE_NOOP("ManagerTexts", "普通"));
    if (assetProperty == Master_Values::FundAccountType::Credit)
        return text(QT_TRANSLATE_NOOP("ManagerTexts", "信用"));
    return assetProperty;
}
