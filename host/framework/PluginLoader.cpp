#include "PluginLoader.h"

#include "HostLog.h"
#include "IPlugin.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QVersionNumber>

namespace {

QString refusal(const QJsonObject &loaderData)
{
    const QJsonObject metaData = loaderData.value(QLatin1String("MetaData")).toObject();
    if (loaderData.isEmpty())
        return QStringLiteral("is no plug-in");
    if (loaderData.value(QLatin1String("IID")).toString() != QLatin1String(qobject_interface_iid<IPlugin *>()))
        return QStringLiteral("is no plug-in of this host: its IID is \"%1\"")
            .arg(loaderData.value(QLatin1String("IID")).toString());
    if (metaData.value(QLatin1String("Name")).toString().isEmpty())
        return QStringLiteral("has no Name in its metadata");

    const QString needed = metaData.value(QLatin1String("CompatVersion")).toString();
    const int ours = QVersionNumber::fromString(PluginLoader::compatVersion()).majorVersion();
    const QVersionNumber theirs = QVersionNumber::fromString(needed);
    if (theirs.isNull() || theirs.majorVersion() != ours)
        return QStringLiteral("needs a host of CompatVersion \"%1\", this one is %2")
            .arg(needed, PluginLoader::compatVersion());
    return {};
}

/// Canonical paths of what this process has loaded. Main thread only.
QStringList &loadedFiles()
{
    static QStringList files;
    return files;
}

QString withFile(const QString &fileName, const QString &what)
{
    return QStringLiteral("%1: %2").arg(fileName, what);
}

/// Loads one file and initialises its plug-in; what went wrong, without the file's name.
QString loadOne(PluginLoader::Plugin &entry)
{
    QPluginLoader loader(entry.fileName);
    if (!QFileInfo::exists(entry.fileName))
        return QStringLiteral("no such file");
    entry.metaData = loader.metaData().value(QLatin1String("MetaData")).toObject();
    const QString refused = refusal(loader.metaData());
    if (!refused.isEmpty())
        return refused;

    loader.setLoadHints(QLibrary::PreventUnloadHint | QLibrary::ExportExternalSymbolsHint);
    auto *plugin = qobject_cast<IPlugin *>(loader.instance());
    if (!plugin)
        return loader.isLoaded() ? QStringLiteral("its root object is no IPlugin") : loader.errorString();

    QStringList arguments;
    const QJsonArray listed = entry.metaData.value(QLatin1String("Arguments")).toArray();
    for (const QJsonValue &argument : listed)
        arguments.append(argument.toString());
    QString errorText;
    if (!plugin->initialize(arguments, &errorText, entry.fileName))
        return errorText.isEmpty() ? QStringLiteral("initialize failed") : errorText;
    entry.plugin = plugin;
    return {};
}

} // namespace

QString PluginLoader::compatVersion()
{
    return QStringLiteral("2.0.0");
}

QList<PluginLoader::Plugin> PluginLoader::load(const QStringList &fileNames)
{
    QList<Plugin> plugins;
    for (const QString &fileName : fileNames) {
        Plugin entry;
        entry.fileName = fileName;
        const QString canonical = QFileInfo(fileName).canonicalFilePath();
        const QString error = loadedFiles().contains(canonical) ? QStringLiteral("is loaded already") : loadOne(entry);
        if (!error.isEmpty())
            entry.errorText = withFile(fileName, error);
        else
            loadedFiles().append(canonical);
        HOST_INFO("PluginLoader", fileName << entry.errorText);
        plugins.append(entry);
    }
    for (auto it = plugins.crbegin(); it != plugins.crend(); ++it) {
        if (it->plugin)
            it->plugin->extensionsInitialized();
    }
    return plugins;
}

QList<PluginLoader::Plugin> PluginLoader::loadFolder(const QString &folder)
{
    QStringList libraries;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        if (QLibrary::isLibrary(file.fileName()))
            libraries.append(file.absoluteFilePath());
    }
    return load(libraries);
}
