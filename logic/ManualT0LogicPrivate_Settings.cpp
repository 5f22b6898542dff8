#include "CBusinessDataBase.h"
#include "DisplayUnits.h"
#include "HCore.h"
#include "HostLog.h"
#include "ManualT0LogicPrivate.h"
#include "MasterBusinessDataInterface.h"
#include "MasterConstants.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "VantaKeys.h"

#include <QtCore/QJsonDocument>

using MasterConstants::SettingFieldName::ManualT0Settings::TradeSymbolSetting;

namespace {

QString searchText(const QString &symbol)
{
    const VariantRecord security = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(symbol);
    return symbol + Constants::SymbolSearch_Split + text(security, Orvane_Fields::Security::chineseName) +
           Constants::SymbolSearch_Split + text(security, Orvane_Fields::Security::spellCode);
}

} // namespace

QStringList ManualT0LogicPrivate::GetSupportExchangeList() const
{
    static const QStringList exchanges{Orvane_Values::Exchange::sh, Orvane_Values::Exchange::sz,
                                       Master_Values::Exchange::bj, Orvane_Values::Exchange::hhk,
                                       Orvane_Values::Exchange::szhk};
    return exchanges;
}

QStringList ManualT0LogicPrivate::GetT0Symbols() const
{
    return t0SymbolList;
}

QList<SymbolListType> ManualT0LogicPrivate::GetTradableSymbolListType() const
{
    return tradableSymbolTypes;
}

long long ManualT0LogicPrivate::GetTradableQtyByAccountAndSymbol(const QString &, const QString &, const QString &,
                                                                 const QStringList &) const
{
    return 0; // deliberate: kept for callers of the interface, says nothing about a quantity
}

VariantRecord ManualT0LogicPrivate::GetSymbolTradeSettings(const QString &symbol, bool *found) const
{
    ReadLock lock(symbolTradeSettingsLock);
    const auto settings = symbolTradeSettings.constFind(symbol);
    const bool known = settings != symbolTradeSettings.cend();
    if (found)
        *found = known;
    return known ? *settings : VariantRecord();
}

bool ManualT0LogicPrivate::SetSymbolTradeSettings(const QString &symbol, const VariantRecord &settings)
{
    if (symbol.isEmpty() || settings.isEmpty())
        return false;
    WriteLock lock(symbolTradeSettingsLock);
    if (symbolTradeSettings.value(symbol) == settings)
        return true;
    symbolTradeSettings.insert(symbol, settings);
    saveSymbolTradeSettings();
    return true;
}

void ManualT0LogicPrivate::DeleteSymbolTradeSettings(const QString &symbol)
{
    if (symbol.isEmpty())
        return;
    WriteLock lock(symbolTradeSettingsLock);
    if (symbolTradeSettings.remove(symbol) > 0)
        saveSymbolTradeSettings();
}

QStringList ManualT0LogicPrivate::GetCurrentTradeAccount() const
{
    ReadLock lock(currentTradeAccountLock);
    return currentTradeAccount;
}

void ManualT0LogicPrivate::SetCurrentTradeAccount(const QStringList &accounts)
{
    WriteLock lock(currentTradeAccountLock);
    currentTradeAccount = accounts;
    lock.unlock();
    refreshCurrentTradableSymbols();
    sendEvent(Vanta_Keys::EventMsgName::ManualT0CurTradeAccountChanged, accounts);
}

QStringList ManualT0LogicPrivate::GetCurrentTradableSymbolList() const
{
    ReadLock lock(currentInputSymbolLock);
    return currentInputSymbols.keys();
}

QStringList ManualT0LogicPrivate::GetCurrentInputSymbolList() const
{
    ReadLock lock(currentInputSymbolLock);
    return currentInputSymbols.values();
}

void ManualT0LogicPrivate::loadSymbolLists()
{
    using namespace Orvane_Values;
    namespace SubTypes = Master_Values::MdcSubSecurityType;
    const QStringList suffixes{SymbolPost::sh, SymbolPost::sz, SymbolPost::bj, SymbolPost::hk};
    const QStringList bonds{MdcSubSecurityType::Convertiblebond};

    t0SymbolList = CBusinessDataBase::GetSymbolListByTypeList(MdcSecurityType::BondType, bonds, suffixes, false, {});
    HOST_DEBUG("ManualT0LogicPrivate", "ManualT0LogicPrivate::ManualT0LogicPrivate" << t0SymbolList.size());
    tradableSymbolTypes = {
        {MdcSecurityType::StockType,
         SubTypes::CommonStockTypeList + QStringList(SubTypes::BjSelectedStock),
         suffixes,
         false,
         {}},
        {MdcSecurityType::FundType, {MdcSubSecurityType::TradingopenindexfundETF}, suffixes, false, {}},
        // deliberate: no suffixes, these trade under one symbol on two exchanges
        {MdcSecurityType::FundType, SubTypes::HKSharesTypeList, {}, false, {}},
        {MdcSecurityType::BondType, bonds, suffixes, false, {}},
    };
}

void ManualT0LogicPrivate::loadSymbolTradeSettings()
{
    const QString stored =
        HCore::instance()->settings(TradeSymbolSetting, QString(), QString(), QSettings::UserScope).toString();
    const QJsonDocument document = QJsonDocument::fromJson(stored.toUtf8());
    if (document.isNull())
        return;
    const QVariantMap settings = document.toVariant().toMap();
    WriteLock lock(symbolTradeSettingsLock);
    for (auto symbol = settings.cbegin(); symbol != settings.cend(); ++symbol)
        symbolTradeSettings.insert(symbol.key(), symbol->toMap());
}

void ManualT0LogicPrivate::saveSymbolTradeSettings() const
{
    QVariantMap all;
    for (auto settings = symbolTradeSettings.cbegin(); settings != symbolTradeSettings.cend(); ++settings)
        all.insert(settings.key(), *settings);
    HCore::instance()->saveSetting(TradeSymbolSetting, QJsonDocument::fromVariant(all).toJson(QJsonDocument::Compact),
                                   QString(), QString(), QSettings::UserScope);
}

void ManualT0LogicPrivate::refreshCurrentTradableSymbols()
{
    // Taken whole: of two runs the later one starts after the first has ended and sees the newest accounts.
    const QMutexLocker whole(&refreshSymbolsMutex);
    const QStringList accounts = GetCurrentTradeAccount();
    QStringList symbols;
    {
        ReadLock lock(realtimePoolLock);
        const QVector<HeldRecord> records = usageLookup().find({accounts, {loginUserId}, QString(), QString()});
        for (const HeldRecord record : records)
            symbols.append(text(*record, Orvane_Fields::Security::symbol));
    }
    symbols.removeDuplicates();
    QMap<QString, QString> searchTexts;
    for (const QString &symbol : qAsConst(symbols))
        searchTexts.insert(symbol, searchText(symbol));

    WriteLock lock(currentInputSymbolLock);
    currentInputSymbols.swap(searchTexts);
}
