#pragma once

#include "ManualT0Logic.h"
#include "TradingLookup.h"

/// Something that a check of the caches has found wrong.
struct IntegrityFault {
    enum Kind {
        Index,      ///< an index and its cache differ
        Listing,    ///< a pool is not listed with its resource; also until the pools of a deleted one are answered for
        Allocation, ///< a resource's pools are more than it; may be so until both are answered for
        Derivation  ///< a usage record is not what its parts say
    };
    Kind kind;
    ManualT0Logic::InitType family;
    QString id;
    QString account; ///< empty when only an index knows the id

    bool mayPass() const { return kind == Listing || kind == Allocation; } ///< is none when it was so for a moment

    /// Of a log line, and what tells faults apart.
    QString description() const;
};

/// Which faults are told: each once, for as long as it is found again; what may be so for a moment not before it was
/// found in two checks in a row.
class IntegrityBook
{
public:
    QVector<IntegrityFault> enter(const QVector<IntegrityFault> &found);

private:
    QHash<QString, int> m_timesFound; ///< in a row
};

/// How far a check has come. It walks one family after the other, by trading account, in slices: between two of them
/// the caches may change, so that what it holds of them are copies, and each record is compared within one slice.
class IntegrityWalk
{
public:
    static constexpr int SliceRecords = 32;

    ManualT0Logic::InitType family() const { return ManualT0Logic::InitType(m_family); }
    bool isThrough() const { return m_family > ManualT0Logic::RealtimeUsage; }

    /// Of a family: byAccount holds all of its ids.
    bool hasBegun() const { return m_hasBegun; }
    void begin(const IdIndex<QString> &byAccount);
    /// The records of the next slice; none ends the family.
    QVector<HeldRecord> next(const RecordCache &cache, const IdIndex<QString> &byAccount);

    void add(IntegrityFault::Kind kind, const QString &id, const QString &account);
    /// What was found, when it is through; begins anew.
    QVector<IntegrityFault> takeFound();

private:
    bool findNext(const IdIndex<QString> &byAccount);

    int m_family = ManualT0Logic::Resources;
    bool m_hasBegun = false;
    QStringList m_accounts; ///< that remain
    QString m_account;
    IdSet m_ids; ///< of the account
    IdSet::const_iterator m_next = m_ids.cend();
    QVector<IntegrityFault> m_found;
};
