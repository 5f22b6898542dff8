#include "TradeSelection.h"

void TradeSelection::setAccounts(const QStringList &accounts)
{
    if (m_accounts == accounts)
        return;
    m_accounts = accounts;
    emit accountsChanged();
}

void TradeSelection::setInstrument(const QString &symbol, const QString &exchange)
{
    if (m_symbol == symbol && m_exchange == exchange)
        return;
    m_symbol = symbol;
    m_exchange = exchange;
    emit instrumentChanged();
}
