#include "ManualT0LogicPluginPlugin.h"

#include "Id.h"
#include "ManualT0LogicPlugin.h"

#include <new>

namespace {

void *constructPlugin(void *where, const void *)
{
    return new (where) ManualT0LogicPlugin(nullptr); // never a copy: an object has an identity
}

void destructPlugin(void *plugin)
{
    static_cast<ManualT0LogicPlugin *>(plugin)->~ManualT0LogicPlugin();
}

int registerPluginType()
{
    return QMetaType::registerNormalizedType(QByteArrayLiteral("ManualT0LogicPlugin"), destructPlugin, constructPlugin,
                                             int(sizeof(ManualT0LogicPlugin)),
                                             QMetaType::NeedsConstruction | QMetaType::NeedsDestruction, nullptr);
}

} // namespace

bool ManualT0LogicPluginPlugin::initialize(const QStringList &arguments, QString *errorString, const QString &dllName)
{
    Q_UNUSED(arguments)
    Q_UNUSED(errorString)
    auto *descriptor = new QObject;
    descriptor->setObjectName(QStringLiteral("ManualT0LogicPlugin"));
    descriptor->setProperty("id", Id(ManualT0LogicPlugin::instanceId()).toSetting());
    descriptor->setProperty("dllname", dllName);
    descriptor->setProperty("metaId", registerPluginType());
    addAutoReleasedObject(descriptor);
    return true;
}

void ManualT0LogicPluginPlugin::extensionsInitialized() {}
