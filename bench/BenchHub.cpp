#include "BenchHub.h"

#include "InitKeys.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

#include <map>

using Orvane_Fields::UserAccount::tradingAccount;
using Orvane_Values::RequestExeStatus::success;
using Records::Keys;

namespace {

void beginLoad(ManualT0Logic::InitType type)
{
    initStates().Reset(initKey(type));
    initStates().StartInit(initKey(type));
}

/// answer: takes the rows of one account. One account's at a time are in memory.
template <typename Answer>
void answerByAccount(const QVector<Keys> &all, VariantRecord (*rowOf)(const Keys &, qint64), Answer answer)
{
    QHash<QString, QVector<Keys>> accounts;
    for (const Keys &keys : all)
        accounts[keys.account].append(keys);
    for (auto account = accounts.cbegin(); account != accounts.cend(); ++account) {
        RecordList rows;
        for (const Keys &keys : *account)
            rows.append(rowOf(keys, Records::LoadedQuantity));
        answer(account.key(), Records::asReceived(rows));
    }
}

std::map<std::pair<Family, int>, std::unique_ptr<BenchHub>> &kept()
{
    static std::map<std::pair<Family, int>, std::unique_ptr<BenchHub>> hubs;
    return hubs;
}

} // namespace

BenchHub::BenchHub(Family family, const QVector<Keys> &keys)
    : m_keys(keys)
    , m_family(family)
{
    onItsThread([this] {
        beginLoad(ManualT0Logic::RealtimeUsage); // else the traders' answer would ask for it
        m_hub.slotQueryT0TradersResponse(success, Records::traderRows(), false);
        if (m_family == Family::Usage)
            fillUsage();
        else
            fillPools();
        if (m_family == Family::Resources)
            fillResources();
    });
}

BenchHub &BenchHub::of(Family family, int records)
{
    std::unique_ptr<BenchHub> &hub = kept()[{family, records}];
    if (!hub) {
        const QVector<Keys> keys = Records::keys(records);
        hub = std::make_unique<BenchHub>(family, family == Family::Resources ? Records::groupedByResource(keys) : keys);
    }
    return *hub;
}

void BenchHub::forgetAll()
{
    kept().clear();
}

void BenchHub::fillUsage()
{
    constexpr int rowsAtOnce = 1000;
    for (int first = 0; first < m_keys.size(); first += rowsAtOnce) {
        RecordList rows;
        for (const Keys &keys : m_keys.mid(first, rowsAtOnce))
            rows.append(Records::usage(keys, Records::LoadedQuantity, ++m_time));
        m_hub.slotQueryPoolRealTimeResponse(success, {}, Records::asReceived(rows));
    }
}

void BenchHub::fillPools()
{
    const auto answer = [this](const QString &account, const RecordList &rows) { answerPools(account, rows); };
    beginLoad(ManualT0Logic::SecurityPools);
    answerByAccount(m_keys, &Records::pool, answer);
    initStates().FinishInit(initKey(ManualT0Logic::SecurityPools), true, true);
    // The first answer after a load may index all pools anew; that is part of the load.
    answerByAccount(m_keys.mid(0, Records::AnsweredPools), &Records::pool, answer);
}

void BenchHub::fillResources()
{
    QHash<QString, Keys> resources;
    for (const Keys &keys : m_keys)
        resources.insert(keys.resourceId, keys);
    beginLoad(ManualT0Logic::Resources);
    answerByAccount(QVector<Keys>::fromList(resources.values()), &Records::resource,
                    [this](const QString &account, const RecordList &rows) {
                        m_hub.slotQueryResourceResponse(success, {{tradingAccount, account}}, rows);
                    });
    initStates().FinishInit(initKey(ManualT0Logic::Resources), true, true);
}

void BenchHub::answerPools(const QString &account, const RecordList &rows)
{
    m_hub.slotQuerySecurityPoolResponse(success, {{tradingAccount, account}}, rows);
}

RecordList BenchHub::records() const
{
    return m_family == Family::Usage
               ? m_hub.GetRealtimePoolDetailList(Records::accounts(), {}, {}, {})
               : m_hub.GetSecurityPoolDetailListByTradingList(Records::accounts(), Records::traders(), {}, {}, false);
}

QVector<Keys> BenchHub::randomKeys(int count)
{
    QVector<Keys> result;
    result.reserve(count);
    for (int i = 0; i < count; ++i)
        result.append(m_keys.at(int(m_random() % unsigned(m_keys.size()))));
    return result;
}

RecordList BenchHub::newPushes(int count)
{
    RecordList pushes;
    for (const Keys &keys : randomKeys(count)) {
        ++m_time;
        pushes.append(Records::usage(keys, Records::LoadedQuantity + m_time % 100, m_time));
    }
    return Records::asReceived(pushes);
}
