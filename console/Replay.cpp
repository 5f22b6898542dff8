#include "Replay.h"

#include "FamilyNotes.h"
#include "HostSession.h"
#include "Interrupt.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterInitStateMgr.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "Picture.h"
#include "PresenterQuery.h"
#include "PresenterTakeover.h"
#include "ReplayChannel.h"

using Kind = JournalRecord::Kind;

namespace {

constexpr int settleMs = 60000;

/// The rows behind the header of a change.
RecordList rowsOf(const JournalRecord &change)
{
    return bodyOf(change).rows.mid(1);
}

void alterProducts(const RecordList &rows)
{
    using namespace Orvane_Fields::UserAccount;
    QMap<QString, QStringList> wanted;
    for (const VariantRecord &row : rows) {
        QStringList &properties = wanted[row.value(productAccount).toString()];
        if (row.value(Master_Fields::System::alterType).toString() == Master_Values::AlterType::Add)
            properties.append(
                MasterBusinessDataInterface::GetAccountAssetPropByTradingAccount(row.value(tradingAccount).toString()));
    }
    QString errorText;
    ManualT0Logic::AlterT0ProductAccount(wanted, errorText);
}

} // namespace

Replay::Replay()
    : m_now(std::make_shared<FamilyNotes>())
    , m_then(std::make_shared<FamilyNotes>())
{}

Replay::~Replay() = default;

bool Replay::load(const QString &path, quint64 until, QString &errorText)
{
    return m_day.load(path, until, errorText);
}

std::unique_ptr<MessageChannel> Replay::connect()
{
    auto channel = std::make_unique<ReplayChannel>(m_day);
    m_channel = channel.get();
    return channel;
}

std::shared_ptr<JournalSink> Replay::journal() const
{
    return m_now;
}

QString Replay::run()
{
    prepare();
    const int count = m_day.records().size();
    for (int i = 0; i < count && m_halt.isEmpty() && !Interrupt::requested(); ++i)
        repeat(i);
    m_channel->pushUntil(count - 1);
    settle(m_day.records().constLast());
    return m_halt;
}

/// The first load would ask before anybody can prevent it: it finds that all is begun already.
void Replay::prepare()
{
    MasterInitStateMgr &states = MasterInitStateMgr::instance();
    for (int family = 0; family < Picture::familyCount; ++family)
        states.StartInit(Picture::keyOfFamily(family));
    ManualT0Logic::InitData();
    for (int family = 0; family < Picture::familyCount; ++family)
        states.Reset(Picture::keyOfFamily(family));
    PresenterTakeover::begin();
    m_now->clear();
}

void Replay::repeat(int record)
{
    const JournalRecord &recorded = m_day.records().at(record);
    m_then->append(recorded.kind, recorded.envelope);
    switch (recorded.kind) {
    case Kind::Push:
    case Kind::Connection:
        // A push stands behind the answers before it in the library's queues.
        if (m_answered.value(Master_MsgType::QueryManualT0RealTimePoolUsageRequest).isEmpty())
            m_channel->pushUntil(record);
        break;
    case Kind::FamilyReset:
    case Kind::FamilyStarted:
        repeatNote(record);
        break;
    case Kind::FamilyFinished:
    case Kind::FamilyAsked:
        for (const PresenterQuery &query : PresenterQuery::all())
            if (query.taken == recorded.kind && Picture::keyOfFamily(query.family) == recorded.envelope.type)
                repeatNextQuery(query.type);
        break;
    case Kind::Answer:
    case Kind::TimedOut:
    case Kind::NotSent:
        repeatRequest(m_day.requestOf(record), record);
        break;
    default:
        break;
    }
}

/// What the library has noted as often as the recorded one it has done by itself; else somebody had told it to.
void Replay::repeatNote(int record)
{
    const JournalRecord &note = m_day.records().at(record);
    const QString key = note.envelope.type;
    const int family = Picture::familyOfKey(key);
    const bool isStart = note.kind == Kind::FamilyStarted;
    if (family == ManualT0Logic::Products)
        m_isRefreshingAll = !isStart && beginsFullRefresh(record);
    if (family < 0 || m_now->count(note.kind, key) >= m_then->count(note.kind, key))
        return;
    if (isStart)
        ManualT0Logic::InitData(); // begins all that is not begun
    else if (m_isRefreshingAll)
        MasterInitStateMgr::instance().Reset(key); // the library itself refuses a second refresh within seconds
    else
        ManualT0Logic::RefreshDataByType(family);
    settle(note);
}

