#pragma once

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QVarLengthArray>

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

/// Sets of one index, to be walked id by id. They must stay alive and unchanged meanwhile (the caller holds
/// their lock).
class IdSets
{
public:
    IdSets() = default;

    /// The sets under any of the keys; a key given twice counts once.
    template <typename Key, typename Keys> static IdSets under(const IdIndex<Key> &index, const Keys &keys)
    {
        IdSets sets;
        for (const auto &key : keys)
            sets.append(index.find(key));
        sets.dropRepeated();
        return sets;
    }

    /// The sets under any pair of one of the first and one of the second.
    template <typename First, typename Second>
    static IdSets underPairs(const IdIndex<KeyPair> &index, const First &first, const Second &second)
    {
        IdSets sets;
        for (const QString &one : first) {
            for (const QString &other : second)
                sets.append(index.find({one, other}));
        }
        sets.dropRepeated();
        return sets;
    }

    /// How many ids there are to walk.
    int size() const { return m_size; }

    template <typename Visit> void forEach(Visit visit) const
    {
        for (const IdSet *set : m_sets) {
            for (const QString &id : *set)
                visit(id);
        }
    }

private:
    void append(const IdSet *set)
    {
        if (set)
            m_sets.append(set);
    }

    void dropRepeated()
    {
        std::sort(m_sets.begin(), m_sets.end(), std::less<>());
        m_sets.resize(int(std::unique(m_sets.begin(), m_sets.end()) - m_sets.begin()));
        for (const IdSet *set : qAsConst(m_sets))
            m_size += set->size();
    }

    QVarLengthArray<const IdSet *, 32> m_sets;
    int m_size = 0;
};

inline const IdSets &smaller(const IdSets &a, const IdSets &b)
{
    return b.size() < a.size() ? b : a;
}
