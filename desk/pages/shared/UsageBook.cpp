#include "UsageBook.h"

#include "CBusinessDataBase.h"
#include "EventBus.h"
#include "HostNews.h"
#include "HostSession.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "PageShell.h"
#include "StandFields.h"
#include "VantaKeys.h"

namespace {

constexpr int updateEveryMs = 100;
constexpr int mostAtOnce = 250; ///< records: the window answers in between

} // namespace

UsageBook *UsageBook::ofWindow()
{
    PageShell *shell = PageShell::instance();
    auto *book = shell->findChild<UsageBook *>(QString(), Qt::FindDirectChildrenOnly);
    return book ? book : new UsageBook(shell);
}

UsageBook::UsageBook(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &UsageBook::update);
    listenToLibrary();
    const HostNews *news = &HostSession::current()->news();
    connect(news, &HostNews::quotesChanged, this, [this](const QStringList &symbols) {
        for (const QString &symbol : symbols) {
            const QStringList keys = m_keysOfSymbol.value(symbol);
            for (const QString &key : keys)
                touch(key);
        }
    });
    connect(news, &HostNews::dayBegan, this, &UsageBook::touchAll);
    wait();
}

void UsageBook::listenToLibrary()
{
    using namespace Vanta_Keys::EventMsgName;
    EventBus::listen(ManualT0PoolRealTimeUpdated, this, [this](const QVariant &records) { take(records.toList()); });
    EventBus::listen(ManualT0SecurityPoolUpdated, this, [this](const QVariant &ids) {
        touchPools(ManualT0Logic::GetSecurityPoolDetailByIdList(ids.toStringList()));
    });
    EventBus::listen(ManualT0SecurityPoolDeleted, this, [this](const QVariant &pools) {
        RecordList records;
        for (const QVariant &pool : pools.toList())
            records.append(pool.toMap());
        touchPools(records);
    });
    // Accounts and limits may be others, names of traders are not ours.
    EventBus::listen(ManualT0DataInited, this, [this](const QVariant &type) {
        if (type.toInt() != ManualT0Logic::Traders && type.toInt() != ManualT0Logic::Resources)
            touchAll();
    });
}

bool UsageBook::isManager()
{
    const QStringList roles =
        CBusinessDataBase::GetLoginAccountDetail().value(Stand_Fields::User::roles).toStringList();
    return roles.contains(Master_Values::UserRoles::ManualT0Mangager);
}

QStringList UsageBook::accounts()
{
    QStringList accounts =
        ManualT0Logic::GetAllT0TradingAccountList() + ManualT0Logic::GetAllT0TradingAccountListByCurUser();
    accounts.removeDuplicates();
    return accounts;
}

void UsageBook::take(const QVariantList &records)
{
    if (m_isStale)
        return; // read soon, and not older than these
    for (const QVariant &record : records) {
        const VariantRecord usage = record.toMap();
        const QString trader = usage.value(Master_Fields::ManualT0::T0TraderId).toString();
        if (!m_accounts.contains(usage.value(Orvane_Fields::UserAccount::tradingAccount).toString()) ||
            (!m_onlyTrader.isEmpty() && trader != m_onlyTrader))
            continue;
        const QString key = ManualT0Logic::GetRealtimePoolKey(usage);
        enter(key, usage);
        touch(key);
    }
}

void UsageBook::enter(const QString &key, const VariantRecord &usage)
{
    const auto held = m_entries.find(key);
    if (held != m_entries.end()) {
        held->usage = usage;
        return;
    }
    m_entries.insert(key, {usage, {}, UsageFigures::limitQuantity(usage)});
    m_keysOfSymbol[usage.value(Orvane_Fields::Security::symbol).toString()].append(key);
}

void UsageBook::touch(const QString &key)
{
    m_touched.insert(key);
    wait();
}

/// A pool's key is that of the usage record it limits.
void UsageBook::touchPools(const RecordList &pools)
{
    for (const VariantRecord &pool : pools) {
        const QString key = ManualT0Logic::GetRealtimePoolKey(pool);
        const auto entry = m_entries.find(key);
        if (entry == m_entries.end())
            continue;
        entry->limitQuantity = UsageFigures::limitQuantity(entry->usage);
        touch(key);
    }
}

void UsageBook::touchAll()
{
    m_isStale = true;
    wait();
}

void UsageBook::wait()
{
    if (!m_timer.isActive())
        m_timer.start(updateEveryMs);
}

void UsageBook::update()
{
    if (std::exchange(m_isStale, false)) {
        readAll();
        emit replaced();
        return;
    }
    QStringList keys;
    for (auto key = m_touched.begin(); key != m_touched.end() && keys.size() < mostAtOnce;) {
        keys.append(*key);
        key = m_touched.erase(key);
    }
    for (const QString &key : qAsConst(keys)) {
        UsageEntry &entry = m_entries[key];
        entry.figures = UsageFigures::of(entry.usage, entry.limitQuantity);
    }
    if (!m_touched.isEmpty())
        m_timer.start(0);
    if (!keys.isEmpty())
        emit changed(keys);
}

void UsageBook::readAll()
{
    const QStringList accounts_ = accounts();
    m_accounts = QSet<QString>(accounts_.cbegin(), accounts_.cend());
    m_onlyTrader = isManager() ? QString() : CBusinessDataBase::GetLoginAccount();
    const QStringList traders = m_onlyTrader.isEmpty() ? QStringList() : QStringList(m_onlyTrader);
    m_entries.clear();
    m_keysOfSymbol.clear();
    m_touched.clear();
    const RecordList records = ManualT0Logic::GetRealtimePoolDetailList(accounts_, traders, {}, {});
    for (const VariantRecord &usage : records) {
        const QString key = ManualT0Logic::GetRealtimePoolKey(usage);
        enter(key, usage);
        UsageEntry &entry = m_entries[key];
        entry.figures = UsageFigures::of(usage, entry.limitQuantity);
    }
}

UsageTotals UsageBook::totals() const
{
    UsageTotals totals;
    for (const UsageEntry &entry : m_entries)
        totals.add(entry.figures);
    return totals;
}
