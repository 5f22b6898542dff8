#include "IPlugin.h"
#include "PluginLoader.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLibrary>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <cstdio>

// Loads the installed plug-in and a user-interface part that is linked against the installed library, in the order
// that the first argument names, and asks both for what the other has set. Arguments: "plugin-first" or
// "part-first", the plug-in folder, the part's file. Prints "one hub" or what is wrong.
namespace {

using SetAccounts = void (*)(const QStringList &);
using Accounts = QStringList (*)();

IPlugin *loadPlugin(const QString &folder)
{
    PluginLoader loader;
    const QList<PluginLoader::Plugin> plugins = loader.loadFolder(folder);
    if (plugins.size() != 1 || !plugins.first().plugin)
        qFatal("no plug-in in %s: %s", qPrintable(folder), qPrintable(plugins.value(0).errorText));
    return plugins.first().plugin;
}

QFunctionPointer symbol(QLibrary &library, const char *name)
{
    const QFunctionPointer function = library.resolve(name);
    if (!function)
        qFatal("%s", qPrintable(library.errorString()));
    return function;
}

/// Files of that name that are mapped into this process.
int mappedFiles(const QByteArray &name)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    maps.open(QIODevice::ReadOnly);
    QSet<QByteArray> files;
    const QList<QByteArray> lines = maps.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.contains(name))
            files.insert(line.mid(line.indexOf('/')));
    }
    return files.size();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 4)
        qFatal("arguments: plugin-first|part-first FOLDER PART");
    const bool pluginFirst = arguments.at(1) == QLatin1String("plugin-first");

    QLibrary part(arguments.at(3));
    if (pluginFirst)
        loadPlugin(arguments.at(2));
    if (!part.load())
        qFatal("%s", qPrintable(part.errorString()));
    if (!pluginFirst)
        loadPlugin(arguments.at(2));

    // The plug-in's own copy of the facade, found in the file that the host's loader opened.
    QLibrary plugin(arguments.at(2) + QStringLiteral("/libManualT0Logic.so"));
    const auto pluginsAccounts =
        reinterpret_cast<Accounts>(symbol(plugin, "_ZN13ManualT0Logic22GetCurrentTradeAccountEv"));
    const auto set = reinterpret_cast<SetAccounts>(symbol(part, "partSetTradeAccounts"));
    set({QStringLiteral("A1"), QStringLiteral("A2")});

    if (pluginsAccounts() != QStringList{QStringLiteral("A1"), QStringLiteral("A2")})
        std::puts("the plug-in does not see what the part has set");
    else if (mappedFiles("libManualT0Logic.so") != 1)
        std::puts("the library is mapped more than once");
    else
        std::puts("one hub");
    return 0;
}
