#pragma once

#include "Client.h"

/// Users and other people, at random: one client's users query, choose, refresh, change and order; others trade and
/// manage at the gateway; somebody pulls the plug.
class Users
{
public:
    Users(World &world, ModelGateway &gateway, Faults &faults, Client &client);

    /// Somebody does something now, and so again until the end.
    void actUntil(qint64 endUs);

    bool isBusy() const { return m_calls > 0; }

    /// With nothing under way: what the callers were told is what happened.
    void checkClaims();

private:
    /// What a user was told of a change.
    struct Claim {
        QString what;
        QString code;
        QStringList requests;
    };

    void othersAct();
    void strangePush();
    void userActs();
    void refreshes();
    void changes();
    void alterProducts();
    void orders();
    void follows();
    QString callChange(int which, QString &errorText);
    bool isUnknown(const Claim &claim) const;
    template <typename Call> Claim claim(const QString &what, Call call);
    VariantRecord someResource();
    VariantRecord newPool();
    RecordList poolRows(bool isPublic);

    World &m_world;
    ModelGateway &m_gateway;
    Faults &m_faults;
    Client &m_client;
    int m_calls = 0;       ///< of users, one waiting inside the other
    int m_alterations = 0; ///< of the products, begun
    QVector<Claim *> m_open;
    QVector<Claim> m_claims;
    QStringList m_unknownOrders; ///< request ids
};
