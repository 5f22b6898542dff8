#include "FamilyWatch.h"

#include "EventBus.h"
#include "Format.h"
#include "HostNews.h"
#include "HostSession.h"
#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "PageShell.h"
#include "UsageBook.h"
#include "VantaKeys.h"

#include <algorithm>

namespace {

constexpr int lookEveryMs = 250;
constexpr int refreshWindowSeconds = 30; ///< as the library counts them

using State = FamilyStatus::State;

State stateOf(int type)
{
    switch (ManualT0Logic::GetInitStateByType(type)) {
    case MasterInitStateMgr::Initing:
        return State::Loading;
    case MasterInitStateMgr::Inited:
        return State::Ready;
    case MasterInitStateMgr::InitFailed:
        return State::Failed;
    case MasterInitStateMgr::NotInit:
        break;
    }
    return State::NotStarted;
}

int queriesOfLoad(int type)
{
    if (type == ManualT0Logic::Traders)
        return 2; // one a role
    if (type != ManualT0Logic::Resources && type != ManualT0Logic::SecurityPools)
        return 1;
    QStringList accounts = ManualT0Logic::GetAllT0TradingAccountList();
    accounts.removeDuplicates();
    return accounts.size();
}

/// What the requests of a load say about it.
struct LoadRequests {
    QDateTime firstSentAt; ///< invalid: there were none
    QDateTime lastSentAt;
    int all = 0;
    int unanswered = 0;
};

LoadRequests requestsAfter(const QDateTime &from, const QString &msgType)
{
    LoadRequests load;
    const QVector<FinishedRequest> requests = HostSession::current()->news().requests();
    for (const FinishedRequest &request : requests) {
        if (request.msgType != msgType || request.sentAt <= from)
            continue;
        load.firstSentAt = load.all == 0 ? request.sentAt : std::min(load.firstSentAt, request.sentAt);
        load.lastSentAt = load.all == 0 ? request.sentAt : std::max(load.lastSentAt, request.sentAt);
        ++load.all;
        load.unanswered += request.outcome == MessageChannel::Outcome::Answered ? 0 : 1;
    }
    return load;
}

/// One query an account, asked once more when it failed: a failure beyond those that were asked again has stayed.
State finishedState(State state, const LoadRequests &load, int queries, const FamilyStatus &status)
{
    const bool isByAccount = status.expected > 1;
    if (state == State::Ready && isByAccount && load.unanswered > std::max(0, queries - status.expected))
        return State::PartlyFailed;
    if (state == State::Failed && isByAccount && load.unanswered < load.all)
        return State::PartlyFailed;
    return state;
}

int rowsByProduct()
{
    int rows = 0;
    const QMap<QString, QStringList> products = ManualT0Logic::GetAllT0ProductAccount();
    for (const QStringList &properties : products)
        rows += properties.size();
    return rows;
}

} // namespace

FamilyWatch *FamilyWatch::ofWindow()
{
    PageShell *shell = PageShell::instance();
    auto *watch = shell->findChild<FamilyWatch *>(QString(), Qt::FindDirectChildrenOnly);
    return watch ? watch : new FamilyWatch(shell);
}

FamilyWatch::FamilyWatch(QObject *parent)
    : QObject(parent)
{
    EventBus::listen(Vanta_Keys::EventMsgName::ManualT0DataInited, this,
                     [this](const QVariant &type) { finish(type.toInt()); });
    connect(&HostSession::current()->news(), &HostNews::connectionChanged, this, &FamilyWatch::watchConnection);
    connect(&m_timer, &QTimer::timeout, this, &FamilyWatch::look);
    m_timer.start(lookEveryMs);
    for (int type = 0; type < familyCount; ++type)
        m_families[size_t(type)].before = m_families[size_t(type)].latest = markNow(type);
    watchConnection();
}

void FamilyWatch::watchConnection()
{
    const MessageChannel &channel = HostSession::current()->channel();
    const bool isConnected = channel.connection() == MessageChannel::Connection::Connected;
    m_staleSince = isConnected ? QDateTime() : channel.connectionSince();
    emit changed();
}

FamilyWatch::Mark FamilyWatch::markNow(int type)
{
    const LoadProgress progress = HostSession::current()->loadProgress(requestOf(type));
    return {QDateTime::currentDateTime(), progress.requests, progress.rows};
}

void FamilyWatch::look()
{
    for (int type = 0; type < familyCount; ++type)
        lookAt(type);
}

void FamilyWatch::lookAt(int type)
{
    Family &family = m_families[size_t(type)];
    FamilyStatus now = family.status;
    const State state = stateOf(type);
    const Mark mark = markNow(type);
    if (state != State::Loading)
        family.before = std::exchange(family.latest, mark);
    // Kept: what a finished load was found to be is more than the library's own state says.
    const bool isKept = now.state == State::PartlyFailed && (state == State::Ready || state == State::Failed);
    now.state = isKept ? now.state : state;
    now.expected = std::max(1, queriesOfLoad(type));
    now.done = std::clamp(mark.requests - family.before.requests, 0, now.expected);
    now.received = std::max<qint64>(0, mark.received - family.before.received);
    const bool isNews =
        now.state != family.status.state || now.done != family.status.done || now.received != family.status.received;
    family.status = now;
    if (isNews)
        emit changed();
}

