#pragma once

#include "HostExport.h"

#include "VariantRecord.h"

/// The quote service. Callable from any thread.
class T0_HOST_EXPORT CommonQuotaHandler
{
public:
    static CommonQuotaHandler &instance();

    /// The latest price; 0 when there is none. flag: 0.
    double lastPrice(const QString &symbol, int flag) const;

    /// symbol and the fields of Stand_Fields::Quote; empty when there is none.
    VariantRecord quote(const QString &symbol) const;

private:
    CommonQuotaHandler() = default;
};
