#pragma once

#include "HostExport.h"
#include "MasterValues.h"
#include "VariantRecord.h"

#include <QtCore/QStringList>

/// One trading account of the host.
struct tagUserAccountInfo {
    QString tradingAccount; ///< empty: no account
    QString productAccount;
    QString assetProp; ///< Stand_Values::AssetProp::Cash or Master_Values::FundAccountType::Credit
    QString accountText;
};

/// Accounts and instruments. Callable from any thread; results are copies; pure lookups.
namespace MasterBusinessDataInterface {

/// Shows a business message. owner and key: "" for none.
T0_HOST_EXPORT void AddBusiMsg(Master_Values::BusiMsgLevel::Level level, const QString &text,
                               Master_Values::BusiMsgType::Type type, const QString &owner, bool popUp,
                               const QString &key);

/// The accounts the user could enable for T0 that trade on any of the exchanges, in stable order. fundType
/// 3, fundProp 16, all true, sorted true: the only selection this host offers.
T0_HOST_EXPORT QList<tagUserAccountInfo> GetFundAccountListByFundProp(int fundType, int fundProp, bool all,
                                                                      const QStringList &exchanges, bool sorted);

/// The same property as in GetFundAccountListByFundProp; empty when the account is unknown.
T0_HOST_EXPORT QString GetAccountAssetPropByTradingAccount(const QString &tradingAccount);

/// One account of the session, with tradingAccount empty when it is unknown. type: 1, the only one there is.
T0_HOST_EXPORT tagUserAccountInfo GetAccountInfoByTradingAccount(const QString &tradingAccount, int type);

/// Product account to display text.
T0_HOST_EXPORT QMap<QString, QString> GetAllProductAccountMap();

/// How many display units (shares, bonds) one unit of the server is; 1 for an unknown symbol.
T0_HOST_EXPORT int GetDispFactorBySymbol(const QString &symbol);

/// Empty when unknown (logged once a security).
T0_HOST_EXPORT QString GetSymbolBySecurityIDAndExchange(const QString &securityID, const QString &exchange);

/// The row's symbol when it is known, else that of its securityID and securityExchange; empty when neither is.
T0_HOST_EXPORT QString GetSymbolFromMap(const VariantRecord &row);

/// symbol, securityID, securityExchange, chineseName, spellCode and the instrument's further fields; empty when
/// unknown.
T0_HOST_EXPORT VariantRecord GetSecurityDetailsBySymbol(const QString &symbol);

/// The tick of the price's band, from <= price < to, else of the band nearest to it; 0.01 when the instrument has none.
/// The same for every side: who steps down from the start of a band asks with a price just below it.
T0_HOST_EXPORT double GetPriceUnitBySymbol(const QString &symbol, double price, const QString &sideUnion);

/// Decimals of a price; 2 for an unknown symbol. text: "".
T0_HOST_EXPORT int GetPricePrecisionBySymbol(const QString &symbol, const QString &text);

/// The step of a bought quantity, display units; 1 for an unknown symbol.
T0_HOST_EXPORT int GetQtyStepBySymbol(const QString &symbol);

/// Subscribes a push at the server; true when it accepts. Answers within 1 s, else false, and at once when
/// the host is stopping: it is called under a lock.
T0_HOST_EXPORT bool SubscribePushMsgFromServer(const QString &msgType, const VariantRecord &filter,
                                               const QString &serviceName);

} // namespace MasterBusinessDataInterface
