#include "HostSession.h"

#include "EventBus.h"
#include "HostNews.h"
#include "MasterInitStateMgr.h"
#include "MasterUtils.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "business/LiveStore.h"
#include "business/NewsDesk.h"
#include "business/OrderStore.h"
#include "business/PictureStep.h"
#include "business/ReferenceStore.h"
#include "core/Activity.h"
#include "core/EventBusState.h"
#include "core/LivingObjects.h"
#include "core/SettingsStore.h"
#include "message/AnswerStatus.h"
#include "message/JournalChannel.h"
#include "message/PresenterLine.h"
#include "message/RequestTexts.h"
#include "message/Server.h"
#include "message/SessionJournal.h"
#include "message/WatchedChannel.h"
#include "trade/RequestFates.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QThread>

#include <atomic>

namespace {

constexpr int pageSize = 1000;
constexpr int quietPasses = 2; ///< in a row, before nothing more is expected to come

std::atomic<HostSession *> &currentSession()
{
    static std::atomic<HostSession *> session{nullptr};
    return session;
}

/// What moves while the session is open: each is subscribed, then queried, so that no change falls in between.
struct LiveFamily {
    const QString &pushType;
    const QString &queryType;
    const VariantRecord query;
    void (*answered)(const RecordList &rows);
    void (*pushed)(const RecordList &rows);
};

void answeredOrders(const RecordList &rows)
{
    OrderStore::enterOrders(rows);
}

void pushedOrders(const RecordList &rows)
{
    NewsDesk::orders(OrderStore::enterOrders(rows));
}

void answeredFills(const RecordList &rows)
{
    OrderStore::enterFills(rows);
}

void pushedFills(const RecordList &rows)
{
    NewsDesk::fills(OrderStore::enterFills(rows));
}

const QVector<LiveFamily> &liveFamilies()
{
    using namespace Stand_MsgType;
    // never deleted: a push may come while the process ends
    static const auto *families = new QVector<LiveFamily>{
        {QuotePush, QueryQuotesRequest, {}, LiveStore::answeredQuotes, LiveStore::pushedQuotes},
        {OrderPush, QueryOrdersRequest, {}, answeredOrders, pushedOrders},
        {FillPush, QueryFillsRequest, {}, answeredFills, pushedFills},
        {PositionPush, QueryPositionsRequest, {}, LiveStore::answeredPositions, LiveStore::pushedPositions},
        {MarketPush,
         ExchangeControlRequest,
         {{Stand_Fields::Market::command, Stand_Values::MarketCommand::status}},
         LiveStore::answeredMarket,
         LiveStore::pushedMarket}};
    return *families;
}

void onPush(const Envelope &envelope)
{
    const auto take = [&envelope](const QString &pushType, void (*pushed)(const RecordList &rows)) {
        MessageBody body;
        QString errorText;
        if (pushType == envelope.type && MessageBody::decode(envelope.body, body, errorText))
            pushed(body.rows);
    };
    for (const LiveFamily &family : liveFamilies())
        take(family.pushType, family.pushed);
    take(Stand_MsgType::SafetyRulesPush, NewsDesk::safetyRules); // subscribed by who shows them
    PresenterLines::push(envelope);
}

/// The channel with its journal in front, which begins.
std::unique_ptr<MessageChannel> takenDown(HostConfig &config)
{
    Envelope opened;
    opened.sender = config.user;
    config.journal->append(JournalRecord::Kind::Opened, opened);
    return std::make_unique<JournalChannel>(std::move(config.channel), config.journal);
}

void clearStores()
{
    ReferenceStore::clear();
    LiveStore::clear();
    OrderStore::clear();
}

/// Logs in and loads the reference data; the text of the first failure, empty when all is there.
class Loader
{
public:
    QString load(MessageChannel &channel, const QString &user, int timeoutMs)
    {
        ReferenceData data;
        data.setLogin(login(user));
        data.setAccounts(query(Stand_MsgType::QueryAccountsRequest));
        data.setInstruments(query(Stand_MsgType::QueryInstrumentsRequest));
        data.setMarginSecurities(query(Stand_MsgType::QueryMarginSecuritiesRequest));
        if (m_errorText.isEmpty())
            ReferenceStore::set(data);
        for (const LiveFamily &family : liveFamilies()) {
            subscribe(channel, family.pushType, timeoutMs);
            family.answered(query(family.queryType, family.query));
        }
        return m_errorText;
    }

private:
    void fail(const QString &what, const QString &why) { m_errorText = QStringLiteral("%1：%2").arg(what, why); }

    VariantRecord login(const QString &user)
    {
        QString errorText;
        const RecordList rows = MasterUtils::QueryDatasFromServer(
            nullptr, Stand_MsgType::LoginRequest, {{Orvane_Fields::UserAccount::userID, user}}, Mode0, errorText);
        if (errorText.isEmpty() && rows.value(0).value(Orvane_Fields::UserAccount::userID).toString() != user)
            errorText = QStringLiteral("服务器登录应答的用户不符");
        if (!errorText.isEmpty())
            fail(Stand_MsgType::LoginRequest, errorText);
        return rows.value(0);
    }

    void subscribe(MessageChannel &channel, const QString &pushType, int timeoutMs)
    {
        if (m_errorText.isEmpty() && !channel.subscribe(pushType, {}, {}, timeoutMs))
            fail(pushType, QStringLiteral("订阅失败"));
    }

