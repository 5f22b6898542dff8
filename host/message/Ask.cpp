#include "message/Ask.h"

#include "message/PresenterLine.h"
#include "message/RequestTexts.h"
#include "message/Server.h"

Asked ask(ZrPresenterClass *presenter, const QString &msgType, const MessageBody &body)
{
    Asked asked;
    const std::shared_ptr<PresenterLine> line = presenter ? PresenterLines::of(presenter) : nullptr;
    const auto wait = std::make_shared<QueryWait>();
    if (presenter && (!line || !line->enter(wait))) {
        asked.reply.errorText = RequestTexts::cancelled();
        return asked;
    }
    const Server::Lease server;
    if (server) {
        asked.request = Envelope::request(msgType, server->user, server->timeoutMs, body);
        asked.sent = server->channel->send(asked.request, server->timeoutMs,
                                           [wait](const MessageChannel::Reply &reply) { wait->end(reply); });
    }
    if (!asked.sent)
        wait->end(asked.reply);
    asked.reply = wait->wait();
    if (line)
        line->leave(wait);
    return asked;
}
