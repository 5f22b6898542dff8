#pragma once

#include "SimChannel.h"

#include "HostSession.h"
#include "Model.h"
#include "RefreshThrottle.h"

#include <memory>

class ManualT0LogicPresenterClass;
class ManualT0LogicPrivate;

/// A hub, its presenter and their host on the simulation's thread, and beside them the naive model, which is told
/// what the hub is told. After everything that reaches the hub both are compared.
class Client
{
public:
    Client(World &world, ModelGateway &gateway, Faults &faults);
    ~Client();

    SimChannel &channel() { return *m_channel; }
    ManualT0LogicPrivate &hub() { return *m_hub; }
    Model model;

    /// The hub holds no lock and does not wait: everybody may read.
    bool isReadable() const { return !m_world.isRunning(m_door.get()); }

    /// Before and after what a caller does to hub and model; anyQueries: what the hub asks is not foretold.
    void begins() { m_asked.clear(); }
    void compare(const QString &after, bool anyQueries = false);

    /// With every event delivered: the hub has announced what the model has, in the same order.
    void compareEvents();

    /// A hub that loads now from this gateway answers like ours.
    void compareWithGateway();

    QStringList shownTraders() const; ///< whose usage the gateway shows our user
    bool loads() const;               ///< a family is being loaded
    bool refreshAccepted();           ///< a refresh of all would be; counts it as one

    // What the server has accepted from this client stays: no answer from before it may undo it.
    void productsAccepted();
    void productsChangedByOthers();
    void resourcesDeleted(const QStringList &ids);
    void checkOwnChanges();
    int productsOfOthers = 0; ///< how often others have changed them

private:
    void connectHub();
    void listen();
    void answeredAccount(const QString &account);
    template <typename Entry> void enter(const QString &what, Entry entry);

    World &m_world;
    ModelGateway &m_gateway;
    Faults &m_faults;
    SimChannel *m_channel = nullptr;
    std::unique_ptr<HostSession> m_session;
    std::unique_ptr<ManualT0LogicPrivate> m_hub;
    ManualT0LogicPresenterClass *m_presenter = nullptr;
    std::unique_ptr<QObject> m_door;     ///< what the presenter tells the hub comes through here
    std::unique_ptr<QObject> m_listener; ///< of the hub's events
    QStringList m_asked;
    QStringList m_events;
    RefreshThrottle m_throttle;
    QSet<QString> m_deleted;
    bool m_productsOwn = false;
    bool m_checksItself = false; ///< the hub, again and again
};
