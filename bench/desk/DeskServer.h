#pragma once

#include "HostSession.h"
#include "VariantRecord.h"

#include <QtCore/QVector>

#include <atomic>
#include <memory>
#include <random>
#include <thread>

class ScriptedChannel;

/// A server with 50 accounts, 40 traders, 400 symbols and 2,000 usage records, each with its pool, that pushes as fast
/// as it is told to from a thread of its own.
class DeskServer
{
public:
    static constexpr int Accounts = 50;
    static constexpr int Traders = 40;
    static constexpr int Symbols = 400;
    static constexpr int UsageRecords = 2000;

    DeskServer();
    ~DeskServer(); ///< stops pushing

    /// A manager's session with it. The server must outlive it. Once.
    std::unique_ptr<HostSession> openSession();

    /// From now on: changed usage records and, ten to one, changed quotes.
    void startPushing(int usagePushesPerSecond);
    void stopPushing(); ///< callable twice
    qint64 pushed() const { return m_pushed; }

private:
    struct Record {
        QString account;
        QString trader;
        int symbol;
    };

    VariantRecord usage(const Record &record);
    VariantRecord pool(int number) const;
    VariantRecord resource(int number) const;
    void script();
    void pushUsage();
    void pushQuote();

    QVector<Record> m_records;
    ScriptedChannel *m_channel = nullptr; ///< of the session
    std::mt19937 m_random;
    qint64 m_time = 0; ///< of the newest usage record
    std::atomic<qint64> m_pushed{0};
    std::atomic<bool> m_stops{false};
    std::thread m_thread;
};
