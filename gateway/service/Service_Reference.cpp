#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandFields.h"

namespace {

namespace Account_ = Stand_Fields::Account;
namespace Security_ = Stand_Fields::Security;
namespace UserAccount_ = Orvane_Fields::UserAccount;

VariantRecord accountRow(const Account &account, bool enabled)
{
    return {{UserAccount_::productAccount, account.productAccount},
            {Account_::productName, account.productName},
            {UserAccount_::tradingAccount, account.tradingAccount},
            {Account_::accountText, account.accountText},
            {Account_::assetProp, account.assetProp},
            {Account_::exchanges, account.exchanges},
            {Account_::enabled, enabled}};
}

/// The bands of a tick table as a flat list.
QVariantList bandsOf(const Books &books, const Instrument &instrument)
{
    const auto table = books.tickTables.constFind(instrument.tickTable);
    if (table == books.tickTables.constEnd())
        return {0.0, 0.0, instrument.tickTable.toDouble()};
    QVariantList bands;
    for (const TickBand &band : *table)
        bands += {band.from, band.to, band.tick};
    return bands;
}

VariantRecord instrumentRow(const Instrument &instrument)
{
    return {{Orvane_Fields::Security::symbol, instrument.symbol},
            {Orvane_Fields::Security::securityID, instrument.securityID},
            {UserAccount_::securityExchange, instrument.exchange},
            {Orvane_Fields::Security::chineseName, instrument.chineseName},
            {Orvane_Fields::Security::spellCode, instrument.spellCode},
            {Security_::type, instrument.type},
            {Security_::subType, instrument.subType},
            {Security_::marketSuffix, instrument.marketSuffix},
            {Security_::tickTable, instrument.tickTable},
            {Security_::pricePrecision, instrument.pricePrecision},
            {Security_::qtyStep, instrument.qtyStep},
            {Security_::minQty, instrument.minQty},
            {Security_::maxQty, instrument.maxQty},
            {Security_::lotSize, instrument.lotSize},
            {Security_::dispFactor, instrument.dispFactor},
            {Security_::t0, instrument.t0},
            {Security_::marks, instrument.marks}};
}

VariantRecord holdingRow(const Holding &holding)
{
    return {{UserAccount_::tradingAccount, holding.account},
            {Orvane_Fields::Security::securityID, holding.securityID},
            {UserAccount_::securityExchange, holding.exchange}};
}

} // namespace

bool Service::mayTrade(const User &user, const QString &account) const
{
    return user.isManager() || m_books.tradersOf(account).contains(user.userID);
}

double Service::dispFactor(const Holding &holding) const
{
    const Instrument *instrument = m_books.instrument(holding.securityID, holding.exchange);
    return instrument ? double(instrument->dispFactor) : 1;
}

MessageBody Service::queryAccounts(const Request &)
{
    // Everybody's: the products name every enabled account, and what is known of each must be the same.
    RecordList rows;
    for (const Account &account : m_books.accounts)
        rows.append(accountRow(account, m_memory.enabled.contains(account.tradingAccount)));
    return Answers::success(rows);
}

MessageBody Service::queryInstruments(const Request &request)
{
    return Answers::listPage(request.values, m_books.instruments, [this](const Instrument &instrument) {
        // The close and the limits of the day, not those of the books.
        const Quote quote = m_memory.exchange.prices(instrument.symbol).value_or(Quote());
        VariantRecord row = instrumentRow(instrument);
        row.insert(Security_::preClose, quote.preClose);
        row.insert(Security_::upLimit, quote.upLimit);
        row.insert(Security_::downLimit, quote.downLimit);
        row.insert(Security_::tickBands, bandsOf(m_books, instrument));
        return row;
    });
}

VariantRecord Service::positionRow(const StoredPosition &position) const
{
    VariantRecord row = holdingRow(position.holding);
    const double factor = dispFactor(position.holding);
    row.insert(Stand_Fields::Position::quantity, double(position.stock.quantity) / factor);
    row.insert(Stand_Fields::Position::tradeable, double(position.stock.tradeable) / factor);
    return row;
}

MessageBody Service::queryPositions(const Request &request)
{
    return Answers::idPage(
        request.values, Store::isPositionId,
        [&](const QString &afterId, int limit) { return m_store->positions(afterId, limit); },
        [](const StoredPosition &position) { return position.id; },
        [&](const StoredPosition &position) {
            return mayTrade(request.user(), position.holding.account) ? positionRow(position) : VariantRecord();
        });
}

MessageBody Service::queryMarginSecurities(const Request &request)
{
    return Answers::listPage(request.values, m_books.margin, [&](const MarginSecurity &margin) {
        if (!mayTrade(request.user(), margin.holding.account))
            return VariantRecord();
        const bool inUse = margin.loanState == Master_Values::LoanState::InUse;
        const qint64 quantity = inUse ? m_store->positionOf(margin.holding).stock.margin : margin.quantity;
        VariantRecord row = holdingRow(margin.holding);
        row.insert(Stand_Fields::Margin::quantity, double(quantity) / dispFactor(margin.holding));
        row.insert(Stand_Fields::Margin::loanState, margin.loanState);
        return row;
    });
}
