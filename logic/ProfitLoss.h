#pragma once

#include "VariantRecord.h"

/// Profit and loss of one usage record. Pure functions.
namespace ProfitLoss {

struct Result {
    double floating = 0;
    double realized = 0;

    double total() const { return realized + floating; }
};

/// Bought and sold quantities and amounts of one leg of a position.
struct Leg {
    qint64 bought = 0;
    qint64 sold = 0;
    double boughtAmount = 0;
    double soldAmount = 0;
};

struct Fees {
    double buy = 0;  ///< fraction of the amount
    double sell = 0; ///< fraction of the amount
};

/// carriedSide: the side of a carried-over leg, empty for today's leg. A carried-over leg pays no fee on what is
/// open and only the closing side's fee on what is closed; today's leg pays both on both.
Result ofLeg(const Leg &leg, double lastPrice, const Fees &fees, const QString &carriedSide);

/// Both legs of a usage record; lastPrice above Quantity::Tolerance.
struct Legs {
    Result carried;
    Result today;
};
Legs ofRecord(const VariantRecord &record, double lastPrice);

} // namespace ProfitLoss
