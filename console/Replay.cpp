#include "Replay.h"

#include "HostSession.h"
#include "Interrupt.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterInitStateMgr.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "Picture.h"
#include "PresenterCalls.h"
#include "ReplayChannel.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

using Kind = JournalRecord::Kind;

/// How often each family was reset and begun.
class FamilyNotes : public JournalSink
{
public:
    void append(Kind kind, const Envelope &envelope) override
    {
        QMutexLocker lock(&m_mutex);
        ++m_counts[{int(kind), envelope.type}];
    }

    int count(Kind kind, const QString &key) const
    {
        QMutexLocker lock(&m_mutex);
        return m_counts.value({int(kind), key});
    }

private:
    mutable QMutex m_mutex;
    QHash<QPair<int, QString>, int> m_counts;
};

namespace {

constexpr int settleMs = 60000;

/// The slot of the presenter that asks a query; empty for what no presenter asks.
QByteArray slotOf(const QString &type)
{
    static const QHash<QString, QByteArray> slotsByType{
        {Master_MsgType::QueryManualT0ProductsRequest, "slotQueryT0Products(QVariantMap)"},
        {Master_MsgType::QueryUserIdByUserRoleRequest, "slotQueryT0Traders()"},
        {Master_MsgType::QueryManualT0ResourceRequest, "slotQueryResources(QVariantMap)"},
        {Master_MsgType::QueryManualT0SecurityPoolRequest, "slotQuerySecurityPool(QVariantMap)"},
        {Master_MsgType::QueryManualT0RealTimePoolUsageRequest, "slotQueryPoolRealTime(QVariantMap)"},
        {Master_MsgType::QueryManualT0TraderAccountPriorityRequest, "slotQueryAccountPriority(QVariantMap)"}};
    return slotsByType.value(type);
}

MessageBody bodyOf(const JournalRecord &record)
{
    MessageBody body;
    QString errorText;
    MessageBody::decode(record.envelope.body, body, errorText);
    return body;
}

bool isSuccess(const JournalRecord &end)
{
    return end.kind == Kind::Answer && bodyOf(end).values.value(Orvane_Fields::System::requestExeStatus).toString() ==
                                           Orvane_Values::RequestExeStatus::success;
}

QString keyOf(int family)
{
    return Master_Values::InitTypeCode::ManualT0Info + QString::number(family);
}

int familyOf(const QString &key)
{
    for (int family = 0; family < Picture::familyCount; ++family)
        if (key == keyOf(family))
            return family;
    return RecordedDay::nothing;
}

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
    QString errorText;
    const int count = m_day.records().size();
    for (int record = 0; record < count && errorText.isEmpty() && !Interrupt::requested(); ++record)
        errorText = repeat(record);
    return errorText.isEmpty() ? settle(m_day.records().constLast()) : errorText;
}

QString Replay::repeat(int record)
{
    const JournalRecord &recorded = m_day.records().at(record);
    switch (recorded.kind) {
    case Kind::Push:
    case Kind::Connection:
        m_channel->pushUntil(record);
        return {};
    case Kind::FamilyReset:
    case Kind::FamilyStarted:
        return repeatNote(recorded, record);
    case Kind::Answer:
    case Kind::TimedOut:
    case Kind::NotSent:
        return repeatRequest(m_day.requestOf(record), record);
    default:
        return {};
    }
}

/// What the library has noted as often as the recorded one it has done by itself; else somebody had told it to.
QString Replay::repeatNote(const JournalRecord &note, int record)
{
    const QString key = note.envelope.type;
    const int family = familyOf(key);
    const QString halt = settle(note);
    m_then->append(note.kind, note.envelope);
    const bool isStart = note.kind == Kind::FamilyStarted;
    const bool isProducts = family == ManualT0Logic::Products;
    if (isProducts)
        m_isRefreshingAll = !isStart && beginsFullRefresh(record);
    if (family == RecordedDay::nothing || m_now->count(note.kind, key) >= m_then->count(note.kind, key))
        return halt;
    if (isStart)
        ManualT0Logic::InitData(); // begins all that is not begun
    else if (m_isRefreshingAll)
        MasterInitStateMgr::instance().Reset(key); // the library itself refuses a second refresh within seconds
    else
        ManualT0Logic::RefreshDataByType(family);
    return halt;
}

/// The products alone are reset directly before they are loaded; with everything else the priorities are reset in
/// between.
bool Replay::beginsFullRefresh(int reset) const
{
    const QVector<JournalRecord> &records = m_day.records();
    for (int i = reset + 1; i < records.size(); ++i) {
        const QString &type = records.at(i).envelope.type;
        if (records.at(i).kind == Kind::FamilyStarted && type == keyOf(ManualT0Logic::Products))
            return false;
        if (records.at(i).kind == Kind::FamilyReset && type == keyOf(ManualT0Logic::AccountPriority))
            return true;
    }
    return false;
}

QString Replay::repeatRequest(int request, int end)
{
    if (request == RecordedDay::nothing)
        return {};
    const JournalRecord &asked = m_day.records().at(request);
    const QString type = asked.envelope.type;
    const QByteArray slot = slotOf(type);
    const bool isKept =
        type == Master_MsgType::AlterManualT0ProductsRequest || type == Master_MsgType::DeleteManualT0ResourceRequest;
    if (slot.isEmpty() && !(isKept && isSuccess(m_day.records().at(end))))
        return {};
    QString halt = settle(m_day.records().at(end));
    if (!halt.isEmpty() || m_channel->isRepeated(request))
        return halt;

    QString errorText;
    if (type == Master_MsgType::AlterManualT0ProductsRequest)
        alterProducts(rowsOf(asked));
    else if (type == Master_MsgType::DeleteManualT0ResourceRequest)
        ManualT0Logic::DeleteT0Resource(rowsOf(asked), errorText);
    else
        halt = repeatQuery(asked, slot);
    if (!m_channel->isRepeated(request))
        m_remarks.append(QStringLiteral("record %1: %2 could not be repeated, this library asks it otherwise")
                             .arg(QString::number(asked.sequence), type));
    return halt;
}

QString Replay::repeatQuery(const JournalRecord &query, const QByteArray &slot)
{
    m_channel->expect(query.envelope.type);
    PresenterCalls::call(slot, bodyOf(query).rows.value(0));
    const QString halt = settle(query);
    m_channel->expect({});
    return halt;
}

QString Replay::settle(const JournalRecord &record) const
{
    return HostSession::current()->settle(settleMs)
               ? QString()
               : QStringLiteral("record %1: the library did not come to rest within %2 ms")
                     .arg(QString::number(record.sequence), QString::number(settleMs));
}

QStringList Replay::remarks() const
{
    QStringList remarks = m_day.remarks() + m_remarks;
    QMap<QString, int> counts;
    const QStringList unanswered = m_channel->unanswered();
    for (const QString &type : unanswered)
        ++counts[type];
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        remarks.append(QStringLiteral("%1: asked %2 times more than the journal has answers, these timed out")
                           .arg(count.key(), QString::number(*count)));
    return remarks;
}
