#include "CommonQuotaHandler.h"
#include "DisplayUnits.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "ProfitLoss.h"
#include "Quantity.h"

bool ManualT0LogicPrivate::CalcProfitLossByRealtimeMap(const VariantRecord &record, double lastPrice,
                                                       double &floatProfit, double &realizeProfit,
                                                       double &totalProfit) const
{
    if (record.isEmpty() || !(lastPrice > Quantity::Tolerance)) // refuses not-a-number too
        return false;
    const ProfitLoss::Legs legs = ProfitLoss::ofRecord(record, lastPrice);
    floatProfit = legs.today.floating + legs.carried.floating;
    realizeProfit = legs.today.realized + legs.carried.realized;
    totalProfit = legs.today.total() + legs.carried.total();
    return true;
}

RecordList ManualT0LogicPrivate::GetProfitLossDataList(const QStringList &tradingAccounts, const QString &traderId,
                                                       const QString &symbol, const QString &exchange) const
{
    const QStringList traders = traderId.isEmpty() ? QStringList() : QStringList(traderId);
    const RecordList records = GetRealtimePoolDetailList(tradingAccounts, traders, symbol, exchange);
    RecordList result;
    result.reserve(records.size());
    for (const VariantRecord &record : records) {
        VariantRecord row;
        for (const QString &field : {Orvane_Fields::UserAccount::tradingAccount, Orvane_Fields::Security::symbol,
                                     Orvane_Fields::UserAccount::securityExchange})
            row.insert(field, record.value(field));
        const double lastPrice =
            CommonQuotaHandler::instance().lastPrice(text(record, Orvane_Fields::Security::symbol), 0);
        double floating = 0;
        double realized = 0;
        double total = 0;
        if (CalcProfitLossByRealtimeMap(record, lastPrice, floating, realized, total)) {
            row.insert(Master_Fields::ManualT0::FloatProfit, floating);
            row.insert(Master_Fields::ManualT0::RealizeProfit, realized);
            row.insert(Master_Fields::ManualT0::TotalProfit, total);
        }
        result.append(row);
    }
    return result;
}
