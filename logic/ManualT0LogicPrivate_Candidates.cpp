#include "BusinessDataInterface.h"
#include "CBusinessDataBase.h"
#include "DisplayUnits.h"
#include "ManualT0Logic.h"
#include "ManualT0LogicPrivate.h"
#include "MarginDC.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "Quantity.h"
#include "StandFields.h"

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;

namespace {

/// A security an account holds or has borrowed; quantity in display units.
struct Holding {
    VariantRecord row; ///< the host's
    qint64 quantity = 0;
};

/// By rank of the exchange and symbol, which is the order of the candidates.
using Holdings = QMap<QPair<int, QString>, Holding>;

/// Selects what may become a resource.
struct Tradable {
    QSet<QString> symbols;
    QStringList exchanges;
};

void addQuantity(Holdings &holdings, const Tradable &tradable, const VariantRecord &row, const QString &quantityField)
{
    const QString name = text(row, symbol);
    const int rank = tradable.exchanges.indexOf(text(row, securityExchange));
    if (rank < 0 || !tradable.symbols.contains(name))
        return;
    const qint64 quantity = Quantity::satMul(Quantity::toQty(row.value(quantityField)), displayFactor(name));
    Holding &holding = holdings[{rank, name}];
    if (holding.row.isEmpty())
        holding.row = row;
    holding.quantity = Quantity::satAdd(holding.quantity, quantity);
}

/// What an account can sell today: its own stock and, on credit, what it has borrowed and uses.
Holdings sellableHoldings(const QString &account, const Tradable &tradable)
{
    Holdings holdings;
    const RecordList positions = BusinessDataInterface::GetPositionListByTradingAccount(account);
    for (const VariantRecord &position : positions)
        addQuantity(holdings, tradable, position, Stand_Fields::Position::tradeable);
    if (MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(account) !=
        Master_Values::FundAccountType::Credit)
        return holdings;
    const RecordList borrowed = MarginDC::GetMarginSecurities(account);
    for (const VariantRecord &security : borrowed)
        if (text(security, Stand_Fields::Margin::loanState) == Master_Values::LoanState::InUse)
            addQuantity(holdings, tradable, security, Stand_Fields::Margin::quantity);
    return holdings;
}

void removeEmpty(Holdings &holdings)
{
    for (auto holding = holdings.begin(); holding != holdings.end();)
        holding = holding->quantity > 0 ? holding + 1 : holdings.erase(holding);
}

/// Natively T+0 symbols that the account does not hold: they can be bought first.
void addUnheld(Holdings &holdings, const QStringList &t0Symbols, const QStringList &exchanges)
{
    for (const QString &name : t0Symbols) {
        const VariantRecord details = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(name);
        const int rank = exchanges.indexOf(text(details, securityExchange));
        if (rank >= 0 && !text(details, Orvane_Fields::Security::securityID).isEmpty() &&
            !holdings.contains({rank, name}))
            holdings.insert({rank, name}, {details, 0});
    }
}

VariantRecord candidateRow(const QString &product, const QString &account, const QString &name, const Holding &holding)
{
    return {{Orvane_Fields::UserAccount::productAccount, product},
            {Orvane_Fields::UserAccount::tradingAccount, account},
            {Orvane_Fields::Security::securityID, text(holding.row, Orvane_Fields::Security::securityID)},
            {securityExchange, text(holding.row, securityExchange)},
            {symbol, name},
            {Orvane_Fields::Security::chineseName,
             text(MasterBusinessDataInterface::GetSecurityDetailsBySymbol(name), Orvane_Fields::Security::chineseName)},
            {ResourceQty, holding.quantity}};
}

/// Undoes what today's T0 trading did to the tradeable quantity, so that a resource keeps its size all day.
qint64 undoTrading(qint64 quantity, const VariantRecord &usage, bool isT0)
{
    const auto of = [&usage](const QString &field) { return Quantity::toQty(usage.value(field)); };
    const QString side = text(usage, PreUnclosedSide);
    const bool isShort = side == Master_Values::OpenPositionSide::SellOpen;
    quantity = Quantity::satAdd(quantity, of(DailySoldQty)); // still set aside
    if (side == Master_Values::OpenPositionSide::BuyOpen)
        quantity = Quantity::satSub(quantity, of(PreOpenQty));
    if (isShort) // what is bought back today is tradeable tomorrow
        quantity = Quantity::satAdd(quantity, of(PreUnclosedSoldQty));
    if (isT0) // what was bought is tradeable at once
        quantity = Quantity::satSub(quantity, of(DailyBoughtQty));
    if (isT0 && isShort)
        quantity = Quantity::satSub(quantity, of(PreUnclosedBoughtQty));
    return quantity;
}

} // namespace

RecordList ManualT0LogicPrivate::GetT0ResourceCandidatesList(const QStringList &productAccounts,
                                                             const QString &assetProp, bool withT0Symbols) const
{
    const Tradable tradable{tradableSymbols(), GetSupportExchangeList()};
    RecordList candidates;
    QSet<QString> seen;
    for (const QString &product : productAccounts) {
        const QStringList accounts = GetTradingAccountListByProductAndAssetProp(product, assetProp);
        for (const QString &account : accounts) {
            if (seen.contains(account))
                continue;
            seen.insert(account);
            Holdings holdings = sellableHoldings(account, tradable);
            removeEmpty(holdings);
            if (withT0Symbols)
                addUnheld(holdings, t0SymbolList, tradable.exchanges);
            for (auto holding = holdings.cbegin(); holding != holdings.cend(); ++holding)
                candidates.append(candidateRow(product, account, holding.key().second, *holding));
        }
    }
    markCandidates(candidates);
    return candidates;
}