/// The products alone are reset directly before they are loaded. With everything else others are reset in between,
/// those that were known: of resources and pools that says nothing, the library resets them by itself.
bool Replay::beginsFullRefresh(int reset) const
{
    const QVector<JournalRecord> &records = m_day.records();
    for (int i = reset + 1; i < records.size(); ++i) {
        const int family = Picture::familyOfKey(records.at(i).envelope.type);
        if (records.at(i).kind == Kind::FamilyStarted && family == ManualT0Logic::Products)
            return false;
        if (records.at(i).kind == Kind::FamilyReset &&
            (family == ManualT0Logic::Traders || family == ManualT0Logic::RealtimeUsage ||
             family == ManualT0Logic::AccountPriority))
            return true;
    }
    return false;
}

void Replay::repeatRequest(int request, int end)
{
    const bool isFirstEnd = request != RecordedDay::nothing && m_day.endsOf(request).constFirst() == end;
    if (!isFirstEnd || m_channel->isRepeated(request))
        return;
    if (PresenterQuery::of(m_day.records().at(request).envelope.type))
        takeQuery(request, end);
    else
        repeatChange(request, end);
}

void Replay::takeQuery(int request, int end)
{
    const JournalRecord &asked = m_day.records().at(request);
    const JournalRecord &answer = m_day.records().at(end);
    if (!PresenterQuery::isWhole(asked, answer))
        return;
    if (PresenterQuery::of(asked.envelope.type)->isNoted(answer))
        m_answered[asked.envelope.type].append(request);
    else
        repeatQuery(request);
}

void Replay::repeatNextQuery(const QString &type)
{
    QVector<int> &answered = m_answered[type];
    if (!answered.isEmpty())
        repeatQuery(answered.takeFirst());
}

void Replay::repeatQuery(int request)
{
    const JournalRecord &asked = m_day.records().at(request);
    m_channel->expect(request);
    PresenterTakeover::call(PresenterQuery::of(asked.envelope.type)->slot, bodyOf(asked).rows.value(0));
    settle(asked);
    checkRepeated(request);
}

/// Only what changes the caller's picture directly; the rest comes with answers and pushes.
void Replay::repeatChange(int request, int end)
{
    const JournalRecord &asked = m_day.records().at(request);
    const bool isDeletion = asked.envelope.type == Master_MsgType::DeleteManualT0ResourceRequest;
    if (!isSuccess(m_day.records().at(end)) ||
        !(isDeletion || asked.envelope.type == Master_MsgType::AlterManualT0ProductsRequest))
        return;
    settle(asked);
    m_channel->expect(request);
    QString errorText;
    if (isDeletion)
        ManualT0Logic::DeleteT0Resource(rowsOf(asked), errorText);
    else
        alterProducts(rowsOf(asked));
    settle(asked);
    checkRepeated(request);
}

void Replay::checkRepeated(int request)
{
    const JournalRecord &asked = m_day.records().at(request);
    if (!m_channel->isRepeated(request))
        m_remarks.append(QStringLiteral("record %1: %2 could not be repeated, this library asks it otherwise")
                             .arg(QString::number(asked.sequence), asked.envelope.type));
}

void Replay::settle(const JournalRecord &record)
{
    if (m_halt.isEmpty() && !HostSession::current()->settle(settleMs))
        m_halt = QStringLiteral("record %1: the library did not come to rest within %2 ms")
                     .arg(QString::number(record.sequence), QString::number(settleMs));
}

/// The library has noted the same as the recorded one, as often: else it took another course.
QStringList Replay::otherCourse() const
{
    QStringList remarks;
    for (int family = 0; family < Picture::familyCount; ++family) {
        for (const Kind kind : {Kind::FamilyReset, Kind::FamilyStarted, Kind::FamilyFinished}) {
            const int then = m_then->count(kind, Picture::keyOfFamily(family));
            const int now = m_now->count(kind, Picture::keyOfFamily(family));
            if (then != now)
                remarks.append(QStringLiteral("%1 was %2 %3 times, here %4 times: this library took another course, or "
                                              "the journal stops within one")
                                   .arg(Picture::familyName(family),
                                        kind == Kind::FamilyReset     ? QStringLiteral("reset")
                                        : kind == Kind::FamilyStarted ? QStringLiteral("begun")
                                                                      : QStringLiteral("finished"),
                                        QString::number(then), QString::number(now)));
        }
    }
    return remarks;
}

QStringList Replay::remarks() const
{
    QStringList remarks = m_day.remarks() + m_remarks + otherCourse();
    QMap<QString, int> counts;
    const QStringList unanswered = m_channel->unanswered();
    for (const QString &type : unanswered)
        ++counts[type];
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        remarks.append(QStringLiteral("%1: asked %2 times more than the journal has answers, these timed out")
                           .arg(count.key(), QString::number(*count)));
    return remarks;
}
