#pragma once

#include "HostExport.h"

#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace MasterLogic {

/// What all orders of a list have in common.
struct OrderCommonInfo {
    QString tradingAccount;
    QString businessName;   ///< Vanta_Keys::BusinessName
    QString businessType;   ///< Master_Values::VantaBusiType
    bool confirmed = false; ///< the user has confirmed the orders: the host asks nobody again
    QString remark;         ///< free text that goes with every order
};

/// One order of a list.
struct OrderSymbolInfo {
    QString symbol;
    qint64 quantity = 0; ///< shares or bonds
    QString priceType;   ///< Orvane_Values::PriceType
    QString price;       ///< decimal text
    QString sideUnion;   ///< Master_Values::SideUnion
    QString exchange;
};

} // namespace MasterLogic

/// Orders of one trading account that go to the server in one request. A value class; not thread-safe.
class T0_HOST_EXPORT OrderRequestList
{
public:
    OrderRequestList();
    OrderRequestList(const OrderRequestList &other);
    OrderRequestList &operator=(const OrderRequestList &other);
    ~OrderRequestList();

    MasterLogic::OrderCommonInfo &getOrderCommonInfo();
    const MasterLogic::OrderCommonInfo &getOrderCommonInfo() const;

    void AddSymbol(const QString &symbol, qint64 quantity, const QString &priceType, const QString &price,
                   const QString &sideUnion, const QString &exchange);

    /// In the order they were added.
    const QVector<MasterLogic::OrderSymbolInfo> &symbols() const;

private:
    class Data;
    QSharedDataPointer<Data> d;
};
