#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "CommonQuotaHandler.h"
#include "HostLog.h"
#include "MarginDC.h"
#include "MasterBusiUtils.h"
#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "business/LiveStore.h"
#include "business/OrderStore.h"
#include "business/ReferenceStore.h"
#include "message/Server.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QThread>

namespace {

constexpr int subscribeTimeoutMs = 1000;
constexpr double defaultTick = 0.01;
constexpr int defaultPrecision = 2;
constexpr int partsOfBand = 3;

bool intersect(const QStringList &a, const QStringList &b)
{
    return std::any_of(a.cbegin(), a.cend(), [&b](const QString &text) { return b.contains(text); });
}

bool passes(const QStringList &filter, const VariantRecord &instrument, const QString &field)
{
    return filter.isEmpty() || filter.contains(instrument.value(field).toString());
}

} // namespace

CBusinessDataBase *CBusinessDataBase::GetInstance()
{
    static auto *instance = new CBusinessDataBase; // never deleted: asked for while the process ends
    return instance;
}

QString CBusinessDataBase::GetLoginAccount()
{
    return ReferenceStore::data()->login.value(Orvane_Fields::UserAccount::userID).toString();
}

VariantRecord CBusinessDataBase::GetLoginAccountDetail()
{
    return ReferenceStore::data()->login;
}

QStringList CBusinessDataBase::GetSymbolListByTypeList(const QString &type, const QStringList &subTypes,
                                                       const QStringList &suffixes, bool, const QStringList &)
{
    const auto data = ReferenceStore::data();
    QStringList symbols;
    for (auto it = data->instruments.cbegin(); it != data->instruments.cend(); ++it) {
        if (it.value().value(Stand_Fields::Security::type).toString() == type &&
            passes(subTypes, it.value(), Stand_Fields::Security::subType) &&
            passes(suffixes, it.value(), Stand_Fields::Security::marketSuffix))
            symbols.append(it.key());
    }
    symbols.sort();
    return symbols;
}

RecordList BusinessDataInterface::GetPositionListByTradingAccount(const QString &tradingAccount)
{
    return LiveStore::positions(tradingAccount);
}

RecordList BusinessDataInterface::GetOrderListByCustomKey(const VariantRecord &filter, int &total, int start, int count,
                                                          const QStringList &sortKeys, const QStringList &fields)
{
    return OrderStore::orders(filter, total, start, count, sortKeys, fields);
}

RecordList BusinessDataInterface::GetFillList(const VariantRecord &filter)
{
    return OrderStore::fills(filter);
}

CommonQuotaHandler &CommonQuotaHandler::instance()
{
    static auto *instance = new CommonQuotaHandler; // never deleted: asked for while the process ends
    return *instance;
}

double CommonQuotaHandler::lastPrice(const QString &symbol, int) const
{
    return quote(symbol).value(Stand_Fields::Quote::lastPrice).toDouble();
}

VariantRecord CommonQuotaHandler::quote(const QString &symbol) const
{
    return LiveStore::quote(symbol);
}

void MarginDC::init(const QStringList &accounts)
{
    ReferenceStore::initMargin(accounts);
}

RecordList MarginDC::GetMarginSecurities(const QString &tradingAccount)
{
    return ReferenceStore::isMarginInited(tradingAccount)
               ? ReferenceStore::data()->marginSecurities.value(tradingAccount)
               : RecordList();
}

void MasterBusinessDataInterface::AddBusiMsg(Master_Values::BusiMsgLevel::Level level, const QString &text,
                                             Master_Values::BusiMsgType::Type, const QString &, bool, const QString &)
{
    ReferenceStore::addBusinessMessage(
        QStringLiteral("%1\t%2\t%3")
            .arg(text, QString::number(level), QDateTime::currentDateTime().toString(Qt::ISODateWithMs)));
}

QList<tagUserAccountInfo> MasterBusinessDataInterface::GetFundAccountListByFundProp(int, int, bool,
                                                                                    const QStringList &exchanges, bool)
{
    QList<tagUserAccountInfo> found;
    const auto data = ReferenceStore::data();
    for (const ReferenceData::Account &account : data->accounts) {
        if (intersect(account.exchanges, exchanges))
            found.append(account.info);
    }
    return found;
}

