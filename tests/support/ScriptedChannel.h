#pragma once

#include "HostSession.h"
#include "StreamChannel.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QWaitCondition>

#include <deque>
#include <thread>

/// A channel whose server is a script. Answers and pushes leave on a thread of its own, in the order they were
/// given. Every request is recorded; one that nobody scripted is refused and listed in unexpected().
/// EchoRequest is answered by itself and not recorded. Every operation may be called from any thread.
class ScriptedChannel : public StreamChannel
{
public:
    struct Request {
        QString type;
        MessageBody body;
        Envelope envelope;
    };
    using Answer = std::function<MessageBody(const MessageBody &request)>;

    ScriptedChannel();
    ~ScriptedChannel() override;

    // What a request of a type gets: first everything of its queue, once each; then what always() said.
    void next(const QString &type, const MessageBody &answer);
    void nextTimesOut(const QString &type); ///< at once
    void nextIsNotSent(const QString &type);
    void always(const QString &type, Answer answer);

    /// Answers of the type are kept back, in order, until release(). They are computed when the request comes.
    void hold(const QString &type);
    void release(const QString &type);

    void push(const QString &type, const VariantRecord &row);
    void disconnect(); ///< as when the connection is lost
    void reconnect();

    QList<Request> requests(const QString &type = {}) const; ///< empty type: all
    int count(const QString &type) const { return requests(type).size(); }
    QStringList unexpected() const; ///< types of the requests nobody scripted

    static MessageBody success(const RecordList &rows = {}, const VariantRecord &values = {});
    static MessageBody refusal(const QString &text);
    /// The page of rows that a paged query asks for, by position or by page; size: rows a page.
    static MessageBody page(const MessageBody &request, const RecordList &rows, int size);

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;
    void close() override;

protected:
    bool transmit(const QByteArray &envelope) override;

private:
    enum class Kind { Answered, TimesOut, NotSent };
    struct Step {
        Kind kind;
        MessageBody body;
    };

    Kind nextKind(const Envelope &envelope); ///< takes and records a scripted time-out or refusal to send
    MessageBody answerTo(const Request &request);
    void deliver(std::function<void()> delivery);
    void run();

    mutable QMutex m_mutex;
    QHash<QString, QList<Step>> m_next;
    QHash<QString, Answer> m_always;
    QSet<QString> m_held;
    QHash<QString, QList<QByteArray>> m_keptBack;
    QList<Request> m_requests;
    QStringList m_unexpected;

    std::deque<std::function<void()>> m_deliveries;
    QWaitCondition m_woken;
    bool m_stops = false;
    std::thread m_thread;
};

/// Reference data in a few words, as the server would send it.
struct ScriptedReference {
    struct Account {
        QString tradingAccount;
        QString productAccount;
        QString assetProp = QStringLiteral("Cash");
        QStringList exchanges = {QStringLiteral("SH"), QStringLiteral("SZ")};
    };
    struct Instrument {
        QString symbol;
        QString securityID;
        QString exchange;
        int dispFactor = 1;
        double lastPrice = 0;
        QString type = QStringLiteral("StockType");
        QString subType = QStringLiteral("MainBoardStock");
        VariantRecord further = {}; ///< fields of its row
    };
    struct Holding { ///< a position, or a security that may be borrowed
        QString tradingAccount;
        QString securityID;
        QString exchange;
        qint64 quantity = 0;
        QString loanState = {}; ///< of a margin security only
    };

    QString user = QStringLiteral("u1");
    QString organCode = QStringLiteral("org1");
    QStringList roles = {};
    QList<Account> accounts = {};
    QList<Instrument> instruments = {};
    QList<Holding> positions = {};
    QList<Holding> marginSecurities = {};
    RecordList orders = {}; ///< as the server sends them

    QMap<QString, RecordList> answers() const;   ///< to login and every query of a session that opens, by type
    void script(ScriptedChannel &channel) const; ///< the answers; subscriptions are accepted

    /// A session opened on a new scripted channel. channel stays valid until the session ends.
    std::unique_ptr<HostSession> open(ScriptedChannel *&channel, int requestTimeoutMs = 5000) const;
};
