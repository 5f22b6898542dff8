#include "BookFiles.h"

#include <QtCore/QHash>

namespace BookFiles {

QString instruments()
{
    return QStringLiteral("instruments.csv");
}
QString ticks()
{
    return QStringLiteral("ticks.csv");
}
QString sessions()
{
    return QStringLiteral("sessions.csv");
}
QString accounts()
{
    return QStringLiteral("accounts.csv");
}
QString users()
{
    return QStringLiteral("users.csv");
}
QString positions()
{
    return QStringLiteral("positions.csv");
}
QString margin()
{
    return QStringLiteral("margin.csv");
}
QString resources()
{
    return QStringLiteral("resources.csv");
}
QString pools()
{
    return QStringLiteral("pools.csv");
}
QString carried()
{
    return QStringLiteral("carried.csv");
}
QString safety()
{
    return QStringLiteral("safety.csv");
}
QString quotes()
{
    return QStringLiteral("quotes.csv");
}

QStringList columns(const QString &file)
{
    static const QHash<QString, const char *> headers{
        {instruments(), "exchange,securityID,symbol,chineseName,spellCode,type,subType,marketSuffix,preClose,upLimit,"
                        "downLimit,tickTable,pricePrecision,qtyStep,minQty,maxQty,lotSize,dispFactor,t0,marks"},
        {ticks(), "table,from,to,tick"},
        {sessions(), "market,phase,from,to,cancel"},
        {accounts(), "productAccount,productName,tradingAccount,accountText,assetProp,exchanges,enabled,profitOwner,"
                     "buyFee,sellFee"},
        {users(), "userID,userName,organCode,roles,accounts"},
        {positions(), "tradingAccount,securityID,exchange,quantity,tradeable"},
        {margin(), "tradingAccount,securityID,exchange,quantity,loanState"},
        {resources(), "tradingAccount,securityID,exchange,quantity"},
        {pools(), "trader,tradingAccount,securityID,exchange,quantity,maxExposure,maxPendExposure"},
        {carried(), "trader,tradingAccount,securityID,exchange,side,quantity,amount"},
        {safety(), "trader,tradeSwitch,ordersPerSecond,cancelsPerMinute,duplicateMs,refuseSelfMatch"},
        {quotes(), "symbol,last"},
    };
    const char *header = headers.value(file, nullptr);
    return header ? QString::fromLatin1(header).split(QLatin1Char(',')) : QStringList{};
}

} // namespace BookFiles
