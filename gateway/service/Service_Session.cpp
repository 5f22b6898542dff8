#include "Service.h"

#include "Answers.h"
#include "GatewayTexts.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"

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
    if (type != Stand_MsgType::QuotePush)
        return Answers::refused(GatewayTexts::unknownPush(type));
    request.session.quotes = true;
    return Answers::success();
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
