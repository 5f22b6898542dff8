#include "HostDirectory.h"

#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"

#include <QtCore/QCoreApplication>

namespace {

QString text(const char *sourceText)
{
    return QCoreApplication::translate("HostDirectory", sourceText);
}

QString whyNotAccount(const QString &account)
{
    if (MasterBusinessDataInterface::GetAccountInfoByTradingAccount(account, 1).tradingAccount.isEmpty())
        return text(QT_TRANSLATE_NOOP("HostDirectory", "账号不存在"));
    return ManualT0Logic::GetAllT0TradingAccountList().contains(account)
               ? QString()
               : text(QT_TRANSLATE_NOOP("HostDirectory", "账号未选为T0产品"));
}

/// A symbol has its market behind a dot, but one symbol may be traded through two markets.
QVector<ResourceRows::Security> securities(const QString &code)
{
    const QString id = code.section(QLatin1Char('.'), 0, 0).trimmed();
    const bool isSymbol = code.contains(QLatin1Char('.'));
    QVector<ResourceRows::Security> found;
    const QStringList exchanges = id.isEmpty() ? QStringList() : ManualT0Logic::GetSupportExchangeList();
    for (const QString &exchange : exchanges) {
        const QString symbol = MasterBusinessDataInterface::GetSymbolBySecurityIDAndExchange(id, exchange);
        if (symbol.isEmpty() || (isSymbol && symbol.compare(code, Qt::CaseInsensitive) != 0))
            continue;
        found.append({symbol, id, exchange, MasterBusinessDataInterface::GetDispFactorBySymbol(symbol)});
    }
    return found;
}

bool isTrader(const QString &trader)
{
    return !ManualT0Logic::GetTraderNameByTraderId(trader).isEmpty();
}

} // namespace

ResourceRows::Directory HostDirectory::directory()
{
    return {whyNotAccount, securities, isTrader};
}
