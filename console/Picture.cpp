#include "Picture.h"

#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "RowOrder.h"
#include "TextTable.h"

#include <algorithm>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::productAccount;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Fields::UserAccount::userID;
using Orvane_Fields::UserAccount::userName;

namespace {

/// One family: its rows and the columns that people see.
struct Family {
    const char *name;
    QStringList columns;
    RecordList (*rows)();
    RowOrder::Less order; ///< null: the order of the rows is theirs
};

RecordList productRows()
{
    RecordList rows;
    const QMap<QString, QStringList> products = ManualT0Logic::GetAllT0ProductAccount();
    const QMap<QString, QString> names = ManualT0Logic::GetT0ProductMap();
    for (auto product = products.cbegin(); product != products.cend(); ++product)
        for (const QString &property : product.value())
            rows.append({{productAccount, product.key()},
                         {QStringLiteral("productName"), names.value(product.key())},
                         {QStringLiteral("assetProp"), property},
                         {QStringLiteral("tradingAccounts"),
                          ManualT0Logic::GetTradingAccountListByProductAndAssetProp(product.key(), property)}});
    return rows;
}

RecordList traderRows()
{
    RecordList rows;
    const QMap<QString, QString> traders = ManualT0Logic::GetAllT0TraderId();
    for (auto trader = traders.cbegin(); trader != traders.cend(); ++trader)
        rows.append({{userID, trader.key()}, {userName, trader.value()}});
    return rows;
}

RecordList usageRows()
{
    return ManualT0Logic::GetRealtimePoolDetailList(ManualT0Logic::GetAllT0TradingAccountList(), {}, {}, {});
}

RecordList priorityRows()
{
    RecordList rows;
    const QStringList accounts = ManualT0Logic::GetAllT0TradingAccountListByCurUser();
    for (const QString &account : accounts)
        rows.append({{QStringLiteral("priority"), rows.size() + 1}, {tradingAccount, account}});
    return rows;
}

QVector<Family> families()
{
    return {
        {"Products",
         {productAccount, QStringLiteral("productName"), QStringLiteral("assetProp"),
          QStringLiteral("tradingAccounts")},
         productRows,
         nullptr},
        {"Traders", {userID, userName}, traderRows, nullptr},
        {"Resources",
         {ResourceId, tradingAccount, symbol, securityExchange, ResourceQty, PublicPoolQty, PrivatePoolQty, T0TraderId},
         ManualT0Logic::GetAllResourceList,
         RowOrder::byResourceId},
        {"SecurityPools",
         {PoolDetailId, tradingAccount, symbol, securityExchange, T0TraderId, T0TraderName, PoolTotalQty,
          MaxExposureQty, MaxPendExposureQty},
         ManualT0Logic::GetAllSecurityPoolList,
         RowOrder::byPoolId},
        {"RealtimeUsage",
         {T0TraderId, tradingAccount, symbol, securityExchange, RtPoolTotalQty, RtTotalBuyLimit, RtTotalSellLimit,
          OpenPosQty, OpenPosSide, OpenAvgPrice},
         usageRows,
         RowOrder::byUsageKey},
        {"AccountPriority", {QStringLiteral("priority"), tradingAccount}, priorityRows, nullptr},
    };
}

} // namespace

QString Picture::familyName(int family)
{
    return QString::fromLatin1(families().at(family).name);
}

Outcome Picture::take()
{
    QVariantList records;
    QStringList tables;
    for (const Family &family : families()) {
        const int number = records.size();
        const QString name = QString::fromLatin1(family.name);
        const QString state = present(ManualT0Logic::GetInitStateByType(number)).toString();
        RecordList rows = family.rows();
        if (family.order)
            std::stable_sort(rows.begin(), rows.end(), family.order);
        records.append(QVariantMap{{QStringLiteral("family"), number},
                                   {QStringLiteral("name"), name},
                                   {QStringLiteral("state"), state},
                                   {QStringLiteral("count"), rows.size()},
                                   {QStringLiteral("rows"), present(rows)}});
        tables.append(
            QStringLiteral("%1 %2: %3, %4").arg(QString::number(number), name, state, TextTable::countOf(rows)));
        if (!rows.isEmpty())
            tables.append(TextTable::ofRows(rows, family.columns));
        tables.append(QString());
    }
    Outcome outcome;
    outcome.result = QVariantMap{{QStringLiteral("families"), records}};
    tables.removeLast();
    outcome.text = tables.join(QLatin1Char('\n'));
    return outcome;
}
