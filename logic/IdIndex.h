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

/// From a key that few records share to their ids. Holds no set for each key, which a key of one or two ids would pay
/// for in memory and time; taking an id out costs as much as its key has ids.
template <typename Key> class NarrowIndex
{
public:
    void insert(const Key &key, const QString &id) { m_ids.insert(key, id); }
    void remove(const Key &key, const QString &id) { m_ids.remove(key, id); }
    void clear() { m_ids.clear(); }

    template <typename Visit> void forEach(const Key &key, Visit visit) const
    {
        for (auto id = m_ids.constFind(key); id != m_ids.constEnd() && id.key() == key; ++id)
            visit(*id);
    }

    const QMultiHash<Key, QString> &ids() const { return m_ids; }

private:
    QMultiHash<Key, QString> m_ids;
};

/// Ids that indexes hold, to be walked, each once. The indexes must stay unchanged meanwhile (the caller holds
/// their lock).
class HeldIds
{
public:
    HeldIds() = default;

    /// Those under any of the keys; a key given twice counts once.
    template <typename Keys> static HeldIds under(const IdIndex<QString> &index, const Keys &keys)
    {
        HeldIds ids;
        for (const QString &key : keys)
            ids.append(index.find(key));
        ids.dropRepeatedSets();
        return ids;
    }

    /// Those under any pair of one of the first and one of the second.
    static HeldIds underPairs(const IdIndex<KeyPair> &index, const QStringList &first, const QStringList &second)
    {
        HeldIds ids;
        for (const QString &one : first) {
            for (const QString &other : second)
                ids.append(index.find({one, other}));
        }
        ids.dropRepeatedSets();
        return ids;
    }

    /// Those under any pair of one of the first and this second.
    static HeldIds underPairs(const NarrowIndex<KeyPair> &index, const QStringList &first, const QString &second)
    {
        HeldIds ids;
        for (const QString &one : first)
            index.forEach({one, second}, [&ids](const QString &id) { ids.m_ids.append(&id); });
        dropRepeated(ids.m_ids);
        ids.m_size = ids.m_ids.size();
        return ids;
    }

    int size() const { return m_size; }

    template <typename Visit> void forEach(Visit visit) const
    {
        for (const QString *id : m_ids)
            visit(*id);
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

    void dropRepeatedSets()
    {
        dropRepeated(m_sets);
        for (const IdSet *set : qAsConst(m_sets))
            m_size += set->size();
    }

    template <typename Pointers> static void dropRepeated(Pointers &pointers)
    {
        std::sort(pointers.begin(), pointers.end(), std::less<>());
        pointers.resize(int(std::unique(pointers.begin(), pointers.end()) - pointers.begin()));
    }

    QVarLengthArray<const IdSet *, 32> m_sets;
    QVarLengthArray<const QString *, 32> m_ids;
    int m_size = 0;
};

inline const HeldIds &smaller(const HeldIds &a, const HeldIds &b)
{
    return b.size() < a.size() ? b : a;
}
