#include "MasterUtils.h"

#include "CBusinessDataBase.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "core/EventBusState.h"
#include "message/AnswerStatus.h"
#include "message/Ask.h"
#include "message/RequestTexts.h"
#include "message/Server.h"

namespace {

/// Counts one query of a type from its beginning to its end.
class ProgressScope
{
public:
    explicit ProgressScope(const QString &msgType)
        : m_msgType(msgType)
    {
        Server::queryBegins(msgType);
    }
    ~ProgressScope() { Server::queryEnds(m_msgType); }
    ProgressScope(const ProgressScope &) = delete;
    ProgressScope &operator=(const ProgressScope &) = delete;

private:
    const QString m_msgType;
};

QString textOfFailedOutcome(const MessageChannel::Reply &reply)
{
    if (reply.outcome == MessageChannel::Outcome::TimedOut)
        return RequestTexts::timedOut();
    const bool cancelled = reply.errorText == RequestTexts::cancelled();
    return cancelled ? reply.errorText : RequestTexts::notSent();
}

/// One request and its answer; the error text is empty on success.
QString exchange(ZrPresenterClass *presenter, const QString &msgType, const MessageBody &body, MessageBody &answer)
{
    const MessageChannel::Reply reply = ask(presenter, msgType, body).reply;
    if (reply.outcome != MessageChannel::Outcome::Answered)
        return textOfFailedOutcome(reply);
    QString unreadable;
    if (!MessageBody::decode(reply.envelope.body, answer, unreadable))
        return RequestTexts::unreadableAnswer(unreadable);
    Server::rowsReceived(msgType, answer.rows.size());
    QString errorText;
    statusOfAnswer(answer, errorText);
    return errorText;
}

} // namespace

RecordList MasterUtils::QueryDatasFromServer(ZrPresenterClass *presenter, const QString &msgType,
                                             const QVariantMap &query, QueryDataMode, QString &errorText)
{
    const ProgressScope progress(msgType);
    MessageBody answer;
    const QString failure = exchange(presenter, msgType, {{}, {query}}, answer);
    if (!failure.isEmpty())
        errorText = failure;
    return answer.rows;
}

RecordList MasterUtils::QueryDatasFromServerByPos(ZrPresenterClass *presenter, const QString &msgType,
                                                  const QVariantMap &query, QString &errorText, int pageSize,
                                                  const QString &position, int)
{
    const ProgressScope progress(msgType);
    RecordList rows;
    QString next = position;
    do {
        MessageBody request{{{Stand_Fields::Paging::pageSize, pageSize}, {Stand_Fields::Paging::position, next}},
                            {query}};
        MessageBody answer;
        QString failure = exchange(presenter, msgType, request, answer);
        const QString following = answer.values.value(Stand_Fields::Paging::position).toString();
        if (failure.isEmpty() && !following.isEmpty() && following == next)
            failure = RequestTexts::endlessPaging();
        if (!failure.isEmpty()) {
            errorText = failure;
            return rows;
        }
        rows += answer.rows;
        next = following;
    } while (!next.isEmpty());
    return rows;
}

RecordList MasterUtils::QueryDatasFromServerByPage(ZrPresenterClass *presenter, const QString &msgType,
                                                   const QVariantMap &query, QString &errorText, int pageSize,
                                                   int firstPage, int maxPages, int)
{
    const ProgressScope progress(msgType);
    RecordList rows;
    for (int page = firstPage; maxPages <= 0 || page < firstPage + maxPages; ++page) {
        MessageBody request{{{Stand_Fields::Paging::pageSize, pageSize}, {Stand_Fields::Paging::pageIndex, page}},
                            {query}};
        MessageBody answer;
        QString failure = exchange(presenter, msgType, request, answer);
        const bool more = answer.values.value(Stand_Fields::Paging::hasMore).toBool();
        if (failure.isEmpty() && more && answer.rows.isEmpty())
            failure = RequestTexts::endlessPaging();
        if (!failure.isEmpty()) {
            errorText = failure;
            return rows;
        }
        rows += answer.rows;
        if (!more)
            break;
    }
    return rows;
}

QString MasterUtils::SendRequestListToServer(ZrPresenterClass *presenter, const QString &msgType,
                                             const RecordList &request, int, QString &errorText, RecordList &answer,
                                             bool, bool)
{
    const Asked asked = ask(presenter, msgType, {{}, request});
    const bool answered = asked.reply.outcome == MessageChannel::Outcome::Answered;
    MessageBody body;
    QString unreadable;
    if (answered && MessageBody::decode(asked.reply.envelope.body, body, unreadable)) {
        answer = body.rows;
        return statusOfAnswer(body, errorText);
    }
    if (!asked.sent) {
        errorText = textOfFailedOutcome(asked.reply);
        return Orvane_Values::RequestExeStatus::fail;
    }
    // Whatever ended the wait: what has left this process may have been carried out.
    errorText = answered             ? RequestTexts::unreadableAnswer(unreadable)
                : asked.reply.wasCut ? RequestTexts::connectionLost()
                                     : RequestTexts::timedOut();
    return Master_Values::RequestExeStatus::timeout;
}

void MasterUtils::SendEventMsg(ZrPresenterClass *, const QString &eventName, const QVariant &payload)
{
    EventBusState::send(eventName, payload);
}

QString MasterUtils::GetMasterOrderStation(const QString &businessName)
{
    return businessName + QLatin1Char('@') + CBusinessDataBase::GetLoginAccount();
}

QList<qint64> MasterUtils::SplitBigNumIntoSmallNumList(qint64 total, qint64 part)
{
    QList<qint64> parts;
    for (qint64 rest = total; rest > 0; rest -= parts.last())
        parts.append(part > 0 ? qMin(part, rest) : rest);
    return parts;
}
