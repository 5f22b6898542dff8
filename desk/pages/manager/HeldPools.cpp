#include "HeldPools.h"

#include "CBusinessDataBase.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterUtils.h"
#include "OrvaneFields.h"

#include <cmath>

using namespace Master_Fields::ManualT0;

namespace {

constexpr int pageSize = 1000;

VariantRecord login()
{
    return {{Orvane_Fields::UserAccount::loginUserId, CBusinessDataBase::GetLoginAccount()}};
}

/// Every negative limit is none, whatever its number.
qint64 limit(const QVariant &value, qint64 factor)
{
    bool isSet = false;
    const double number = value.toDouble(&isSet);
    return isSet && number >= 0 ? std::llround(number) * factor : ManualT0Logic::InvalidExposure;
}

/// rows: pools, their quantities times factor being display units.
PoolEdit::ServerPools poolsOf(const RecordList &rows, const VariantRecord &resource, qint64 factor)
{
    PoolEdit::ServerPools pools;
    for (const VariantRecord &row : rows) {
        if (row.value(ResourceId) != resource.value(ResourceId))
            continue;
        const PoolEdit::Figures figures{std::llround(row.value(PoolTotalQty).toDouble()) * factor,
                                        limit(row.value(MaxExposureQty), factor),
                                        limit(row.value(MaxPendExposureQty), factor)};
        pools.insert(row.value(T0TraderId).toString(), {row.value(PoolDetailId).toString(), figures});
    }
    return pools;
}

RecordList allocationRows(const PoolEdit::Step &step, const VariantRecord &resource)
{
    RecordList rows;
    for (auto pool = step.pools.cbegin(); pool != step.pools.cend(); ++pool) {
        VariantRecord row{{T0TraderId, pool.key()}, {PoolTotalQty, (*pool)[PoolEdit::Quantity]}};
        for (const QString &field :
             {ResourceId, Orvane_Fields::UserAccount::tradingAccount, Orvane_Fields::Security::symbol,
              Orvane_Fields::Security::securityID, Orvane_Fields::UserAccount::securityExchange})
            row.insert(field, resource.value(field));
        rows.append(row);
    }
    return rows;
}

/// The library has no operation that sets limits; the server takes its own units.
QString sendLimits(const PoolEdit::Step &step, qint64 unit, const PoolEdit::ServerPools &server, QString &errorText)
{
    const auto inServerUnits = [unit](qint64 limit) { return limit < 0 ? limit : limit / unit; };
    RecordList rows;
    for (auto pool = step.pools.cbegin(); pool != step.pools.cend(); ++pool)
        rows.append({{PoolDetailId, server.value(pool.key()).id},
                     {MaxExposureQty, inServerUnits((*pool)[PoolEdit::Exposure])},
                     {MaxPendExposureQty, inServerUnits((*pool)[PoolEdit::PendExposure])}});
    VariantRecord header = login();
    header.insert(Orvane_Fields::System::subGroupNumber, rows.size());
    RecordList answer;
    return MasterUtils::SendRequestListToServer(nullptr, Master_MsgType::AlterManualT0SecurityPoolRequest,
                                                RecordList{header} + rows, 0, errorText, answer, false, false);
}

const QString &msgTypeOf(PoolEdit::Step::Kind kind)
{
    switch (kind) {
    case PoolEdit::Step::DeletePrivate:
        return Master_MsgType::DeleteManualT0SecurityPoolRequest;
    case PoolEdit::Step::Limits:
        return Master_MsgType::AlterManualT0SecurityPoolRequest;
    default:
        return Master_MsgType::AllocateManualT0SecurityPoolRequest;
    }
}

} // namespace

qint64 HeldPools::resourceQty(const VariantRecord &resource)
{
    return std::llround(resource.value(ResourceQty).toDouble());
}

qint64 HeldPools::unitOf(const VariantRecord &resource)
{
    return MasterBusinessDataInterface::GetDispFactorBySymbol(
        resource.value(Orvane_Fields::Security::symbol).toString());
}

PoolEdit::ServerPools HeldPools::known(const VariantRecord &resource)
{
    constexpr int all = 3;
    return poolsOf(ManualT0Logic::GetSecurityPoolDetailByResourceId(resource.value(ResourceId).toString(), all),
                   resource, 1);
}

std::optional<PoolEdit::ServerPools> HeldPools::read(const VariantRecord &resource, QString &errorText)
{
    using Orvane_Fields::UserAccount::tradingAccount;
    VariantRecord query = login();
    query.insert(tradingAccount, resource.value(tradingAccount));
    const RecordList rows = MasterUtils::QueryDatasFromServerByPos(
        nullptr, Master_MsgType::QueryManualT0SecurityPoolRequest, query, errorText, pageSize, {}, 0);
    if (!errorText.isEmpty())
        return std::nullopt;
    return poolsOf(rows, resource, unitOf(resource));
}

ChangeOutcome HeldPools::send(const PoolEdit::Step &step, const VariantRecord &resource,
                              const PoolEdit::ServerPools &server)
{
    return ChangeOutcome::of(msgTypeOf(step.kind), [&](QString &errorText) {
        switch (step.kind) {
        case PoolEdit::Step::Public:
            return ManualT0Logic::AllocatePublicResource(allocationRows(step, resource), errorText);
        case PoolEdit::Step::Private:
            return ManualT0Logic::AllocateResourceToTrader(allocationRows(step, resource), errorText);
        case PoolEdit::Step::DeletePrivate:
            return ManualT0Logic::DeleteSecurityPoolsByIdList(step.ids, errorText);
        case PoolEdit::Step::Limits:
            return sendLimits(step, unitOf(resource), server, errorText);
        }
        return QString();
    });
}
