#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <limits>

namespace {

/// Subscribed without a filter: everybody gets what he may see.
QStringList livePushes()
{
    using namespace Stand_MsgType;
    return {OrderPush, FillPush, PositionPush, QuotePush, MarketPush, SafetyRulesPush};
}

} // namespace

MessageBody Service::login(const Request &request)
{
    const QString id = request.text(Orvane_Fields::UserAccount::userID);
    const User *user = m_books.user(id);
    if (!user)
        return Answers::refused(GatewayTexts::unknownUser(id));
    if (request.session.user && request.session.user != user)
        return Answers::refused(GatewayTexts::loggedInAlready(request.user().userID));
    request.session.user = user;
    request.session.reconnected = request.values.value(Stand_Fields::Session::reconnected).toBool();
    return Answers::success({{{Orvane_Fields::UserAccount::userID, user->userID},
                              {Orvane_Fields::UserAccount::userName, user->userName},
                              {Orvane_Fields::UserAccount::organCode, user->organCode},
                              {Stand_Fields::User::roles, user->roles}}});
}

MessageBody Service::subscribe(const Request &request)
{
    const QString type = request.values.value(Stand_Fields::Subscription::pushType).toString();
    if (type == Master_MsgType::ManualT0RealTimePoolUsagePush)
        return subscribeUsage(request);
    if (!livePushes().contains(type))
        return Answers::refused(GatewayTexts::unknownPush(type));
    if (type == Stand_MsgType::QuotePush && !isWanted(type))
        rememberQuotes();
    request.session.subscribed.insert(type);
    if (request.session.reconnected)
        pushMissed(request, type);
    return Answers::success();
}

void Service::pushMissed(const Request &request, const QString &type)
{
    constexpr int all = std::numeric_limits<int>::max();
    const ClientSession *only = &request.session;
    const QString user = request.seenUser();
    if (type == Stand_MsgType::OrderPush)
        for (const StoredOrder &order : m_store->ordersOfDay(user, QString(), all))
            pushOrder(order, only);
    if (type == Stand_MsgType::FillPush)
        for (const StoredFill &fill : m_store->fillsOfDay(user, QString(), all))
            pushFill(fill, only);
    if (type == Stand_MsgType::PositionPush)
        for (const StoredPosition &position : m_store->positions(QString(), all))
            if (mayTrade(request.user(), position.holding.account))
                pushPosition(position, only);
    if (type == Stand_MsgType::QuotePush)
        for (const QString &symbol : qAsConst(m_symbols))
            push(type, quoteRow(symbol), QString(), only);
    if (type == Stand_MsgType::MarketPush)
        push(type, marketRow(), QString(), only);
    if (type == Stand_MsgType::SafetyRulesPush)
        for (const QString &trader : tradersSeen(request))
            push(type, safetyRow(trader), trader, only);
}

MessageBody Service::subscribeUsage(const Request &request)
{
    const QString trader = request.text(Orvane_Fields::UserAccount::userID);
    if (!m_books.user(trader))
        return Answers::refused(GatewayTexts::unknownUser(trader));
    if (trader != request.user().userID && !request.user().isManager())
        return Answers::refused(GatewayTexts::notAllowed(trader));
    request.session.usageOf.insert(trader);
    if (request.session.reconnected)
        pushSnapshot(request, trader);
    return Answers::success();
}

MessageBody Service::echo(const Request &request)
{
    return Answers::success({request.row});
}
