#include "Books.h"

#include "MasterValues.h"

#include <tuple>

bool User::isManager() const
{
    return roles.contains(Master_Values::UserRoles::ManualT0Mangager);
}

bool User::isTrader() const
{
    return roles.contains(Master_Values::UserRoles::ManualT0Trader);
}

bool Holding::operator==(const Holding &other) const
{
    return account == other.account && securityID == other.securityID && exchange == other.exchange;
}

bool Holding::operator<(const Holding &other) const
{
    return std::tie(account, securityID, exchange) < std::tie(other.account, other.securityID, other.exchange);
}

uint qHash(const Holding &holding, uint seed)
{
    QtPrivate::QHashCombine combine;
    return combine(combine(qHash(holding.account, seed), holding.securityID), holding.exchange);
}

QString BookError::toText() const
{
    return QStringLiteral("%1:%2: %3: value \"%4\": expected %5")
        .arg(file, QString::number(row), column, value, expected);
}

QString Books::publicTrader()
{
    return QStringLiteral("public");
}

const Instrument *Books::instrument(const QString &securityID, const QString &exchange) const
{
    const int at = m_instruments.value({securityID, exchange}, -1);
    return at < 0 ? nullptr : &instruments.at(at);
}

const Instrument *Books::listed(const QString &symbol, const QString &exchange) const
{
    const int at = m_listed.value({symbol, exchange}, -1);
    return at < 0 ? nullptr : &instruments.at(at);
}

const Account *Books::account(const QString &tradingAccount) const
{
    const int at = m_accounts.value(tradingAccount, -1);
    return at < 0 ? nullptr : &accounts.at(at);
}

const User *Books::user(const QString &userID) const
{
    const int at = m_users.value(userID, -1);
    return at < 0 ? nullptr : &users.at(at);
}

bool Books::hasSymbol(const QString &symbol) const
{
    return m_symbols.contains(symbol);
}

const User *Books::firstManager() const
{
    for (const User &user : users)
        if (user.isManager())
            return &user;
    return nullptr;
}

QStringList Books::tradersOf(const QString &tradingAccount) const
{
    return m_traders.value(tradingAccount);
}

QStringList Books::accountsOf(const QString &productAccount) const
{
    return m_ofProduct.value(productAccount);
}

void Books::buildIndexes()
{
    m_instruments.clear();
    m_listed.clear();
    m_accounts.clear();
    m_users.clear();
    m_symbols.clear();
    m_traders.clear();
    m_ofProduct.clear();
    for (int i = 0; i < instruments.size(); ++i) {
        m_instruments.insert({instruments.at(i).securityID, instruments.at(i).exchange}, i);
        m_listed.insert({instruments.at(i).symbol, instruments.at(i).exchange}, i);
        m_symbols.insert(instruments.at(i).symbol, i);
    }
    for (int i = 0; i < accounts.size(); ++i) {
        m_accounts.insert(accounts.at(i).tradingAccount, i);
        m_ofProduct[accounts.at(i).productAccount].append(accounts.at(i).tradingAccount);
    }
    for (int i = 0; i < users.size(); ++i) {
        const User &user = users.at(i);
        m_users.insert(user.userID, i);
        if (!user.isTrader())
            continue;
        for (const QString &account : user.accounts)
            m_traders[account].append(user.userID);
    }
}
