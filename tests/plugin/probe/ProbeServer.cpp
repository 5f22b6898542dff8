#include "ProbeServer.h"

#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtCore/QStringList>

using namespace Master_Fields::ManualT0;
namespace UserAccount = Orvane_Fields::UserAccount;
namespace Security = Orvane_Fields::Security;

namespace {

constexpr std::chrono::seconds Patience{10};
constexpr int PagesOfResources = 3;

const QStringList &accounts()
{
    static const QStringList names{QStringLiteral("A1"), QStringLiteral("A2"), QStringLiteral("A3")};
    return names;
}

VariantRecord position(const QString &account)
{
    return {{UserAccount::tradingAccount, account},
            {UserAccount::securityExchange, Orvane_Values::Exchange::sh},
            {Security::securityID, QStringLiteral("600001")}};
}

RecordList accountRows()
{
    RecordList rows;
    for (const QString &account : accounts())
        rows.append({{UserAccount::tradingAccount, account},
                     {UserAccount::productAccount, QStringLiteral("P1")},
                     {Stand_Fields::Account::assetProp, Stand_Values::AssetProp::Cash},
                     {Stand_Fields::Account::exchanges, QStringList(Orvane_Values::Exchange::sh)},
                     {Stand_Fields::Account::enabled, true}});
    return rows;
}

RecordList productRows()
{
    return RecordList{VariantRecord()} + accountRows(); // the first row repeats the request
}

RecordList instrumentRows()
{
    return {{{Security::securityID, QStringLiteral("600001")},
             {UserAccount::securityExchange, Orvane_Values::Exchange::sh},
             {Security::symbol, QStringLiteral("600001.SH")},
             {Stand_Fields::Security::dispFactor, 1}}};
}

VariantRecord usageRow(qint64 time)
{
    VariantRecord row = position(accounts().first());
    row.insert(T0TraderId, ProbeServer::user);
    row.insert(DailyBuyLimit, qint64(1000));
    row.insert(Master_Fields::System::ModifyTime, QStringLiteral("20240102%1").arg(time, 12, 10, QLatin1Char('0')));
    return row;
}

RecordList poolRows(const QString &account)
{
    VariantRecord row = position(account);
    row.insert(PoolDetailId, QString(QLatin1Char('D') + account));
    row.insert(ResourceId, QString(account + QLatin1String("R0")));
    row.insert(PoolType, 1);
    row.insert(PoolTotalQty, 100);
    row.insert(T0TraderId, ProbeServer::user);
    return {row};
}

/// Pages by position: "" is the first, then "1", "2".
MessageBody resourcePage(const QString &account, const QString &page)
{
    MessageBody body;
    VariantRecord row = position(account);
    row.insert(ResourceId, QString(account + QLatin1Char('R') + QString::number(page.toInt())));
    row.insert(ResourceQty, 1000);
    body.rows.append(row);
    const int next = page.toInt() + 1;
    body.values.insert(Stand_Fields::Paging::position, next < PagesOfResources ? QString::number(next) : QString());
    return body;
}

RecordList rowsFor(const QString &msgType, const QString &account)
{
    const VariantRecord manager{{UserAccount::userID, ProbeServer::user}, {UserAccount::userName, ProbeServer::user}};
    if (msgType == Stand_MsgType::LoginRequest || msgType == Master_MsgType::QueryUserIdByUserRoleRequest)
        return {manager};
    if (msgType == Stand_MsgType::QueryAccountsRequest ||
        msgType == Master_MsgType::QueryManualT0TraderAccountPriorityRequest)
        return accountRows();
    if (msgType == Stand_MsgType::QueryInstrumentsRequest)
        return instrumentRows();
    if (msgType == Master_MsgType::QueryManualT0ProductsRequest)
        return productRows();
    if (msgType == Master_MsgType::QueryManualT0SecurityPoolRequest)
        return poolRows(account);
    if (msgType == Master_MsgType::QueryManualT0RealTimePoolUsageRequest)
        return {usageRow(0)};
    return {};
}

} // namespace

const QString ProbeServer::user = QStringLiteral("m1");

ProbeServer::ProbeServer()
    : m_thread(&ProbeServer::answerAll, this)
{
    setConnection(Connection::Connected);
}

ProbeServer::~ProbeServer()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
    close();
}

void ProbeServer::refuse(const QString &msgType)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_refused.insert(msgType);
}

void ProbeServer::hold(const QString &msgType)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_held.insert(msgType);
}

int ProbeServer::requests(const QString &msgType) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto count = m_arrived.find(msgType);
    return count == m_arrived.end() ? 0 : count->second;
}

int ProbeServer::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_arrivedTotal;
}

bool ProbeServer::waitForRequests(const QString &msgType, int count)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, Patience, [&] { return m_arrived[msgType] >= count; });
}

bool ProbeServer::waitForRequests(int count)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, Patience, [&] { return m_arrivedTotal >= count; });
}

void ProbeServer::push()
{
    const std::lock_guard<std::mutex> delivery(m_deliveryMutex);
    MessageBody body;
    body.rows.append(usageRow(++m_pushes));
    received(Envelope::push(Master_MsgType::ManualT0RealTimePoolUsagePush, body).encode());
}

bool ProbeServer::transmit(const QByteArray &bytes)
{
    Envelope envelope;
    QString errorText;
    if (!Envelope::decode(bytes, envelope, errorText))
        qFatal("the host sent no envelope: %s", qPrintable(errorText));
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_arrived[envelope.type];
        ++m_arrivedTotal;
        m_queue.push_back(envelope);
    }
    m_changed.notify_all();
    return true;
}

void ProbeServer::answerAll()
{
    Envelope request;
    while (nextToAnswer(request)) {
        const QByteArray answer = request.answer(answerTo(request)).encode();
        const std::lock_guard<std::mutex> delivery(m_deliveryMutex);
        received(answer);
    }
}

bool ProbeServer::nextToAnswer(Envelope &request)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock,
                   [this] { return m_stopping || (!m_queue.empty() && m_held.count(m_queue.front().type) == 0); });
    if (m_stopping)
        return false;
    request = m_queue.front();
    m_queue.pop_front();
    return true;
}

MessageBody ProbeServer::answerTo(const Envelope &request) const
{
    MessageBody query;
    QString errorText;
    if (!MessageBody::decode(request.body, query, errorText))
        qFatal("the host sent no body: %s", qPrintable(errorText));
    const QString account = query.rows.value(0).value(UserAccount::tradingAccount).toString();
    MessageBody answer;
    if (request.type == Master_MsgType::QueryManualT0ResourceRequest)
        answer = resourcePage(account, query.values.value(Stand_Fields::Paging::position).toString());
    else
        answer.rows = rowsFor(request.type, account);

    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool refused = m_refused.count(request.type) > 0;
    answer.values.insert(Orvane_Fields::System::requestExeStatus,
                         refused ? Orvane_Values::RequestExeStatus::fail : Orvane_Values::RequestExeStatus::success);
    if (refused)
        answer.values.insert(Orvane_Fields::System::textDescription, QStringLiteral("refused by the test"));
    return answer;
}
