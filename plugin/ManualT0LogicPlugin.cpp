#include "ManualT0LogicPlugin.h"

#include "FamilyLock.h"
#include "HostLog.h"
#include "ManualT0LogicPresenterClass.h"
#include "ManualT0LogicPrivate.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMutex>

#include <atomic>

namespace {

ManualT0LogicPlugin &theOne()
{
    FamilyLock::makePool();
    static ManualT0LogicPlugin plugin(nullptr);
    return plugin;
}

void stopTheOne()
{
    theOne().stop();
}

} // namespace

bool ManualT0LogicPlugin::start()
{
    static std::atomic<bool> started{false};
    static QRecursiveMutex mutex; // recursive: initialize() may come back here through what it calls
    static bool starting = false;

    if (started.load(std::memory_order_acquire))
        return true;
    const QMutexLocker lock(&mutex);
    if (started.load(std::memory_order_relaxed))
        return true;
    if (starting)
        return false;
    starting = true;
    theOne().initialize();
    starting = false;
    started.store(true, std::memory_order_release);
    return true;
}

QString ManualT0LogicPlugin::instanceId()
{
    return QStringLiteral("ZRApp.ManualT0Logic");
}

ManualT0LogicPlugin::ManualT0LogicPlugin(QObject *parent)
    : ZrPluginBaseObject(parent)
{}

ManualT0LogicPlugin::~ManualT0LogicPlugin()
{
    HOST_DEBUG("ManualT0LogicPlugin", "ManualT0LogicPlugin::~ManualT0LogicPlugin");
    // The hub is not touched here: which of the two statics dies first is not fixed.
    ZrPresenterClass::release(presenter);
}

void ManualT0LogicPlugin::initialize()
{
    if (pluginWidgetPropety(PluginPropety::PLUGININSTANCE_ID).toString().isEmpty())
        setPluginWidgetPropety(PluginPropety::PLUGININSTANCE_ID, instanceId());
    presenter = new ManualT0LogicPresenterClass(pluginInstanceID(), this);
    HOST_DEBUG("ManualT0LogicPlugin", "ManualT0LogicPlugin::initialize");
    connect(this, &ManualT0LogicPlugin::signalInitData, presenter, &ManualT0LogicPresenterClass::slotInitData);
    connectHub(&ManualT0LogicPrivate::instance(), presenter, Qt::AutoConnection);

    // aboutToQuit is sent only when an event loop ran; the post routine also serves programs without one.
    if (QCoreApplication *application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &ManualT0LogicPlugin::stop, Qt::DirectConnection);
    qAddPostRoutine(stopTheOne);
    emit signalInitData();
}

void ManualT0LogicPlugin::stop()
{
    ManualT0LogicPrivate::instance().stop();
    ZrPresenterClass::release(presenter);
}

void ManualT0LogicPlugin::connectHub(ManualT0LogicPrivate *hub, ManualT0LogicPresenterClass *presenter,
                                     Qt::ConnectionType type)
{
    using Hub = ManualT0LogicPrivate;
    using Presenter = ManualT0LogicPresenterClass;
    connect(hub, &Hub::signalQueryT0Traders, presenter, &Presenter::slotQueryT0Traders, type);
    connect(hub, &Hub::signalQueryResources, presenter, &Presenter::slotQueryResources, type);
    connect(hub, &Hub::signalQuerySecurityPool, presenter, &Presenter::slotQuerySecurityPool, type);
    connect(hub, &Hub::signalQueryPoolRealTimeData, presenter, &Presenter::slotQueryPoolRealTime, type);
    connect(hub, &Hub::signalQueryT0AccountPriority, presenter, &Presenter::slotQueryAccountPriority, type);

    connect(presenter, &Presenter::signalQueryT0ProductsResponse, hub, &Hub::slotQueryT0ProductsResponse, type);
    connect(presenter, &Presenter::signalQueryT0TradersResponse, hub, &Hub::slotQueryT0TradersResponse, type);
    // With all four arguments: the short form of the signal would deliver a second time.
    connect(presenter, &Presenter::signalQueryResourceResponse, hub, &Hub::slotQueryResourceResponse, type);
    connect(presenter, &Presenter::signalQuerySecurityPoolResponse, hub, &Hub::slotQuerySecurityPoolResponse, type);
    connect(presenter, &Presenter::signalQueryPoolRealTimeResponse, hub, &Hub::slotQueryPoolRealTimeResponse, type);
    connect(presenter, &Presenter::signalRecvSecurityPoolChangedPush, hub, &Hub::slotRecvSecurityPoolChangedPush, type);
    connect(presenter, &Presenter::signalRecvPoolRealtimeChangedPush, hub, &Hub::slotRecvPoolRealtimeChangedPush, type);
    connect(presenter, &Presenter::signalQueryAccountPriorityResponse, hub, &Hub::slotQueryT0AccountPriorityResponse,
            type);
    // Last: the hub takes this one for a sign that all are made, and refreshes nothing before.
    connect(hub, &Hub::signalQueryT0Products, presenter, &Presenter::slotQueryT0Products, type);
}
