#include "DeskServer.h"

#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "ScriptedChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtCore/QSet>

#include <chrono>

using namespace Master_Fields::ManualT0;
using namespace Master_MsgType;
namespace UserAccount = Orvane_Fields::UserAccount;

namespace {

constexpr int quotesPerUsage = 10;

QString manager()
{
    return QStringLiteral("lead1");
}

QString numbered(const char *prefix, int number, int digits)
{
    return QString::fromLatin1(prefix) + QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
}

QString securityId(int symbol)
{
    return numbered("6", symbol, 5);
}

QString symbolText(int symbol)
{
    return securityId(symbol) + QStringLiteral(".SH");
}

QString trader(int number)
{
    return numbered("trader", number, 2);
}

ScriptedReference reference()
{
    ScriptedReference reference;
    reference.user = manager();
    reference.roles = QStringList(Master_Values::UserRoles::ManualT0Mangager);
    for (int i = 0; i < DeskServer::Accounts; ++i)
        reference.accounts.append({numbered("A", i, 6), numbered("P", i / 2, 4)});
    for (int i = 0; i < DeskServer::Symbols; ++i)
        reference.instruments.append({symbolText(i), securityId(i), Orvane_Values::Exchange::sh, 1, 10.0 + i});
    return reference;
}

VariantRecord onExchange(const QString &account, int symbol)
{
    return {{UserAccount::tradingAccount, account},
            {UserAccount::securityExchange, Orvane_Values::Exchange::sh},
            {Orvane_Fields::Security::securityID, securityId(symbol)}};
}

/// The rows a query asks for: those of its account, or all.
RecordList rowsOf(const QHash<QString, RecordList> &rows, const MessageBody &query)
{
    const QString account = query.rows.value(0).value(UserAccount::tradingAccount).toString();
    if (!account.isEmpty())
        return rows.value(account);
    RecordList all;
    for (const RecordList &ofAccount : rows)
        all += ofAccount;
    return all;
}

} // namespace

DeskServer::DeskServer()
    : m_random(20240102)
{
    QSet<QString> taken;
    while (m_records.size() < UsageRecords) {
        const int account = int(m_random() % Accounts);
        const int traderNumber = int(m_random() % Traders);
        const int symbol = int(m_random() % Symbols);
        const QString key = QStringLiteral("%1 %2 %3").arg(account).arg(traderNumber).arg(symbol);
        if (taken.contains(key))
            continue;
        taken.insert(key);
        // A tenth is the manager's own, so that his trading page is busy as well.
        const QString user = m_records.size() % 10 == 0 ? manager() : trader(traderNumber);
        m_records.append({numbered("A", account, 6), user, symbol});
    }
}

DeskServer::~DeskServer()
{
    stopPushing();
}

std::unique_ptr<HostSession> DeskServer::openSession()
{
    auto session = reference().open(m_channel);
    script();
    return session;
}

VariantRecord DeskServer::usage(const Record &record)
{
    const qint64 bought = 100 * qint64(m_random() % 50);
    const qint64 sold = 100 * qint64(m_random() % 50);
    const double price = 10.0 + record.symbol;
    VariantRecord row = onExchange(record.account, record.symbol);
    row.insert(T0TraderId, record.trader);
    row.insert(Master_Fields::System::ModifyTime, numbered("20240102", int(++m_time), 12));
    row.insert(RtPoolTotalQty, qint64(10000));
    row.insert(DailyBuyLimit, 10000 - bought);
    row.insert(DailySellLimit, 10000 - sold);
    row.insert(DailyBoughtQty, bought);
    row.insert(DailySoldQty, sold);
    row.insert(DailyBoughtAmount, price * double(bought));
    row.insert(DailySoldAmount, 1.01 * price * double(sold));
    row.insert(PreUnclosedSide, Master_Values::OpenPositionSide::NoOpenPos);
    return row;
}

