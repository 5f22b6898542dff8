#pragma once

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <algorithm>
#include <functional>

using IdSet = QSet<QString>;
using KeyPair = QPair<QString, QString>;

/// From a key to the set of ids that have it. An id stands under one key at a time, so that the sets of
/// different keys never share one.
template <typename Key> class IdIndex
{
public:
    void insert(const Key &key, const QString &id) { m_sets[key].insert(id); }

    void remove(const Key &key, const QString &id)
    {
        const auto set = m_sets.find(key);
        if (set == m_sets.end())
            return;
        set->remove(id);
        if (set->isEmpty())
            m_sets.erase(set);
    }

    void removeKey(const Key &key) { m_sets.remove(key); }

    /// Null when no id has the key.
    const IdSet *find(const Key &key) const
    {
        const auto set = m_sets.constFind(key);
        return set == m_sets.constEnd() ? nullptr : &*set;
    }

    void clear() { m_sets.clear(); }
    const QHash<Key, IdSet> &sets() const { return m_sets; }

private:
    QHash<Key, IdSet> m_sets;
};

/// The ids that meet every condition. A condition is a union of index sets; the one with the fewest ids is
/// walked, the others are only asked, so a lookup costs what its most selective condition leaves. The sets
/// must stay alive and unchanged meanwhile (the caller holds their lock).
class IdQuery
{
public:
    /// The id must be under any of the keys; a key given twice counts once.
    template <typename Key, typename Keys> void anyOf(const IdIndex<Key> &index, const Keys &keys)
    {
        Condition condition;
        for (const Key &key : keys) {
            if (const IdSet *set = index.find(key))
                condition.sets.append(set);
        }
        std::sort(condition.sets.begin(), condition.sets.end(), std::less<>());
        condition.sets.erase(std::unique(condition.sets.begin(), condition.sets.end()), condition.sets.end());
        for (const IdSet *set : qAsConst(condition.sets))
            condition.size += set->size();
        m_conditions.append(condition);
    }

    template <typename Key> void equals(const IdIndex<Key> &index, const Key &key) { anyOf(index, QVector<Key>{key}); }

    /// The id must not be in the set.
    void noneOf(const IdSet *set)
    {
        if (set)
            m_excluded.append(set);
    }

    /// In no particular order, each id once. Without any condition: none.
    QVector<QString> ids() const
    {
        QVector<QString> result;
        const auto driver = std::min_element(m_conditions.cbegin(), m_conditions.cend(), &fewer);
        if (driver == m_conditions.cend())
            return result;
        for (const IdSet *set : driver->sets) {
            for (const QString &id : *set) {
                if (meets(id, &*driver))
                    result.append(id);
            }
        }
        return result;
    }

private:
    struct Condition {
        QVector<const IdSet *> sets;
        int size = 0;
    };

    static bool fewer(const Condition &a, const Condition &b) { return a.size < b.size; }

    bool meets(const QString &id, const Condition *driver) const
    {
        const auto holdsId = [&id](const IdSet *set) { return set->contains(id); };
        for (const Condition &condition : m_conditions) {
            if (&condition != driver && std::none_of(condition.sets.cbegin(), condition.sets.cend(), holdsId))
                return false;
        }
        return std::none_of(m_excluded.cbegin(), m_excluded.cend(), holdsId);
    }

    QVector<Condition> m_conditions;
    QVector<const IdSet *> m_excluded;
};

inline QStringList sorted(const QVector<QString> &ids)
{
    QStringList list(ids.cbegin(), ids.cend());
    std::sort(list.begin(), list.end());
    return list;
}
