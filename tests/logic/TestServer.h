#pragma once

#include "ScriptedChannel.h"
#include "VariantRecord.h"

#include <functional>
#include <mutex>

/// The server's side of the hub's requests, on a scripted channel: answers every query from its books, in pages,
/// accepts every change without carrying it out, and knows who subscribed the usage push. Thread-safe; outlives
/// the channel.
class TestServer
{
public:
    struct Books {
        RecordList products;
        RecordList managers;
        RecordList traders;
        RecordList resources; ///< a query gets those of its trading account
        RecordList pools;     ///< likewise
        RecordList usage;     ///< a query gets those of the traders it names
        RecordList priority;
    };

    /// Scripts the channel. Nothing of the books is asked unless a presenter is connected.
    void script(ScriptedChannel &channel);

    Books books() const;
    void change(const std::function<void(Books &)> &edit);

    /// Changes the usage record of the same trader, account and security, or adds it, and pushes it.
    void pushUsage(const VariantRecord &row);

    /// The next change of the type ends with "success", "timeout", or is refused with any other text.
    void answerNext(const QString &msgType, const QString &outcome);

    /// The changes since the last call, one line a row: the request and its header, then its rows behind two
    /// spaces; fields as "name=value", ascending.
    QStringList takeChanges();

    QStringList takeSubscribed(); ///< users of the push filters since the last call, in order
    void refuseSubscription(const QString &user);

    ScriptedChannel *channel = nullptr;

private:
    RecordList matching(const QString &msgType, const VariantRecord &query) const;
    MessageBody page(const QString &msgType, const MessageBody &request) const;
    MessageBody subscribe(const MessageBody &request);

    mutable std::mutex m_mutex;
    Books m_books;
    QStringList m_subscribed;
    QString m_refused;
    int m_requestsSeen = 0; ///< of the channel, by takeChanges()
};
