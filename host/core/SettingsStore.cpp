#include "SettingsStore.h"

#include "HCore.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QWaitCondition>

#include <cstdlib>
#include <thread>

namespace {

constexpr int writeDelayMs = 500; ///< changes that come close together are written together

using Values = QHash<QString, QVariant>;

struct Store {
    QMutex mutex;
    QString directory;
    QHash<QString, Values> files; ///< by path
    QHash<QString, Values> unwritten;
    QWaitCondition woken;
    bool stops = false;

    QMutex writing; ///< one writer at a time; never taken with mutex held
    std::thread writer;
};

Store &store()
{
    static auto *store = new Store; // never deleted: settings may be asked for while the process ends
    return *store;
}

QString pathOf(const QString &file, QSettings::Scope scope)
{
    const QString name = file.isEmpty() ? QStringLiteral("host") : file;
    const QString suffix = scope == QSettings::SystemScope ? QStringLiteral(".system.ini") : QStringLiteral(".ini");
    return QDir(store().directory).filePath(name + suffix);
}

QString keyOf(const QString &key, const QString &group)
{
    return group.isEmpty() ? key : group + QLatin1Char('/') + key;
}

Values readFile(const QString &path)
{
    Values values;
    const QSettings settings(path, QSettings::IniFormat);
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        values.insert(key, settings.value(key));
    return values;
}

void writeAll()
{
    QMutexLocker order(&store().writing);
    QHash<QString, Values> changes;
    {
        QMutexLocker lock(&store().mutex);
        changes.swap(store().unwritten);
    }
    for (auto file = changes.cbegin(); file != changes.cend(); ++file) {
        QSettings settings(file.key(), QSettings::IniFormat);
        for (auto it = file->cbegin(); it != file->cend(); ++it)
            settings.setValue(it.key(), it.value());
        settings.sync();
        if (settings.status() != QSettings::NoError)
            qWarning("settings: %s cannot be written", qUtf8Printable(file.key()));
    }
}

void runWriter()
{
    QMutexLocker lock(&store().mutex);
    while (!store().stops) {
        if (store().unwritten.isEmpty()) {
            store().woken.wait(&store().mutex);
            continue;
        }
        const QDeadlineTimer due(writeDelayMs);
        while (!store().stops && store().woken.wait(&store().mutex, due))
            continue;
        lock.unlock();
        writeAll();
        lock.relock();
    }
}

void stopWriter()
{
    {
        QMutexLocker lock(&store().mutex);
        store().stops = true;
        store().woken.wakeAll();
    }
    if (store().writer.joinable())
        store().writer.join();
    writeAll();
}

} // namespace

void SettingsStore::open(const QString &directory)
{
    QMutexLocker lock(&store().mutex);
    store().directory = directory;
    store().files.clear();
    store().stops = false;
    if (directory.isEmpty())
        return;
    // Everything is read now: a caller who holds a lock later finds it in memory.
    QDir().mkpath(directory);
    const QStringList files = QDir(directory).entryList({QStringLiteral("*.ini")}, QDir::Files);
    for (const QString &file : files)
        store().files.insert(QDir(directory).filePath(file), readFile(QDir(directory).filePath(file)));
    store().writer = std::thread(runWriter);
    static const int atExit = std::atexit(stopWriter); // a process may end without closing its session
    Q_UNUSED(atExit)
}

void SettingsStore::close()
{
    stopWriter();
    QMutexLocker lock(&store().mutex);
    store().directory.clear();
    store().files.clear();
    store().unwritten.clear(); // of somebody who came after the writer; another session is not to write it
}

QVariant SettingsStore::value(const QString &key, const QString &group, const QString &file, QSettings::Scope scope)
{
    QMutexLocker lock(&store().mutex);
    return store().files.value(pathOf(file, scope)).value(keyOf(key, group));
}

void SettingsStore::setValue(const QString &key, const QVariant &value, const QString &group, const QString &file,
                             QSettings::Scope scope)
{
    QMutexLocker lock(&store().mutex);
    const QString path = pathOf(file, scope);
    store().files[path].insert(keyOf(key, group), value);
    if (store().directory.isEmpty())
        return;
    store().unwritten[path].insert(keyOf(key, group), value);
    store().woken.wakeAll();
}

HCore *HCore::instance()
{
    static auto *core = new HCore; // never deleted: asked for while the process ends
    return core;
}

QVariant HCore::settings(const QString &key, const QString &group, const QString &file, QSettings::Scope scope) const
{
    return SettingsStore::value(key, group, file, scope);
}

void HCore::saveSetting(const QString &key, const QVariant &value, const QString &group, const QString &file,
                        QSettings::Scope scope)
{
    SettingsStore::setValue(key, value, group, file, scope);
}
