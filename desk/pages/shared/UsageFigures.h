#pragma once

#include "Column.h"
#include "VariantRecord.h"

#include <optional>

/// What a usage record is worth at the latest price. Without a price nothing of it is known.
struct UsageFigures {
    std::optional<double> lastPrice;
    std::optional<double> floatProfit;
    std::optional<double> realizeProfit;
    std::optional<double> totalProfit;
    std::optional<double> exposure; ///< |open quantity| at the latest price, money
    std::optional<double> limit;    ///< of the exposure, of the trader's private pool; none: not limited

    /// usage: a record of the facade's usage queries.
    static UsageFigures of(const VariantRecord &usage);

    /// The same for whoever keeps the limit: it changes with the pools only, and costs more than the rest to find.
    static UsageFigures of(const VariantRecord &usage, std::optional<double> limitQuantity);

    /// How much may be open, of the trader's private pool; none: not limited.
    static std::optional<double> limitQuantity(const VariantRecord &usage);
};

/// Sums over usage records. Those without a price are counted, not summed.
struct UsageTotals {
    double floatProfit = 0;
    double realizeProfit = 0;
    double totalProfit = 0;
    double exposure = 0;
    double limit = 0;           ///< of those that have one
    double limitedExposure = 0; ///< of those that have a limit
    int rows = 0;
    int withoutPrice = 0;

    void add(const UsageFigures &figures);
    UsageTotals &operator+=(const UsageTotals &other);
};

/// Columns that many tables of the pages show.
namespace SharedColumns {
Column account();
Column symbol();
Column chineseName(); ///< of the row's symbol
Column exchange();
Column trader(); ///< name and id of T0TraderId
} // namespace SharedColumns
