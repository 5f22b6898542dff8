#pragma once

#include "Books.h"
#include "VariantRecord.h"

#include <QtCore/QSet>

/// One call of an operation that changes something.
struct Change {
    enum Operation {
        AlterProducts,
        AddResources,
        AlterResource,
        DeleteResources,
        AllocatePublic,
        AllocateToTraders,
        AddPools,
        DeletePools,
        OperationCount
    };

    Operation operation = AddResources;
    RecordList rows; ///< AlterResource: one
    QStringList ids; ///< DeletePools
    QMap<QString, QStringList> products;
    bool cover = false;
};

/// What a change ends with.
struct Ending {
    QString code;
    QString text;
    bool serverSpoke = false; ///< of what is expected: the text only begins so, the server says the rest
};

/// What happens to the first request of a change.
enum class Fate { Answered, NeverArrives, AnswerLost };

/// What managers have set aside, kept the naive way: plain maps, quantities in display units, the rules of client
/// and server written down once more. A request is in force whole or not at all.
class Model
{
public:
    struct Pool {
        QString id; ///< empty until it was seen
        qint64 quantity = 0;
        qint64 maxExposure = -1;
    };
    struct Resource {
        QString id;
        QString account;
        Instrument security;
        qint64 quantity = 0;
        QMap<QString, Pool> pools; ///< by trader

        qint64 allocated(bool toTraders) const;
        qint64 allocated() const { return allocated(false) + allocated(true); }
    };

    explicit Model(const Books &books);

    /// fate: taken when the change sends something.
    Ending expect(const Change &change, Fate &fate);

    /// Reads the ids of what is new from what the server holds. A text when one was given before.
    QString learnIds(const RecordList &resources, const RecordList &pools);

    QVector<Resource> resources() const { return m_resources.values().toVector(); }
    bool isEnabled(const QString &account) const { return m_enabled.contains(account); }

private:
    enum class Sent { Done, Refused, Unanswered };
    template <typename Apply> Sent send(Apply apply);
    template <typename Apply> Ending sendGroups(const RecordList &rows, const QString &field, Apply apply);

    Ending add(const Change &change);
    Ending alterResource(const VariantRecord &row);
    Ending allocate(const RecordList &rows, bool toTraders);
    QString addingFault(const VariantRecord &row, bool withPool) const;
    QString multipleFault(const VariantRecord &row, const QString &field) const;

    void alterProducts(const QMap<QString, QStringList> &products);
    bool serverAdds(const QString &account, const RecordList &rows, bool cover, bool withPools);
    bool serverAlters(const VariantRecord &row);
    bool serverDeletes(const RecordList &rows);
    bool serverAllocates(const QString &id, const RecordList &rows, bool toTraders);
    bool serverDeletesPools(const QStringList &ids);

    Instrument securityOf(const VariantRecord &row) const; ///< without a symbol when there is none
    bool mayHold(const QString &account, const Instrument &security) const;
    bool mayTrade(const QString &trader, const QString &account) const;
    Resource *resourceOf(const QString &id);
    Resource shownResource(const QString &id); ///< as the client knows it
    bool showsPool(const QString &id) const;

    const Books &m_books;
    QMap<QString, Resource> m_resources; ///< by account and symbol
    QSet<QString> m_enabled;
    QSet<QString> m_usedIds;
    Fate *m_fate = nullptr; ///< of the next request
};
