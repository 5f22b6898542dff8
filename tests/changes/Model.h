#pragma once

#include "VariantRecord.h"

#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QStringList>

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
        DeletePools
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
    bool serverSpoke = false; ///< expected endings: the text only begins with this, the server says the rest
};

/// What happens to the first request of a change.
enum class Fate { Answered, NeverArrives, AnswerLost };

/// What managers have changed, kept the naive way: plain maps, quantities in display units, and the rules of the
/// library and of the server written down once more. A request is in force whole or not at all.
class Model
{
public:
    struct Pool {
        QString id; ///< empty until it was seen
        qint64 quantity = 0;
        qint64 maxExposure = -1;
        qint64 maxPendExposure = -1;
    };
    struct Resource {
        QString id;
        QString account;
        VariantRecord security; ///< securityID and securityExchange
        qint64 quantity = 0;
        QMap<QString, Pool> pools; ///< by trader

        /// Of the pools of one kind.
        qint64 allocated(bool toTheirOwn) const;
        qint64 allocated() const { return allocated(false) + allocated(true); }
    };

    Ending expect(const Change &change, Fate fate);

    /// The fate that was given to the last change has struck one of its requests.
    bool fateStruck() const { return m_fate == Fate::Answered; }

    /// Ids the server has given since the last call, read from what it holds; a text when one was given before.
    QString learnIds(const RecordList &resources, const RecordList &pools);

    RecordList resourceRows() const; ///< of enabled accounts, as the hub shows them
    RecordList poolRows() const;
    QStringList poolIds() const; ///< also of accounts that are not enabled
    const QMap<QString, Resource> &resources() const { return m_resources; }

private:
    enum class Sent { Done, Refused, Unanswered };
    template <typename Apply> Sent send(Apply apply);

    Ending alterProducts(const QMap<QString, QStringList> &products);
    Ending addResources(const RecordList &rows, bool cover);
    Ending alterResource(const VariantRecord &row);
    Ending deleteResources(const RecordList &rows);
    Ending allocatePublic(const RecordList &rows);
    Ending allocateToTraders(const RecordList &rows);
    Ending addPools(const RecordList &rows, bool cover);
    Ending deletePools(const QStringList &ids);
    Ending allocate(const RecordList &rows, bool toTheirOwn);

    bool serverAdds(const QString &account, const RecordList &rows, bool cover);
    bool serverAlters(const VariantRecord &row);
    bool serverDeletes(const RecordList &rows);
    bool serverAllocates(const QString &id, const RecordList &rows, bool toTheirOwn);
    bool serverAddsPools(const QString &account, const RecordList &rows, bool cover);
    bool serverDeletesPools(const QStringList &ids);

    QString accountFault(const VariantRecord &row) const;
    Resource *resourceOf(const QString &id);
    Resource shownResource(const QString &id) const; ///< as the client knows it
    Resource &resourceAt(const QString &account, const VariantRecord &row);

    QMap<QString, Resource> m_resources; ///< by account and security
    QSet<QString> m_enabled{"A1", "A2", "A3"};
    QSet<QString> m_usedIds;
    Fate m_fate = Fate::Answered;
};