void FamilyWatch::finish(int type)
{
    if (type < 0 || type >= familyCount)
        return;
    Family &family = m_families[size_t(type)];
    FamilyStatus &status = family.status;
    const LoadRequests load = requestsAfter(family.before.at, requestOf(type));
    Mark mark = markNow(type);
    const int queries = mark.requests - family.before.requests;
    status.finishedAt = QDateTime::currentDateTime();
    status.durationMs = load.all > 0 ? int(load.firstSentAt.msecsTo(status.finishedAt)) : -1;
    status.expected = std::max(1, queriesOfLoad(type));
    status.state = finishedState(stateOf(type), load, queries, status);
    // Loads may follow each other within a millisecond: what comes after the last request is the next one's.
    if (load.all > 0)
        mark.at = load.lastSentAt;
    family.before = family.latest = mark;
    emit changed();
    emit finished(type);
}

QString FamilyWatch::name(int type)
{
    switch (type) {
    case ManualT0Logic::Products:
        return tr("产品");
    case ManualT0Logic::Traders:
        return tr("交易员");
    case ManualT0Logic::Resources:
        return tr("资源");
    case ManualT0Logic::SecurityPools:
        return tr("券池");
    case ManualT0Logic::RealtimeUsage:
        return tr("用量");
    case ManualT0Logic::AccountPriority:
        return tr("优先级");
    default:
        return {};
    }
}

QString FamilyWatch::requestOf(int type)
{
    switch (type) {
    case ManualT0Logic::Products:
        return Master_MsgType::QueryManualT0ProductsRequest;
    case ManualT0Logic::Traders:
        return Master_MsgType::QueryUserIdByUserRoleRequest;
    case ManualT0Logic::Resources:
        return Master_MsgType::QueryManualT0ResourceRequest;
    case ManualT0Logic::SecurityPools:
        return Master_MsgType::QueryManualT0SecurityPoolRequest;
    case ManualT0Logic::RealtimeUsage:
        return Master_MsgType::QueryManualT0RealTimePoolUsageRequest;
    case ManualT0Logic::AccountPriority:
        return Master_MsgType::QueryManualT0TraderAccountPriorityRequest;
    default:
        return {};
    }
}

QString FamilyWatch::stateText(int type) const
{
    const FamilyStatus &family = status(type);
    if (isStale() && family.state != State::Loading)
        return tr("断线，可能过时");
    switch (family.state) {
    case State::NotStarted:
        return tr("未开始");
    case State::Loading:
        return family.expected > 1
                   ? tr("加载中 %1/%2").arg(QString::number(family.done), QString::number(family.expected))
                   : tr("加载中 %1 行").arg(Format::quantity(family.received));
    case State::Ready:
        return tr("就绪");
    case State::PartlyFailed:
        return tr("部分失败");
    case State::Failed:
        return tr("失败");
    }
    return {};
}

QString FamilyWatch::description(int type) const
{
    const QDateTime finishedAt = status(type).finishedAt;
    const QString format = QStringLiteral("HH:mm:ss");
    QStringList parts{tr("%1：%2").arg(name(type), stateText(type))};
    if (finishedAt.isValid())
        parts.append(tr("加载于 %1").arg(finishedAt.toString(format)));
    if (isStale())
        parts.append(tr("%1 断线").arg(m_staleSince.toLocalTime().toString(format)));
    return parts.join(QLatin1Char('\n'));
}

int FamilyWatch::rowsOf(int type)
{
    switch (type) {
    case ManualT0Logic::Products:
        return rowsByProduct();
    case ManualT0Logic::Traders:
        return ManualT0Logic::GetAllT0TraderId().size();
    case ManualT0Logic::Resources:
        return ManualT0Logic::GetAllResourceList().size();
    case ManualT0Logic::SecurityPools:
        return ManualT0Logic::GetAllSecurityPoolList().size();
    case ManualT0Logic::RealtimeUsage:
        return ManualT0Logic::GetRealtimePoolDetailList(UsageBook::accounts(), {}, {}, {}).size();
    case ManualT0Logic::AccountPriority:
        return ManualT0Logic::GetAllT0TradingAccountListByCurUser().size();
    default:
        return 0;
    }
}

void FamilyWatch::refresh(int type)
{
    ManualT0Logic::RefreshDataByType(type);
}

void FamilyWatch::refreshAll()
{
    if (secondsToRefresh() == 0)
        m_refreshedAt = QDateTime::currentDateTimeUtc();
    ManualT0Logic::RefreshData();
    emit changed();
}

int FamilyWatch::secondsToRefresh() const
{
    if (!m_refreshedAt.isValid())
        return 0;
    const qint64 seconds = m_refreshedAt.secsTo(QDateTime::currentDateTimeUtc());
    return seconds < 0 ? 0 : int(std::max<qint64>(0, refreshWindowSeconds - seconds));
}
