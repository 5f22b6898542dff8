#pragma once

#include "Claims.h"
#include "Client.h"

/// Users and other people, at random: one client's users query, choose, refresh, change and order; others trade and
/// manage at the gateway; somebody pulls the plug.
class Users
{
public:
    Users(World &world, ModelGateway &gateway, Faults &faults, Client &client);

    /// Somebody does something now, and so again until the end.
    void actUntil(qint64 endUs);

    void checkClaims() { m_claims.check(); }

private:
    void othersAct();
    void strangePush();
    void userActs();
    void refreshes();
    void changes();
    void alterProducts();
    void orders();
    void follows();
    void sets();
    QString callChange(int which, QString &errorText);
    VariantRecord someResource();
    VariantRecord newPool();
    RecordList poolRows(bool isPublic);

    World &m_world;
    ModelGateway &m_gateway;
    Faults &m_faults;
    Client &m_client;
    int m_calls = 0;       ///< of users, one waiting inside the other
    int m_alterations = 0; ///< of the products, begun
    Claims m_claims;
    QStringList m_unknownOrders; ///< request ids
};