double ManualT0LogicPrivate::GetAllocatableQty2Resource(const QString &productAccount, const QString &assetProp,
                                                        const QString &symbol, const QString &exchange) const
{
    if (productAccount.isEmpty())
        return 0;
    QStringList accounts = GetTradingAccountListByProductAndAssetProp(productAccount, assetProp);
    accounts.removeDuplicates();
    qint64 sum = 0;
    for (const QString &account : qAsConst(accounts))
        sum += allocatable(account, symbol, exchange);
    return double(qMin<qint64>(sum, ManualT0Logic::MaxResourceQty));
}

double ManualT0LogicPrivate::GetAllocatableQty2ResourceByTradingAccount(const QString &tradingAccount,
                                                                        const QString &symbol,
                                                                        const QString &exchange) const
{
    return double(allocatable(tradingAccount, symbol, exchange));
}

qint64 ManualT0LogicPrivate::allocatable(const QString &tradingAccount, const QString &symbol,
                                         const QString &exchange) const
{
    if (tradingAccount.isEmpty() || symbol.isEmpty() || exchange.isEmpty() ||
        !GetAllT0TradingAccountList().contains(tradingAccount))
        return 0;
    const VariantRecord details = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(symbol);
    const bool isBond = t0SymbolList.contains(symbol);
    const bool isT0 = isBond || details.value(Stand_Fields::Security::t0).toBool();
    const qint64 held = heldWithoutTrading(tradingAccount, symbol, exchange, isT0);
    const qint64 used = setAside(tradingAccount, symbol, exchange);
    const qint64 room = Quantity::satSub(ManualT0Logic::MaxResourceQty, used);
    // What is bought before it is sold is limited by money, not by stock.
    const bool boughtFirst = held <= 0 && isBond && text(details, securityExchange) == exchange;
    const qint64 free = boughtFirst ? room : qMin(Quantity::satSub(held, used), room);
    const int factor = displayFactor(symbol);
    return qMax<qint64>(0, free) / factor * factor;
}

QSet<QString> ManualT0LogicPrivate::tradableSymbols() const
{
    QSet<QString> symbols;
    for (const SymbolListType &kind : tradableSymbolTypes) {
        const QStringList ofKind = CBusinessDataBase::GetSymbolListByTypeList(kind.type, kind.subTypes, kind.suffixes,
                                                                              kind.flag, kind.further);
        symbols.unite({ofKind.cbegin(), ofKind.cend()});
    }
    return symbols;
}

void ManualT0LogicPrivate::markCandidates(RecordList &candidates) const
{
    const QSet<QString> t0Symbols(t0SymbolList.cbegin(), t0SymbolList.cend());
    ReadLock lock(resourceLock);
    for (VariantRecord &row : candidates) {
        QVector<HeldRecord> resources = resourcesOf(text(row, Orvane_Fields::UserAccount::tradingAccount),
                                                    text(row, symbol), text(row, securityExchange));
        sortById(resources);
        row.insert(T0SymbolFlag, t0Symbols.contains(text(row, symbol)));
        row.insert(ResourceId, resources.isEmpty() ? QString() : resources.first().key());
    }
}

QVector<HeldRecord> ManualT0LogicPrivate::resourcesOf(const QString &tradingAccount, const QString &symbol,
                                                      const QString &exchange) const
{
    QVector<HeldRecord> resources = findResources({tradingAccount}, symbol, exchange);
    // Here an empty symbol or exchange is that of a security nobody knows, not "any".
    const auto isOther = [&](HeldRecord resource) {
        return text(*resource, Orvane_Fields::Security::symbol) != symbol ||
               text(*resource, Orvane_Fields::UserAccount::securityExchange) != exchange;
    };
    resources.erase(std::remove_if(resources.begin(), resources.end(), isOther), resources.end());
    return resources;
}

qint64 ManualT0LogicPrivate::setAside(const QString &tradingAccount, const QString &symbol,
                                      const QString &exchange) const
{
    qint64 sum = 0;
    ReadLock lock(resourceLock);
    const QVector<HeldRecord> resources = resourcesOf(tradingAccount, symbol, exchange);
    for (const HeldRecord resource : resources)
        sum = Quantity::satAdd(sum, Quantity::toQty(resource->value(ResourceQty)));
    return sum;
}

qint64 ManualT0LogicPrivate::heldWithoutTrading(const QString &tradingAccount, const QString &symbol,
                                                const QString &exchange, bool isT0) const
{
    const Tradable tradable{tradableSymbols(), GetSupportExchangeList()};
    const int rank = tradable.exchanges.indexOf(exchange);
    qint64 quantity = sellableHoldings(tradingAccount, tradable).value({rank, symbol}).quantity;
    ReadLock lock(realtimePoolLock);
    const QVector<HeldRecord> records = usageLookup().find({{tradingAccount}, {}, symbol, exchange});
    for (const HeldRecord record : records)
        quantity = undoTrading(quantity, *record, isT0);
    return quantity;
}
