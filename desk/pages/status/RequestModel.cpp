#include "RequestModel.h"

#include "HostSession.h"
#include "OrvaneFields.h"
#include "StandMsgType.h"
#include "StatusFields.h"

#include <algorithm>

namespace {

constexpr int kept = 500;

QString keyOf(const VariantRecord &row)
{
    return row.value(StatusFields::key()).toString();
}

Columns shownColumns()
{
    using namespace StatusFields;
    return {{QStringLiteral("time"), RequestModel::tr("发出时间"), CellKind::Time, time(), {}, false, 11},
            {QStringLiteral("type"),
             RequestModel::tr("请求"),
             CellKind::Text,
             Orvane_Fields::System::msgType,
             {},
             false,
             44},
            {QStringLiteral("duration"), RequestModel::tr("耗时(毫秒)"), CellKind::Quantity, duration(), {}, false, 12},
            {QStringLiteral("outcome"), RequestModel::tr("结果"), CellKind::Text, state(), {}, false, 10}};
}

QString outcomeText(MessageChannel::Outcome outcome)
{
    switch (outcome) {
    case MessageChannel::Outcome::Answered:
        return RequestModel::tr("已应答");
    case MessageChannel::Outcome::TimedOut:
        return RequestModel::tr("超时");
    case MessageChannel::Outcome::NotSent:
        return RequestModel::tr("未发出");
    }
    return {};
}

bool isSame(const FinishedRequest &a, const FinishedRequest &b)
{
    return a.sentAt == b.sentAt && a.msgType == b.msgType && a.durationMs == b.durationMs && a.outcome == b.outcome;
}

/// How many of the last of one list are the first of another.
int overlap(const QVector<FinishedRequest> &list, const QVector<FinishedRequest> &next)
{
    for (int count = std::min(list.size(), next.size()); count > 0; --count) {
        if (std::equal(next.cbegin(), next.cbegin() + count, list.cend() - count, isSame))
            return count;
    }
    return 0;
}

} // namespace

RequestModel::RequestModel(QObject *parent)
    : RecordModel(shownColumns(), keyOf, parent)
{
    const HostNews &news = HostSession::current()->news();
    m_first = news.requests();
    add(m_first);
    // What had ended but was not told yet is told now.
    connect(&news, &HostNews::requestsFinished, this, [this](const QVector<FinishedRequest> &requests) {
        const QVector<FinishedRequest> known = std::exchange(m_first, {});
        add(requests.mid(overlap(known, requests)));
    });
}

void RequestModel::add(const QVector<FinishedRequest> &requests)
{
    RecordList rows;
    QStringList leaving;
    for (const FinishedRequest &request : requests) {
        rows.append({{StatusFields::key(), m_next},
                     {StatusFields::time(), request.sentAt.toString(StatusFields::timeFormat())},
                     {Orvane_Fields::System::msgType, request.msgType},
                     {StatusFields::duration(), request.durationMs},
                     {StatusFields::state(), outcomeText(request.outcome)}});
        if (m_next >= kept)
            leaving.append(QString::number(m_next - kept));
        ++m_next;
    }
    remove(leaving);
    put(rows);
}

bool RequestModel::isHeartbeat(const VariantRecord &row)
{
    return row.value(Orvane_Fields::System::msgType).toString() == Stand_MsgType::EchoRequest;
}
