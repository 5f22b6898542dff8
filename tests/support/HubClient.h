#pragma once

#include "HostSession.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "ManualT0LogicPrivate.h"
#include "MessageChannel.h"

constexpr int longEnoughMs = 60000;

/// A user's client with everything but a window: session, hub and presenter; its data are loading. Refreshes and
/// retries of the hub do not come while a test lasts; what it collects is announced at once.
class HubClient
{
public:
    HubClient(std::unique_ptr<MessageChannel> channel, const QString &user)
    {
        HostConfig config;
        config.channel = std::move(channel);
        config.user = user;
        config.requestTimeoutMs = longEnoughMs;
        QString errorText;
        session = HostSession::open(std::move(config), errorText);
        if (!session)
            qFatal("%s", qPrintable(errorText));
        hub = std::make_unique<ManualT0LogicPrivate>(nullptr, HubTiming{600000, 600000, 1, 600000});
        presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
        ManualT0LogicPlugin::connectHub(hub.get(), presenter, Qt::AutoConnection);
        hub->InitData();
    }

    ~HubClient()
    {
        hub->stop();
        ZrPresenterClass::release(presenter);
    }

    bool settle() { return session->settle(longEnoughMs); }

    std::unique_ptr<HostSession> session;
    std::unique_ptr<ManualT0LogicPrivate> hub;
    ManualT0LogicPresenterClass *presenter = nullptr;
};
