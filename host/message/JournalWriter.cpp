#include "JournalWriter.h"

#include "MasterBusinessDataInterface.h"
#include "message/JournalFrame.h"
#include "message/RequestTexts.h"

#include <QtCore/QDateTime>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QVector>
#include <QtCore/QWaitCondition>

#include <thread>

#include <unistd.h>

namespace {

constexpr qint64 maxWaitingBytes = 256 * 1024 * 1024;
constexpr int syncMs = 1000;

} // namespace

class JournalWriter::Private
{
public:
    void run();
    void finish();
    bool takeWaiting(QVector<JournalRecord> &records); ///< waits for them; false at the end
    void fail(const QString &why);                     ///< with the mutex held

    QFile file;
    QMutex mutex;
    QWaitCondition changed;
    QVector<JournalRecord> waiting;
    qint64 waitingBytes = 0;
    quint64 lastSequence = 0;
    bool finished = false;
    QString failure; ///< why nothing is written any more; the thread reads it once it is set

    std::thread thread;

private:
    bool write(const QVector<JournalRecord> &records); ///< false: errorString of the file says why
    void sync();

    QByteArray m_hash = JournalFrame::firstHash();
    QElapsedTimer m_sinceSync;
    bool m_isSynced = true;
};

void JournalWriter::Private::run()
{
    m_sinceSync.start();
    QVector<JournalRecord> records;
    while (takeWaiting(records)) {
        if (write(records))
            continue;
        QMutexLocker lock(&mutex);
        fail(file.errorString());
    }
    sync();
    if (!failure.isEmpty())
        MasterBusinessDataInterface::AddBusiMsg(Master_Values::BusiMsgLevel::Normal,
                                                RequestTexts::journalEnded(failure),
                                                Master_Values::BusiMsgType::SystemMsg, QString(), true, QString());
}

bool JournalWriter::Private::takeWaiting(QVector<JournalRecord> &records)
{
    QMutexLocker lock(&mutex);
    while (waiting.isEmpty() && !finished && failure.isEmpty()) {
        if (changed.wait(&mutex, m_isSynced ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(syncMs)))
            continue;
        lock.unlock(); // who appends does not wait for the disk
        sync();
        lock.relock();
    }
    records.clear();
    records.swap(waiting);
    waitingBytes = 0;
    return !records.isEmpty();
}

void JournalWriter::Private::fail(const QString &why)
{
    failure = why;
    waiting.clear();
    changed.wakeOne();
}

bool JournalWriter::Private::write(const QVector<JournalRecord> &records)
{
    for (const JournalRecord &record : records) {
        const QByteArray content = JournalFrame::encode(record);
        m_hash = JournalFrame::nextHash(m_hash, content);
        const QByteArray frame = JournalFrame::head(quint32(content.size())) + content + m_hash;
        if (file.write(frame) != frame.size())
            return false;
    }
    if (!file.flush())
        return false;
    m_isSynced = false;
    if (m_sinceSync.hasExpired(syncMs))
        sync();
    return true;
}

void JournalWriter::Private::sync()
{
    ::fdatasync(file.handle());
    m_isSynced = true;
    m_sinceSync.restart();
}

void JournalWriter::Private::finish()
{
    {
        QMutexLocker lock(&mutex);
        finished = true;
        changed.wakeAll();
    }
    thread.join();
}

std::shared_ptr<JournalWriter> JournalWriter::create(const QString &path, QString &errorText)
{
    auto d = std::make_unique<Private>();
    d->file.setFileName(path);
    const QByteArray first = JournalFrame::firstLine();
    const bool isOpen = d->file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    if (!isOpen || d->file.write(first) != first.size() || !d->file.flush()) {
        errorText = QStringLiteral("%1: %2").arg(path, d->file.errorString());
        return nullptr;
    }
    return std::shared_ptr<JournalWriter>(new JournalWriter(std::move(d)));
}

JournalWriter::JournalWriter(std::unique_ptr<Private> own)
    : d(std::move(own))
{
    d->thread = std::thread([this] { d->run(); });
}

JournalWriter::~JournalWriter()
{
    append(JournalRecord::Kind::Closed, {});
    d->finish();
}

void JournalWriter::append(JournalRecord::Kind kind, const Envelope &envelope)
{
    QMutexLocker lock(&d->mutex);
    if (!d->failure.isEmpty())
        return;
    if (d->waitingBytes > maxWaitingBytes)
        return d->fail(QStringLiteral("%1: the disk is too slow").arg(d->file.fileName()));
    d->waiting.append({kind, ++d->lastSequence, QDateTime::currentMSecsSinceEpoch(), envelope});
    d->waitingBytes += envelope.body.size();
    d->changed.wakeOne();
}
