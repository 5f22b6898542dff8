#pragma once

#include "HostExport.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

class IPlugin;

/// Loads plug-ins by their metadata. Use on the main thread. Loaded plug-ins stay loaded until the process ends.
class T0_HOST_EXPORT PluginLoader
{
public:
    struct Plugin {
        QString fileName;
        QJsonObject
            metaData; ///< Name, Version, CompatVersion, Category, Required, Arguments, Dependencies, Description
        IPlugin *plugin = nullptr;
        QString errorText; ///< empty when the plug-in is loaded and initialised
    };

    /// Reads metadata without loading, refuses what is no plug-in (IID "ZRAppPlugin"), lacks a Name or needs
    /// another host (CompatVersion's major number), loads the rest in order, calls initialize on each, then
    /// extensionsInitialized in reverse order. A process loads the same file once, whichever loader it asks. errorText
    /// of each names the file.
    QList<Plugin> load(const QStringList &fileNames);

    /// load() of every shared library of a folder, ascending by file name; others are left out.
    QList<Plugin> loadFolder(const QString &folder);

    static QString compatVersion(); ///< of this host, "2.0.0"
};
