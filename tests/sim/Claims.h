#pragma once

#include "ModelGateway.h"
#include "SimChannel.h"
#include "World.h"

/// What callers were told of their changes and orders, to be held against what the gateway has carried out.
class Claims
{
public:
    Claims(World &world, const ModelGateway &gateway, SimChannel &channel);

    /// Calls, and remembers the code that came back with the requests that were sent for it.
    QString hear(const QString &what, const std::function<QString()> &call);

    /// What was told of one request later: it was carried out, or it never will be.
    void hearLater(const QString &what, bool carriedOut, const QString &request);

    /// With nothing under way: what was told is what happened.
    void check();

private:
    struct Claim {
        QString what;
        QString code;
        QStringList requests;
    };
    bool isUnknown(const Claim &claim) const;
    void check(const Claim &claim);

    World &m_world;
    const ModelGateway &m_gateway;
    const SimChannel &m_channel;
    QVector<Claim *> m_open; ///< one call waiting inside the other
    QVector<Claim> m_heard;
};
