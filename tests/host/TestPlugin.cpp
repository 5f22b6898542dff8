#include "IPlugin.h"

#include <QtCore/QVariant>

/// Tells what the loader did with it through its own properties.
class TestPlugin : public IPlugin
{
    Q_OBJECT
    Q_INTERFACES(IPlugin)
#if defined(T0_PLUGIN_NONAME)
    Q_PLUGIN_METADATA(IID "ZRAppPlugin" FILE "noname.json")
#elif defined(T0_PLUGIN_OLDCOMPAT)
    Q_PLUGIN_METADATA(IID "ZRAppPlugin" FILE "oldcompat.json")
#elif defined(T0_PLUGIN_OTHERIID)
    Q_PLUGIN_METADATA(IID "AnotherPlugin" FILE "good.json")
#else
    Q_PLUGIN_METADATA(IID "ZRAppPlugin" FILE "good.json")
#endif

public:
    bool initialize(const QStringList &arguments, QString *errorString, const QString &dllName) override
    {
        setProperty("arguments", arguments);
        setProperty("dllName", dllName);
        setProperty("initialized", property("initialized").toInt() + 1);
        addAutoReleasedObject(new QObject);
        if (!errorString)
            return false;
        *errorString = qEnvironmentVariable("T0_TEST_PLUGIN_REFUSES");
        return errorString->isEmpty();
    }
    void extensionsInitialized() override
    {
        setProperty("extended", property("extended").toInt() + 1);
    }
};

#include "TestPlugin.moc"
