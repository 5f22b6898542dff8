#include "ProfitHistory.h"

#include "CBusinessDataBase.h"
#include "HCore.h"
#include "HostLog.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtGui/QGuiApplication>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace {

constexpr int gapMs = 15000;
constexpr int keptDays = 10;

QString connectionName()
{
    return QStringLiteral("T0DeskProfitHistory");
}

QString dayOf(const QDateTime &marketTime)
{
    return marketTime.date().toString(Qt::ISODate);
}

QDateTime fromMs(const QVariant &ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms.toLongLong(), Qt::UTC);
}

} // namespace

/// The file. Everything but the constructor runs on the thread of the history.
class ProfitHistory::Store : public QObject
{
public:
    explicit Store(const QString &fileName)
        : m_fileName(fileName)
    {}

    void open()
    {
        QDir().mkpath(QFileInfo(m_fileName).absolutePath());
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName());
        database.setDatabaseName(m_fileName);
        database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        m_isOpen = database.open() && run(QStringLiteral("PRAGMA journal_mode = WAL")) &&
                   run(QStringLiteral("PRAGMA synchronous = NORMAL")) &&
                   run(QStringLiteral("CREATE TABLE IF NOT EXISTS profit (day TEXT NOT NULL, marketTime INTEGER NOT "
                                      "NULL, takenAt INTEGER NOT NULL, profit REAL NOT NULL, PRIMARY KEY (day, "
                                      "marketTime)) WITHOUT ROWID"));
        if (!m_isOpen)
            HOST_INFO("ProfitHistory",
                      "the profit of the day is not kept:" << m_fileName << m_errorText << database.lastError().text());
    }

    void close()
    {
        QSqlDatabase::database(connectionName(), false).close();
        QSqlDatabase::removeDatabase(connectionName());
    }

    QVector<ProfitSample> load(const QDateTime &marketNow)
    {
        QVector<ProfitSample> samples;
        if (!m_isOpen)
            return samples;
        run(QStringLiteral("DELETE FROM profit WHERE day = ? AND marketTime > ?"),
            {dayOf(marketNow), marketNow.toMSecsSinceEpoch()});
        run(QStringLiteral("DELETE FROM profit WHERE day NOT IN (SELECT DISTINCT day FROM profit ORDER BY day DESC "
                           "LIMIT ?)"),
            {keptDays});
        QSqlQuery query(QSqlDatabase::database(connectionName()));
        query.setForwardOnly(true);
        query.prepare(QStringLiteral("SELECT marketTime, takenAt, profit FROM profit WHERE day = ? ORDER BY "
                                     "marketTime"));
        query.addBindValue(dayOf(marketNow));
        query.exec();
        while (query.next())
            samples.append({fromMs(query.value(0)), fromMs(query.value(1)), query.value(2).toDouble()});
        return samples;
    }

    void add(const ProfitSample &sample)
    {
        if (m_isOpen)
            run(QStringLiteral("INSERT OR REPLACE INTO profit VALUES (?, ?, ?, ?)"),
                {dayOf(sample.marketTime), sample.marketTime.toMSecsSinceEpoch(), sample.takenAt.toMSecsSinceEpoch(),
                 sample.profit});
    }

private:
    bool run(const QString &statement, const QVariantList &values = {})
    {
        QSqlQuery query(QSqlDatabase::database(connectionName()));
        query.prepare(statement);
        for (const QVariant &value : values)
            query.addBindValue(value);
        if (query.exec())
            return true;
        m_errorText = query.lastError().text();
        return false;
    }

    const QString m_fileName;
    bool m_isOpen = false;
    QString m_errorText;
};

ProfitHistory::ProfitHistory(const QString &fileName, QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<QVector<ProfitSample>>();
    if (fileName.isEmpty())
        return;
    m_store = std::make_unique<Store>(fileName);
    m_store->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("ProfitHistory"));
    m_thread.start();
    QMetaObject::invokeMethod(
        m_store.get(), [store = m_store.get()] { store->open(); }, Qt::QueuedConnection);
}

ProfitHistory::~ProfitHistory()
{
    if (!m_store)
        return;
    // Behind every sample that waits.
    QMetaObject::invokeMethod(
        m_store.get(), [store = m_store.get()] { store->close(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void ProfitHistory::load(const QDateTime &marketNow)
{
    if (!m_store) {
        QMetaObject::invokeMethod(
            this, [this] { emit loaded({}); }, Qt::QueuedConnection);
        return;
    }
    QMetaObject::invokeMethod(
        m_store.get(), [this, marketNow] { emit loaded(m_store->load(marketNow)); }, Qt::QueuedConnection);
}

void ProfitHistory::add(const ProfitSample &sample)
{
    if (m_store)
        QMetaObject::invokeMethod(
            m_store.get(), [store = m_store.get(), sample] { store->add(sample); }, Qt::QueuedConnection);
}

QString ProfitHistory::fileOfUser()
{
    const QVariant chosen =
        HCore::instance()->settings(QStringLiteral("DeskHistoryFile"), {}, {}, QSettings::UserScope);
    if (chosen.isValid())
        return chosen.toString();
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        return {};
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    const QString user = QString::fromLatin1(CBusinessDataBase::GetLoginAccount().toUtf8().toPercentEncoding());
    return QStringLiteral("%1/profit-%2.sqlite").arg(folder, user);
}

QVector<QVector<ProfitSample>> ProfitHistory::unbroken(const QVector<ProfitSample> &samples)
{
    QVector<QVector<ProfitSample>> parts;
    for (int i = 0; i < samples.size(); ++i) {
        const bool continues = i > 0 && samples.at(i - 1).takenAt.msecsTo(samples.at(i).takenAt) <= gapMs;
        if (!continues)
            parts.append(QVector<ProfitSample>());
        parts.last().append(samples.at(i));
    }
    return parts;
}
