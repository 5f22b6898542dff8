#include "Tests.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMutex>
#include <QtCore/QReadWriteLock>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtCore/QWaitCondition>
#include <QtTest/QtTest>

#include <memory>
#include <vector>

using Rows = QList<QVariantMap>;

/// Lives on a thread of its own; its members have no lock, calls through its event loop order every access.
class TsanWorker : public QObject
{
    Q_OBJECT

public:
    QVariantMap last;
    int sum = 0;

public slots:
    QVariantMap answer(QVariantMap query)
    {
        query[QStringLiteral("sum")] = ++sum;
        last = query;
        return query;
    }

    void take(QVariantMap values, QStringList names, QList<QVariantMap> rows)
    {
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            last[value.key()] = value.value();
        sum += names.size() + rows.size();
        emit taken(sum);
    }

signals:
    void give(QVariantMap values, QStringList names, QList<QVariantMap> rows);
    void taken(int sum);
};

/// Correct programs, one for each way in which threads of this system hand something over. Any report of the
/// thread sanitizer ends the process with its own status, so every function here passes by being silent.
class TsanPatternsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<Rows>("QList<QVariantMap>"); }

    void blockingCallOrdersBothSides()
    {
        QThread thread;
        TsanWorker worker;
        worker.moveToThread(&thread);
        thread.start();
        for (int i = 1; i <= 100; ++i) {
            QVariantMap answer;
            QMetaObject::invokeMethod(&worker, "answer", Qt::BlockingQueuedConnection,
                                      Q_RETURN_ARG(QVariantMap, answer),
                                      Q_ARG(QVariantMap, (QVariantMap{{QStringLiteral("i"), i}})));
            QCOMPARE(answer.value(QStringLiteral("sum")), QVariant(i));
            QCOMPARE(worker.sum, i);
            QCOMPARE(worker.last.value(QStringLiteral("i")), QVariant(i));
        }
        thread.quit();
        thread.wait();
        QCOMPARE(worker.sum, 100);
    }

    /// The sender changes in place what it has just sent.
    void queuedSignalOwnsItsArguments()
    {
        QThread thread;
        auto *worker = new TsanWorker;
        worker->moveToThread(&thread);
        connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
        thread.start();
        TsanWorker sender;
        connect(&sender, &TsanWorker::give, worker, &TsanWorker::take);
        int received = 0;
        QObject context;
        connect(worker, &TsanWorker::taken, &context, [&received](int sum) { received = sum; });
        QVariantMap values;
        QStringList names{QStringLiteral("n")};
        Rows rows{QVariantMap{{QStringLiteral("x"), 1}}};
        for (int i = 0; i < 300; ++i) {
            values[QStringLiteral("a")] = i;
            emit sender.give(values, names, rows);
            values[QStringLiteral("b")] = QString::number(i);
            rows[0][QStringLiteral("y")] = i;
            names[0] = QStringLiteral("changed");
        }
        QTRY_COMPARE_WITH_TIMEOUT(received, 600, 30000);
        thread.quit();
        thread.wait();
    }

    void functorPostedFromAnotherThread()
    {
        QObject context;
        QVariantMap collected;
        int calls = 0;
        std::vector<std::unique_ptr<QThread>> threads;
        for (int t = 0; t < 3; ++t) {
            threads.emplace_back(QThread::create([&] {
                for (int i = 0; i < 100; ++i) {
                    const QVariantMap payload{{QStringLiteral("l"), QVariantList{1, i}}};
                    const auto collect = [&, i, payload] {
                        collected[QString::number(i % 7)] = payload;
                        ++calls;
                    };
                    QMetaObject::invokeMethod(&context, collect, Qt::QueuedConnection);
                    QTimer::singleShot(i % 2, &context, collect);
                }
            }));
            threads.back()->start();
        }
        QTRY_COMPARE_WITH_TIMEOUT(calls, 600, 30000);
        for (const auto &thread : threads)
            thread->wait();
    }

    void waitConditionAndSemaphoreHandOver()
    {
        QMutex mutex;
        QWaitCondition filled;
        QSemaphore done;
        std::vector<int> queue;
        int sum = 0;
        const std::unique_ptr<QThread> consumer(QThread::create([&] {
            for (int taken = 0; taken < 200;) {
                const QMutexLocker locker(&mutex);
                while (queue.empty())
                    filled.wait(&mutex);
                taken += int(queue.size());
                queue.clear();
                sum = taken;
            }
            done.release();
        }));
        consumer->start();
        for (int i = 0; i < 200; ++i) {
            const QMutexLocker locker(&mutex);
            queue.push_back(i);
            filled.wakeOne();
        }
        done.acquire();
        QCOMPARE(sum, 200);
        consumer->wait();
    }

    /// Readers keep copies of records, the writer goes on changing the cache.
    void recordsOutliveTheReadLock()
    {
        QReadWriteLock lock;
        QHash<QString, QVariantMap> cache;
        for (int i = 0; i < 20; ++i)
            cache[QString::number(i)] = {{QStringLiteral("a"), i},
                                         {QStringLiteral("l"), QStringList{QStringLiteral("1")}}};
        const auto read = [&] {
            for (int i = 0; i < 200; ++i) {
                QVariantMap record;
                QVariantList all;
                {
                    const QReadLocker locker(&lock);
                    record = qAsConst(cache).value(QStringLiteral("3"));
                    for (const QVariantMap &row : qAsConst(cache))
                        all << row;
                }
                QVariant held = all;
                all.clear();
                held = record;
            }
        };
        std::vector<std::unique_ptr<QThread>> readers;
        for (int i = 0; i < 2; ++i) {
            readers.emplace_back(QThread::create(read));
            readers.back()->start();
        }
        for (int i = 0; i < 200; ++i) {
            const QWriteLocker locker(&lock);
            for (QVariantMap &row : cache)
                row[QStringLiteral("a")] = i;
        }
        for (const auto &reader : readers)
            reader->wait();
        QCOMPARE(cache.value(QStringLiteral("3")).value(QStringLiteral("a")), QVariant(199));
    }
};
T0_REGISTER_TEST(TsanPatternsTest)

#include "TsanPatternsTest.moc"