VariantRecord DeskServer::pool(int number) const
{
    const Record &record = m_records.at(number);
    VariantRecord row = onExchange(record.account, record.symbol);
    row.insert(PoolDetailId, numbered("P", number, 9));
    row.insert(ResourceId, numbered("R", number, 9));
    row.insert(PoolType, 1);
    row.insert(T0TraderId, record.trader);
    row.insert(PoolTotalQty, 10000);
    row.insert(MaxExposureQty, 5000);
    row.insert(MaxPendExposureQty, -1);
    return row;
}

VariantRecord DeskServer::resource(int number) const
{
    VariantRecord row = onExchange(m_records.at(number).account, m_records.at(number).symbol);
    row.insert(ResourceId, numbered("R", number, 9));
    row.insert(ResourceQty, 20000);
    return row;
}

void DeskServer::script()
{
    QHash<QString, RecordList> usages;
    QHash<QString, RecordList> pools;
    QHash<QString, RecordList> resources;
    for (int i = 0; i < m_records.size(); ++i) {
        const QString account = m_records.at(i).account;
        usages[account].append(usage(m_records.at(i)));
        pools[account].append(pool(i));
        resources[account].append(resource(i));
    }
    const auto byAccount = [this](const QString &type, const QHash<QString, RecordList> &rows) {
        m_channel->always(type,
                          [rows](const MessageBody &query) { return ScriptedChannel::success(rowsOf(rows, query)); });
    };
    byAccount(QueryManualT0RealTimePoolUsageRequest, usages);
    byAccount(QueryManualT0SecurityPoolRequest, pools);
    byAccount(QueryManualT0ResourceRequest, resources);

    RecordList accounts;
    for (const ScriptedReference::Account &account : reference().accounts)
        accounts.append({{UserAccount::tradingAccount, account.tradingAccount},
                         {UserAccount::productAccount, account.productAccount}});
    RecordList users{{{UserAccount::userID, manager()}, {UserAccount::userName, manager()}}};
    for (int i = 0; i < Traders; ++i)
        users.append({{UserAccount::userID, trader(i)}, {UserAccount::userName, trader(i)}});
    const auto always = [this](const QString &type, const RecordList &rows) {
        m_channel->always(type, [rows](const MessageBody &) { return ScriptedChannel::success(rows); });
    };
    always(QueryManualT0ProductsRequest, RecordList{VariantRecord()} + accounts); // row one repeats the request
    always(QueryUserIdByUserRoleRequest, users);
    always(QueryManualT0TraderAccountPriorityRequest, accounts);
}

void DeskServer::startPushing(int usagePushesPerSecond)
{
    stopPushing();
    m_stops = false;
    m_thread = std::thread([this, usagePushesPerSecond] {
        using Clock = std::chrono::steady_clock;
        const auto began = Clock::now();
        for (qint64 count = 0; !m_stops; ++count) {
            std::this_thread::sleep_until(began + std::chrono::microseconds(count * 1000000 / usagePushesPerSecond));
            pushUsage();
            if (count % quotesPerUsage == 0)
                pushQuote();
        }
    });
}

void DeskServer::stopPushing()
{
    m_stops = true;
    if (m_thread.joinable())
        m_thread.join();
}

void DeskServer::pushUsage()
{
    const Record &record = m_records.at(int(m_random() % unsigned(m_records.size())));
    m_channel->push(ManualT0RealTimePoolUsagePush, usage(record));
    ++m_pushed;
}

void DeskServer::pushQuote()
{
    const int symbol = int(m_random() % Symbols);
    const double price = 10.0 + symbol + 0.01 * double(m_random() % 20);
    m_channel->push(Stand_MsgType::QuotePush, {{Orvane_Fields::Security::symbol, symbolText(symbol)},
                                               {Stand_Fields::Quote::lastPrice, price},
                                               {Stand_Fields::Quote::preClose, 10.0 + symbol}});
}
