#pragma once

#include <QtCore/QSettings>
#include <QtCore/QVariant>

/// What HCore reads and writes: a map in memory, written to INI files by a thread of its own. Thread-safe.
namespace SettingsStore {

void open(const QString &directory); ///< reads all files; empty: in memory only
void close();                        ///< writes what is not written, then forgets everything

QVariant value(const QString &key, const QString &group, const QString &file, QSettings::Scope scope);
void setValue(const QString &key, const QVariant &value, const QString &group, const QString &file,
              QSettings::Scope scope);

} // namespace SettingsStore
