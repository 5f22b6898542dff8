#include "PresenterQuery.h"

#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "RecordedDay.h"
#include "StandFields.h"

#include <algorithm>

using Kind = JournalRecord::Kind;

const QVector<PresenterQuery> &PresenterQuery::all()
{
    using namespace Master_MsgType;
    using T0 = ManualT0Logic;
    static const QVector<PresenterQuery> all{
        {QueryManualT0ProductsRequest, "slotQueryT0Products(QVariantMap)", T0::Products, Kind::FamilyFinished},
        {QueryUserIdByUserRoleRequest, "slotQueryT0Traders()", T0::Traders, Kind::FamilyFinished},
        {QueryManualT0TraderAccountPriorityRequest, "slotQueryAccountPriority(QVariantMap)", T0::AccountPriority,
         Kind::FamilyFinished},
        {QueryManualT0ResourceRequest, "slotQueryResources(QVariantMap)", T0::Resources, Kind::FamilyAsked},
        {QueryManualT0SecurityPoolRequest, "slotQuerySecurityPool(QVariantMap)", T0::SecurityPools, Kind::FamilyAsked},
        {QueryManualT0RealTimePoolUsageRequest, "slotQueryPoolRealTime(QVariantMap)", T0::RealtimeUsage,
         Kind::FamilyAsked}};
    return all;
}

const PresenterQuery *PresenterQuery::of(const QString &type)
{
    const auto query =
        std::find_if(all().cbegin(), all().cend(), [&type](const PresenterQuery &query) { return query.type == type; });
    return query == all().cend() ? nullptr : &*query;
}

bool PresenterQuery::isWhole(const JournalRecord &request, const JournalRecord &end)
{
    const VariantRecord answer = bodyOf(end).values;
    const bool hasMore = isSuccess(end) && (answer.value(Stand_Fields::Paging::hasMore).toBool() ||
                                            !answer.value(Stand_Fields::Paging::position).toString().isEmpty());
    // The traders are asked for by two queries, managers first.
    const VariantRecord query = bodyOf(request).rows.value(0);
    return !hasMore &&
           query.value(Master_Fields::UserAccount::UserRoleId).toString() != Master_Values::UserRoles::ManualT0Mangager;
}

bool PresenterQuery::isNoted(const JournalRecord &end) const
{
    // deliberate: the presenter reports the traders as loaded whatever the server said
    return taken == Kind::FamilyAsked || isSuccess(end) || family == ManualT0Logic::Traders;
}
