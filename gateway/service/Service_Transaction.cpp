#include "Service.h"

#include "Answers.h"
#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "OrvaneFields.h"

#include <algorithm>
#include <limits>

namespace {

/// For how long after the end of its validity a request can be repeated.
constexpr qint64 answersKeptMs = 30ll * 24 * 60 * 60 * 1000; // longer than any client is away

/// Whether a request has taken place, so that its answer holds for repetitions. A late one has not: it is late
/// again. One without an id cannot be repeated.
bool hasTakenPlace(const QString &refusal)
{
    return refusal != GatewayTexts::expired() && refusal != GatewayTexts::noRequestId();
}

} // namespace

MessageBody Service::changeOnce(ClientSession &session, const Envelope &envelope, const Route &route)
{
    // Before its validity is looked at: what has happened is told, however late it is asked.
    const QByteArray told = m_store->answerTo(session.user->userID, envelope.id);
    MessageBody answer;
    QString reason;
    if (told.isEmpty())
        return firstAnswer(session, envelope, route);
    return MessageBody::decode(told, answer, reason) ? answer : Answers::refused(GatewayTexts::unreadable(reason));
}

MessageBody Service::firstAnswer(ClientSession &session, const Envelope &envelope, const Route &route)
{
    const QString user = session.user->userID;
    const Memory before = m_memory;
    m_changes.clear();
    if (!m_store->begin())
        return {};
    const MessageBody answer =
        envelope.id.isEmpty() ? Answers::refused(GatewayTexts::noRequestId()) : execute(session, envelope, route);
    const bool accepted = Answers::refusalOf(answer).isEmpty() && m_store->errorText().isEmpty();
    if (accepted && refreshTouched() && saveMarket() && record(user, envelope, answer) && m_store->commit())
        return answer;

    undo(before);
    // A refusal is kept, too, but nothing of what it refused.
    m_changes.clear();
    if (m_store->errorText().isEmpty() && m_store->begin() && !(record(user, envelope, answer) && m_store->commit()))
        m_store->rollback();
    return answer;
}

void Service::undo(const Memory &before)
{
    m_memory = before;
    m_pushes.clear();
    m_store->rollback();
}

QString Service::refusalOfChange(const Request &request, Kind kind) const
{
    if (kind != Kind::Change)
        return QString();
    if (!request.user().isManager())
        return GatewayTexts::notManager(request.user().userID);
    const QVariant said = request.row.value(Orvane_Fields::System::subGroupNumber);
    qint64 rows = 0;
    const bool good = !said.isValid() || (readWholeNumber(said, rows) && rows == request.rows.size());
    return good ? QString() : GatewayTexts::badRowCount(request.rows.size());
}

bool Service::refreshTouched()
{
    UsageParts parts;
    for (const QString &account : m_changes.accounts()) {
        parts.records += m_store->usageOfAccount(account);
        parts.pools += m_store->pools(account, QString(), std::numeric_limits<int>::max());
        parts.orders += m_store->liveOrdersOfAccount(account);
    }
    QVector<Holding> holdings(m_changes.holdings().cbegin(), m_changes.holdings().cend());
    std::sort(holdings.begin(), holdings.end()); // the order of the times of change
    for (const Holding &holding : qAsConst(holdings))
        if (!m_changes.accounts().contains(holding.account)) // else with its account
            saveGroup(groupOf(holding));
    return refreshUsage(parts);
}

bool Service::record(const QString &user, const Envelope &envelope, const MessageBody &answer)
{
    const QString refusal = Answers::refusalOf(answer);
    const qint64 now = m_clock();
    QVector<AuditEntry> entries = m_changes.audit();
    if (!refusal.isEmpty())
        entries = {AuditEntry()};
    for (AuditEntry &entry : entries) {
        entry.realMs = now;
        entry.marketMs = m_store->marketMs();
        entry.user = user;
        entry.type = envelope.type;
        entry.request = envelope.id;
        if (!refusal.isEmpty())
            entry.refusal = refusal;
        if (!m_store->addAudit(entry))
            return false;
    }
    return m_store->forgetAnswers(now - answersKeptMs) &&
           (!hasTakenPlace(refusal) || m_store->saveAnswer(user, envelope.id, envelope.validUntil, answer.encode()));
}
