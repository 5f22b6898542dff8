#include "IntegrityCheck.h"

namespace {

QString nameOf(ManualT0Logic::InitType family)
{
    switch (family) {
    case ManualT0Logic::Resources:
        return QStringLiteral("resource");
    case ManualT0Logic::SecurityPools:
        return QStringLiteral("pool");
    default:
        return QStringLiteral("usage");
    }
}

} // namespace

QString IntegrityFault::description() const
{
    static const char *const kinds[] = {"index", "listing", "allocation", "derivation"};
    return nameOf(family) + QLatin1Char(' ') + QLatin1String(kinds[kind]) + QLatin1Char(' ') + id;
}

QVector<IntegrityFault> IntegrityBook::enter(const QVector<IntegrityFault> &found)
{
    QVector<IntegrityFault> told;
    QHash<QString, int> timesFound;
    for (const IntegrityFault &fault : found) {
        const QString description = fault.description();
        if (timesFound.contains(description))
            continue;
        const int times = m_timesFound.value(description) + 1;
        timesFound.insert(description, times);
        if (times == (fault.mayPass() ? 2 : 1))
            told.append(fault);
    }
    m_timesFound.swap(timesFound);
    return told;
}

void IntegrityWalk::begin(const IdIndex<QString> &byAccount)
{
    m_hasBegun = true;
    m_accounts = byAccount.sets().keys();
}

QVector<HeldRecord> IntegrityWalk::next(const RecordCache &cache, const IdIndex<QString> &byAccount)
{
    QVector<HeldRecord> records;
    records.reserve(SliceRecords);
    while (records.size() < SliceRecords && findNext(byAccount)) {
        const QString &id = *m_next++;
        const HeldRecord record = cache.constFind(id);
        if (record != cache.cend())
            records.append(record);
        else if (const IdSet *ids = byAccount.find(m_account); ids && ids->contains(id)) // else it went since
            add(IntegrityFault::Index, id, m_account);
    }
    if (records.isEmpty()) {
        m_hasBegun = false;
        ++m_family;
    }
    return records;
}

bool IntegrityWalk::findNext(const IdIndex<QString> &byAccount)
{
    while (m_next == m_ids.cend()) {
        const bool isLast = m_accounts.isEmpty();
        m_account = isLast ? QString() : m_accounts.takeLast();
        // Shared with the index only while it is walked: a change of a shared set copies it.
        const IdSet *ids = isLast ? nullptr : byAccount.find(m_account);
        m_ids = ids ? *ids : IdSet();
        m_next = m_ids.cbegin();
        if (isLast)
            return false;
    }
    return true;
}

void IntegrityWalk::add(IntegrityFault::Kind kind, const QString &id, const QString &account)
{
    m_found.append({kind, family(), id, account});
}

QVector<IntegrityFault> IntegrityWalk::takeFound()
{
    m_family = ManualT0Logic::Resources;
    return std::exchange(m_found, {});
}
