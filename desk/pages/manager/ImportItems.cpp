#include "ImportItems.h"

#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "OrvaneFields.h"

#include <algorithm>

namespace {

QString text(const VariantRecord &record, const QString &field)
{
    return record.value(field).toString();
}

/// Account, security and market of a record of the facade.
ResourceRow rowOf(const VariantRecord &record)
{
    ResourceRow row;
    row.account = text(record, Orvane_Fields::UserAccount::tradingAccount);
    row.symbol = text(record, Orvane_Fields::Security::symbol);
    row.securityID = text(record, Orvane_Fields::Security::securityID);
    row.exchange = text(record, Orvane_Fields::UserAccount::securityExchange);
    return row;
}

QString keyOf(const ResourceRow &row)
{
    return QStringList{row.account, row.symbol, row.exchange}.join(QLatin1Char('\n'));
}

} // namespace

ImportItems::ImportItems()
{
    const RecordList resources = ManualT0Logic::GetAllResourceList();
    for (const VariantRecord &resource : resources)
        m_held.insert(keyOf(rowOf(resource)), resource.value(Master_Fields::ManualT0::ResourceQty).toDouble());
}

double ImportItems::held(const ResourceRow &row) const
{
    return m_held.value(keyOf(row));
}

ImportModel::Item ImportItems::of(const ResourceRow &row) const
{
    ImportModel::Item item;
    item.row = row;
    item.unit = MasterBusinessDataInterface::GetDispFactorBySymbol(row.symbol);
    item.held = held(row);
    if (row.problems.isEmpty())
        item.advice = ManualT0Logic::GetAllocatableQty2ResourceByTradingAccount(row.account, row.symbol, row.exchange);
    item.isTicked = true;
    return item;
}

ImportModel::Item ImportItems::of(const VariantRecord &candidate, int line) const
{
    ImportModel::Item item = of(rowOf(candidate));
    item.row.line = line;
    item.row.quantity = qint64(std::min(item.advice, candidate.value(Master_Fields::ManualT0::ResourceQty).toDouble()));
    item.isTicked = false;
    return item;
}
