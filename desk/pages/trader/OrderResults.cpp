#include "OrderResults.h"

#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"

#include <QtCore/QHash>

using Orvane_Fields::System::requestExeStatus;
using Orvane_Fields::System::textDescription;

namespace {

QString statusOf(const VariantRecord &row)
{
    return row.value(requestExeStatus).toString();
}

QString accountOf(const VariantRecord &row)
{
    return row.value(Orvane_Fields::UserAccount::tradingAccount).toString();
}

VariantRecord withResult(VariantRecord sent, const VariantRecord &result)
{
    for (const QString &field :
         {requestExeStatus, textDescription, Orvane_Fields::Security::orderID, Stand_Fields::Order::requestId}) {
        if (result.contains(field))
            sent.insert(field, result.value(field));
        else
            sent.remove(field);
    }
    return sent;
}

} // namespace

RecordList OrderResults::match(const RecordList &sent, const RecordList &results, const QString &notSubmitted)
{
    QHash<QString, RecordList> waiting;
    for (const VariantRecord &result : results)
        waiting[accountOf(result)].append(result);
    RecordList matched;
    for (const VariantRecord &order : sent) {
        RecordList &ofAccount = waiting[accountOf(order)];
        matched.append(withResult(order, ofAccount.isEmpty() ? VariantRecord{{textDescription, notSubmitted}}
                                                             : ofAccount.takeFirst()));
    }
    return matched;
}

RecordList OrderResults::withFate(const RecordList &requestOrders, const RecordList &fate)
{
    const bool holdsForAll = fate.size() == 1 && !isAccepted(fate.constFirst());
    RecordList orders;
    for (int i = 0; i < requestOrders.size(); ++i) {
        const VariantRecord &order = requestOrders.at(i);
        const VariantRecord found = holdsForAll ? fate.constFirst() : fate.value(i);
        const bool isNews = isUnknown(order) && !isUnknown(found) && !statusOf(found).isEmpty();
        orders.append(isNews ? withResult(order, found) : order);
    }
    return orders;
}

bool OrderResults::isUnknown(const VariantRecord &sent)
{
    return statusOf(sent) == Master_Values::RequestExeStatus::timeout;
}

bool OrderResults::isAccepted(const VariantRecord &sent)
{
    return statusOf(sent) == Orvane_Values::RequestExeStatus::success;
}

bool OrderResults::isRefused(const VariantRecord &sent)
{
    const bool isSent = !statusOf(sent).isEmpty() || sent.contains(textDescription);
    return isSent && !isUnknown(sent) && !isAccepted(sent);
}
