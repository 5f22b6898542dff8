#pragma once

#include "Column.h"

#include <QtCore/QCoreApplication>

/// What orders and fills say, as traders read it.
class TradeTexts
{
    Q_DECLARE_TR_FUNCTIONS(TradeTexts)

public:
    static QString side(const QString &sideUnion);
    static QString orderStatus(const QString &status);
};

/// Columns of the tables of orders, fills and results, which share a row of the page: they are narrow.
class TradeColumns
{
    Q_DECLARE_TR_FUNCTIONS(TradeColumns)

public:
    static Column account();
    static Column symbol();
    static Column name();
    static Column time(const QString &field);
    static Column side();
    static Column price();
    static Column quantity(const QString &field);
    static Column filledQuantity();
    static Column orderStatus();
    static Column orderId();
    static Column remark(std::function<QVariant(const VariantRecord &row)> value); ///< a longer text
};
