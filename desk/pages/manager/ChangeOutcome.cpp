#include "ChangeOutcome.h"

#include "HostNews.h"
#include "HostSession.h"
#include "MasterValues.h"
#include "OrvaneValues.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

namespace {

QString text(const char *sourceText)
{
    return QCoreApplication::translate("ChangeOutcome", sourceText);
}

bool anyTimedOut(const QString &msgType, const QDateTime &since)
{
    const HostSession *session = HostSession::current();
    if (!session)
        return false;
    const QVector<FinishedRequest> requests = HostSession::current()->news().requests();
    return std::any_of(requests.cbegin(), requests.cend(), [&](const FinishedRequest &request) {
        return request.msgType == msgType && request.sentAt >= since &&
               request.outcome == MessageChannel::Outcome::TimedOut;
    });
}

} // namespace

bool ChangeOutcome::isGood() const
{
    return code == Orvane_Values::RequestExeStatus::success;
}

QString ChangeOutcome::inWords() const
{
    if (isGood())
        return ::text(QT_TRANSLATE_NOOP("ChangeOutcome", "成功"));
    if (isUnknown)
        return ::text(QT_TRANSLATE_NOOP("ChangeOutcome", "结果未知"));
    return text.isEmpty() ? ::text(QT_TRANSLATE_NOOP("ChangeOutcome", "失败")) : text;
}

ChangeOutcome ChangeOutcome::of(const QString &msgType, const std::function<QString(QString &errorText)> &change)
{
    const QDateTime begun = QDateTime::currentDateTime();
    ChangeOutcome outcome;
    outcome.code = change(outcome.text);
    outcome.isUnknown =
        outcome.code == Master_Values::RequestExeStatus::timeout || (!outcome.isGood() && anyTimedOut(msgType, begun));
    return outcome;
}
