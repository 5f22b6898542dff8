#include "Picture.h"

#include "JsonText.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "RowOrder.h"
#include "StandFields.h"
#include "TextTable.h"

#include <QtCore/QCryptographicHash>

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
                         {Stand_Fields::Account::productName, names.value(product.key())},
                         {Stand_Fields::Account::assetProp, property},
                         {Stand_Fields::Picture::tradingAccounts,
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
         {productAccount, Stand_Fields::Account::productName, Stand_Fields::Account::assetProp,
          Stand_Fields::Picture::tradingAccounts},
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

/// A list of texts is one again behind the wire, which knows only lists.
RecordList recordsOf(const QVariantList &list)
{
    RecordList rows;
    for (const QVariant &item : list) {
        VariantRecord row = item.toMap();
        const auto accounts = row.find(Stand_Fields::Picture::tradingAccounts);
        if (accounts != row.end())
            *accounts = accounts->toStringList();
        rows.append(row);
    }
    return rows;
}

/// Families as records and as tables.
class Album
{
public:
    /// state: empty where there is none.
    void add(int number, const Family &family, const QString &state, RecordList rows)
    {
        if (family.order)
            std::stable_sort(rows.begin(), rows.end(), family.order);
        VariantRecord record{{QStringLiteral("family"), number},
                             {QStringLiteral("name"), QString::fromLatin1(family.name)},
                             {QStringLiteral("count"), rows.size()},
                             {QStringLiteral("rows"), present(rows)}};
        if (!state.isEmpty())
            record.insert(QStringLiteral("state"), state);
        m_records.append(record);
        m_tables.append(table(number, family, state, rows));
    }

    Outcome outcome() const
    {
        Outcome outcome;
        outcome.result = QVariantMap{{QStringLiteral("families"), m_records}};
        outcome.text = m_tables.join(QStringLiteral("\n\n"));
        return outcome;
    }

private:
    static QString table(int number, const Family &family, const QString &state, const RecordList &rows)
    {
        const QString title =
            QStringLiteral("%1 %2: %3%4")
                .arg(QString::number(number), QString::fromLatin1(family.name),
                     state.isEmpty() ? QString() : state + QStringLiteral(", "), TextTable::countOf(rows));
        if (rows.isEmpty())
            return title;
        QStringList columns = family.columns;
        if (state.isEmpty()) // of a gateway
            columns.erase(std::remove_if(columns.begin(), columns.end(),
                                         [&rows](const QString &field) { return !rows.first().contains(field); }),
                          columns.end());
        return title + QLatin1Char('\n') + TextTable::ofRows(rows, columns);
    }

    QVariantList m_records;
    QStringList m_tables;
};

} // namespace

QString Picture::familyName(int family)
{
    return QString::fromLatin1(families().at(family).name);
}

QString Picture::keyOfFamily(int family)
{
    return Master_Values::InitTypeCode::ManualT0Info + QString::number(family);
}

int Picture::familyOfKey(const QString &key)
{
    for (int family = 0; family < familyCount; ++family)
        if (key == keyOfFamily(family))
            return family;
    return -1;
}

Outcome Picture::take()
{
    Album album;
    const QVector<Family> all = families();
    for (int number = 0; number < all.size(); ++number)
        album.add(number, all.at(number), present(ManualT0Logic::GetInitStateByType(number)).toString(),
                  all.at(number).rows());
    return album.outcome();
}

Outcome Picture::hash()
{
    const QByteArray all = jsonText(take().result).toUtf8();
    Outcome outcome;
    outcome.result = QString::fromLatin1(QCryptographicHash::hash(all, QCryptographicHash::Sha256).toHex());
    outcome.text = QStringLiteral("picture %1").arg(outcome.result.toString());
    return outcome;
}

Outcome Picture::ofGateway(const VariantRecord &values)
{
    Album album;
    const QVector<Family> all = families();
    for (int number = 0; number < all.size(); ++number) {
        const QVariant held = values.value(familyName(number));
        const RecordList rows = recordsOf(held.toList());
        if (held.isValid())
            album.add(number, all.at(number), QString(), rows);
    }
    return album.outcome();
}
