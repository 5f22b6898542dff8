#pragma once

#include "HostExport.h"

#include <QtCore/QSettings>
#include <QtCore/QVariant>

/// The host's settings store. Callable from any thread, also under a caller's lock: never calls out and never
/// waits for the disk (the store is written by its own timer, when the session closes and at exit).
class T0_HOST_EXPORT HCore
{
public:
    static HCore *instance();

    /// An invalid QVariant when the key is absent. group and file: "" for the host's own.
    QVariant settings(const QString &key, const QString &group, const QString &file, QSettings::Scope scope) const;

    /// A QByteArray comes back so that toString() gives its UTF-8 text.
    void saveSetting(const QString &key, const QVariant &value, const QString &group, const QString &file,
                     QSettings::Scope scope);

private:
    HCore() = default;
};
