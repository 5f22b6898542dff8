#pragma once

#include "ZrPluginBaseObject.h"

#include <QtCore/QPointer>

class ManualT0LogicPresenterClass;
class ManualT0LogicPrivate;

/// The plug-in object: makes and releases the presenter and connects it with the hub. The one that works is a
/// function-local static, made by the first start().
class ManualT0LogicPlugin : public ZrPluginBaseObject
{
    Q_OBJECT

public:
    /// Makes and initialises the one plug-in object when there is none yet; any thread. False only when called
    /// from inside its own initialisation: nothing is connected yet.
    static bool start();

    static QString instanceId(); ///< "ZRApp.ManualT0Logic", the id when the host gave none

    explicit ManualT0LogicPlugin(QObject *parent);

    /// Releases the presenter unless that was done earlier.
    ~ManualT0LogicPlugin() override;

    /// Makes the presenter and the connections, and arranges for stop() while the application object lives.
    void initialize() override;

    /// Ends the hub's thread, then releases the presenter, so that no code of the library runs once the
    /// application object is gone. Callable twice.
    void stop();

    /// The connections between a hub and a presenter. type: AutoConnection delivers queued, since each has a
    /// thread of its own; without own threads ask for QueuedConnection.
    static void connectHub(ManualT0LogicPrivate *hub, ManualT0LogicPresenterClass *presenter, Qt::ConnectionType type);

signals:
    void signalInitData();

private:
    QPointer<ManualT0LogicPresenterClass> presenter;
};
