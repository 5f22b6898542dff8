#include "HostLog.h"
#include "ManualT0LogicPlugin.h"
#include "Probe.h"

// The plug-in object itself, built from the library's objects, since the installed library hides it. Argument: the
// instance id that the host gave, none for no id. Prints the id after initialize().
int main(int argc, char **argv)
{
    const QString given = argc > 1 ? QString::fromLatin1(argv[1]) : QString();
    Probe probe(argc, argv);
    ManualT0LogicPlugin plugin(nullptr);
    if (!given.isEmpty())
        plugin.setPluginWidgetPropety(PluginPropety::PLUGININSTANCE_ID, given);
    plugin.initialize();
    std::printf("%s\n", qPrintable(plugin.pluginInstanceID()));
    plugin.stop();
    plugin.stop(); // a program may come here by its last window and by its end
    return 0;
}
