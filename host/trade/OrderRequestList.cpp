#include "OrderRequestList.h"

class OrderRequestList::Data : public QSharedData
{
public:
    MasterLogic::OrderCommonInfo common;
    QVector<MasterLogic::OrderSymbolInfo> symbols;
};

OrderRequestList::OrderRequestList()
    : d(new Data)
{}

OrderRequestList::OrderRequestList(const OrderRequestList &other) = default;
OrderRequestList &OrderRequestList::operator=(const OrderRequestList &other) = default;
OrderRequestList::~OrderRequestList() = default;

MasterLogic::OrderCommonInfo &OrderRequestList::getOrderCommonInfo()
{
    return d->common;
}

const MasterLogic::OrderCommonInfo &OrderRequestList::getOrderCommonInfo() const
{
    return d->common;
}

void OrderRequestList::AddSymbol(const QString &symbol, qint64 quantity, const QString &priceType, const QString &price,
                                 const QString &sideUnion, const QString &exchange)
{
    d->symbols.append({symbol, quantity, priceType, price, sideUnion, exchange});
}

const QVector<MasterLogic::OrderSymbolInfo> &OrderRequestList::symbols() const
{
    return d->symbols;
}
