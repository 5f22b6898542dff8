#pragma once

#include "VariantRecord.h"
#include "ZrPresenterClass.h"

/// Turns the hub's load signals into queries to the server and hands the answers back as signals; receives the
/// real-time push. Runs on its own thread, one query at a time; keeps no data. Made and released by
/// ManualT0LogicPlugin.
class ManualT0LogicPresenterClass : public ZrPresenterClass
{
    Q_OBJECT

public:
    ManualT0LogicPresenterClass(const QString &pluginInstanceId, ZrPluginBaseObject *owner);
    ~ManualT0LogicPresenterClass() override;

    void onPush(const QString &srcId, const QString &msgType, const QVariant &msg) override;
    void onResponse(int status, const QString &srcId, const QString &msgType, const QVariant &msg) override;

signals:
    // code: Orvane_Values::RequestExeStatus::success or fail; for products also
    // Master_Values::RequestExeStatus::timeout, or what the server answered. queryMap: the query that was sent.
    void signalQueryT0ProductsResponse(QString code, QList<QVariantMap> productList);
    void signalQueryT0TradersResponse(QString code, QList<QVariantMap> traderIdList, bool isManager);
    void signalIsCurUserManagerResponse(bool isManager);
    void signalQueryResourceResponse(QString code, QVariantMap queryMap, QList<QVariantMap> resourceList,
                                     bool cover = true);
    void signalQuerySecurityPoolResponse(QString code, QVariantMap queryMap, QList<QVariantMap> poolList);
    void signalQueryPoolRealTimeResponse(QString code, QVariantMap queryMap, QList<QVariantMap> realTimeList);
    void signalRecvSecurityPoolChangedPush(QString tradingAccount);
    void signalRecvPoolRealtimeChangedPush(QVariantMap realtimeMap);
    void signalQueryAccountPriorityResponse(QString code, QVariantMap queryMap, QList<QVariantMap> priorityList);

public slots:
    void slotInitData();
    void slotQueryT0Products(QVariantMap queryMap);
    void slotQueryT0Traders();
    void slotQueryResources(QVariantMap queryMap);
    void slotQuerySecurityPool(QVariantMap queryMap);
    void slotQueryPoolRealTime(QVariantMap queryMap);
    void slotQueryAccountPriority(QVariantMap queryMap);

private:
    RecordList usersOfRole(const QString &roleId);
    RecordList queryByPosition(const QString &msgType, const QVariantMap &queryMap, QString &code);
};