tagUserAccountInfo MasterBusinessDataInterface::GetAccountInfoByTradingAccount(const QString &tradingAccount, int)
{
    const auto data = ReferenceStore::data();
    const int index = data->accountIndex.value(tradingAccount, -1);
    return index < 0 ? tagUserAccountInfo() : data->accounts.at(index).info;
}

QString MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(const QString &tradingAccount)
{
    return GetAccountInfoByTradingAccount(tradingAccount, 1).assetProp;
}

QMap<QString, QString> MasterBusinessDataInterface::GetAllProductAccountMap()
{
    return ReferenceStore::data()->productNames;
}

int MasterBusinessDataInterface::GetDispFactorBySymbol(const QString &symbol)
{
    const auto data = ReferenceStore::data();
    return qMax(1, data->instruments.value(symbol).value(Stand_Fields::Security::dispFactor).toInt());
}

QString MasterBusinessDataInterface::GetSymbolBySecurityIDAndExchange(const QString &securityID,
                                                                      const QString &exchange)
{
    const QString symbol = ReferenceStore::data()->symbols.value({securityID, exchange});
    if (symbol.isEmpty() && HostLog::isOn(HostLog::Level::Info) && ReferenceStore::isFirstReport(securityID, exchange))
        HOST_INFO("MasterBusinessDataInterface", "unknown security" << securityID << exchange);
    return symbol;
}

QString MasterBusinessDataInterface::GetSymbolFromMap(const VariantRecord &row)
{
    const QString symbol = row.value(Orvane_Fields::Security::symbol).toString();
    if (ReferenceStore::data()->instruments.contains(symbol))
        return symbol;
    const QString security = row.value(Orvane_Fields::Security::securityID).toString();
    const QString exchange = row.value(Orvane_Fields::UserAccount::securityExchange).toString();
    return security.isEmpty() ? QString() : GetSymbolBySecurityIDAndExchange(security, exchange);
}

VariantRecord MasterBusinessDataInterface::GetSecurityDetailsBySymbol(const QString &symbol)
{
    return ReferenceStore::data()->instruments.value(symbol);
}

double MasterBusinessDataInterface::GetPriceUnitBySymbol(const QString &symbol, double price, const QString &)
{
    const QVariantList bands = GetSecurityDetailsBySymbol(symbol).value(Stand_Fields::Security::tickBands).toList();
    // Each band begins where the one before it ends: the last that begins at or below the price is the price's own.
    double tick = bands.value(partsOfBand - 1, defaultTick).toDouble();
    for (int i = partsOfBand; i + partsOfBand <= bands.size() && price >= bands.at(i).toDouble(); i += partsOfBand)
        tick = bands.at(i + partsOfBand - 1).toDouble();
    return tick > 0 ? tick : defaultTick;
}

int MasterBusinessDataInterface::GetPricePrecisionBySymbol(const QString &symbol, const QString &)
{
    return GetSecurityDetailsBySymbol(symbol).value(Stand_Fields::Security::pricePrecision, defaultPrecision).toInt();
}

int MasterBusinessDataInterface::GetQtyStepBySymbol(const QString &symbol)
{
    return qMax(1, GetSecurityDetailsBySymbol(symbol).value(Stand_Fields::Security::qtyStep).toInt());
}

QStringList MasterBusiUtils::GetCancelableOrderStatusList()
{
    return {Stand_Values::OrderStatus::Accepted, Stand_Values::OrderStatus::PartlyFilled};
}

bool MasterBusinessDataInterface::SubscribePushMsgFromServer(const QString &msgType, const VariantRecord &filter,
                                                             const QString &serviceName)
{
    // An object that is being stopped may be in a chain of subscriptions: it is not to wait for each.
    if (QCoreApplication::closingDown() || QThread::currentThread()->isInterruptionRequested())
        return false;
    const Server::Lease server;
    return server && server->channel->subscribe(msgType, filter, serviceName, subscribeTimeoutMs);
}