    RecordList query(const QString &msgType, const VariantRecord &row = {})
    {
        if (!m_errorText.isEmpty())
            return {};
        QString errorText;
        RecordList rows = MasterUtils::QueryDatasFromServerByPos(nullptr, msgType, row, errorText, pageSize, {}, 0);
        if (!errorText.isEmpty())
            fail(msgType, errorText);
        return rows;
    }

    QString m_errorText;
};

} // namespace

class HostSession::Private
{
public:
    std::unique_ptr<WatchedChannel> channel;
    std::unique_ptr<HostNews> news;
    QString user;
    int timeoutMs = 0;

    bool echo(int timeoutMs);
};

/// Everything that the gateway had to send before has arrived when the echo does. A channel that cannot
/// answer it has nothing in order to wait for. Not counted, else settling would never be quiet.
bool HostSession::Private::echo(int timeoutMs)
{
    MessageChannel &quiet = channel->inner();
    if (quiet.connection() != MessageChannel::Connection::Connected)
        return true;
    const auto reply = quiet.request(Envelope::request(Stand_MsgType::EchoRequest, user, timeoutMs, {}), timeoutMs);
    return reply.outcome != MessageChannel::Outcome::TimedOut;
}

HostSession::HostSession(std::unique_ptr<Private> d)
    : d(std::move(d))
{}

std::unique_ptr<HostSession> HostSession::open(HostConfig config, QString &errorText)
{
    if (current() || !config.channel) {
        errorText = current() ? QStringLiteral("已有打开的会话") : QStringLiteral("没有通道");
        return nullptr;
    }
    auto d = std::make_unique<Private>();
    if (config.journal)
        config.channel = takenDown(config);
    d->channel = std::make_unique<WatchedChannel>(std::move(config.channel));
    d->user = config.user;
    d->timeoutMs = config.requestTimeoutMs;
    std::unique_ptr<HostSession> session(new HostSession(std::move(d)));

    MasterInitStateMgr::instance().clear();
    clearStores();
    SessionJournal::open(config.journal);
    SettingsStore::open(config.settingsDir);
    MessageChannel &channel = session->channel();
    session->d->news = NewsDesk::open(channel);
    Server::open({&channel, config.user, config.requestTimeoutMs});
    PictureStep::begin();
    channel.setPushHandler(onPush);
    if (!config.user.isEmpty()) {
        const QString failure = Loader().load(channel, config.user, config.requestTimeoutMs);
        if (!failure.isEmpty()) {
            errorText = failure;
            return nullptr;
        }
    }
    currentSession() = session.get();
    return session;
}

HostSession::~HostSession()
{
    HostSession *self = this;
    currentSession().compare_exchange_strong(self, nullptr);
    Server::close();
    RequestFates::clear();
    d->channel->setPushHandler({});
    d->news.reset();
    d->channel.reset();
    EventBusState::clear();
    MasterInitStateMgr::instance().clear();
    SessionJournal::close();
    SettingsStore::close();
    PictureStep::clear();
    clearStores();
}

HostSession *HostSession::current()
{
    return currentSession();
}

MessageChannel &HostSession::channel()
{
    return *d->channel;
}

HostNews &HostSession::news()
{
    return *d->news;
}

QString HostSession::request(const QString &msgType, const VariantRecord &values, const RecordList &rows,
                             QString &errorText, VariantRecord &answerValues, RecordList &answerRows)
{
    const Envelope envelope = Envelope::request(msgType, d->user, d->timeoutMs, {values, rows});
    const MessageChannel::Reply reply = d->channel->request(envelope, d->timeoutMs);
    if (reply.outcome == MessageChannel::Outcome::TimedOut) {
        errorText = RequestTexts::timedOut();
        return Master_Values::RequestExeStatus::timeout;
    }
    MessageBody answer;
    QString unreadable;
    if (reply.outcome == MessageChannel::Outcome::NotSent)
        errorText = RequestTexts::notSent();
    else if (!MessageBody::decode(reply.envelope.body, answer, unreadable))
        errorText = RequestTexts::unreadableAnswer(unreadable);
    else {
        answerValues = answer.values;
        answerRows = answer.rows;
        return statusOfAnswer(answer, errorText);
    }
    return Orvane_Values::RequestExeStatus::fail;
}

LoadProgress HostSession::loadProgress(const QString &msgType) const
{
    return Server::progress(msgType);
}

PictureState HostSession::picture() const
{
    return PictureStep::state();
}

VariantRecord HostSession::marketState() const
{
    return LiveStore::market();
}

QStringList HostSession::takeBusinessMessages()
{
    return ReferenceStore::takeBusinessMessages();
}

bool HostSession::settle(int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    for (int quiet = 0; quiet < quietPasses;) {
        const quint64 before = Activity::count();
        const int left = int(deadline.remainingTime());
        if (left <= 0 || !d->echo(left) || !LivingObjects::passThroughAll(int(deadline.remainingTime())))
            return false;
        QCoreApplication::processEvents();
        d->news->deliver();
        const bool unchanged = Activity::underWay() == 0 && Activity::count() == before;
        quiet = unchanged ? quiet + 1 : 0;
        if (!unchanged)
            QThread::yieldCurrentThread();
    }
    return true;
}
