#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <cmath>

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
            {Security_::preClose, instrument.preClose},
            {Security_::upLimit, instrument.upLimit},
            {Security_::downLimit, instrument.downLimit},
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

VariantRecord quoteRow(const QString &symbol, double price)
{
    return {{Orvane_Fields::Security::symbol, symbol}, {Stand_Fields::Quote::lastPrice, price}};
}

} // namespace

bool Service::mayTrade(const Request &request, const QString &account) const
{
    return request.user().isManager() || m_books.tradersOf(account).contains(request.user().userID);
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
    return Answers::listPage(request.values, m_books.instruments, instrumentRow);
}

MessageBody Service::queryPositions(const Request &request)
{
    return Answers::listPage(request.values, m_books.positions, [&](const Position &position) {
        if (!mayTrade(request, position.holding.account))
            return VariantRecord();
        VariantRecord row = holdingRow(position.holding);
        const double factor = dispFactor(position.holding);
        row.insert(Stand_Fields::Position::quantity, double(position.quantity) / factor);
        row.insert(Stand_Fields::Position::tradeable, double(position.tradeable) / factor);
        return row;
    });
}

MessageBody Service::queryMarginSecurities(const Request &request)
{
    return Answers::listPage(request.values, m_books.margin, [&](const MarginSecurity &margin) {
        if (!mayTrade(request, margin.holding.account))
            return VariantRecord();
        VariantRecord row = holdingRow(margin.holding);
        row.insert(Stand_Fields::Margin::quantity, double(margin.quantity) / dispFactor(margin.holding));
        row.insert(Stand_Fields::Margin::loanState, margin.loanState);
        return row;
    });
}

MessageBody Service::queryQuotes(const Request &request)
{
    return Answers::listPage(request.values, m_quoted.toVector(),
                             [this](const QString &symbol) { return quoteRow(symbol, m_lastPrices.value(symbol)); });
}

MessageBody Service::setQuote(const Request &request)
{
    const QString symbol = request.text(Orvane_Fields::Security::symbol);
    if (!m_books.hasSymbol(symbol))
        return Answers::refused(GatewayTexts::unknownSymbol(symbol));
    bool valid = false;
    const double price = request.row.value(Stand_Fields::Quote::lastPrice).toDouble(&valid);
    if (!valid || !std::isfinite(price) || price < 0)
        return Answers::refused(GatewayTexts::badPrice());
    m_changes.noteQuote(symbol, m_lastPrices.value(symbol), price);
    m_atCommit = [this, symbol, price] {
        if (!m_lastPrices.contains(symbol))
            m_quoted.append(symbol);
        m_lastPrices.insert(symbol, price);
    };
    m_pushes.append({Envelope::push(Stand_MsgType::QuotePush, {{}, {quoteRow(symbol, price)}}), QString()});
    return Answers::success();
}
