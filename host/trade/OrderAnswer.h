#pragma once

#include "VariantRecord.h"

#include <QtCore/QMetaType>

/// What became of a list of orders: what MasterTradeLogic::orders() puts into its answer.
struct OrderAnswer {
    QString requestId; ///< empty: nothing was sent
    QString status;    ///< Orvane_Values::RequestExeStatus::success: rows tell the rest; fail; or timeout
    QString text;      ///< unless success
    RecordList rows;   ///< one per order, in their order

    /// Nobody knows yet, or ever.
    static OrderAnswer unknown(const QString &requestId);
};
Q_DECLARE_METATYPE(OrderAnswer)
