#include "OrderCanceller.h"

#include "Background.h"
#include "ManualT0Logic.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"

namespace {

QStringList idsOf(const RecordList &orders)
{
    QStringList ids;
    for (const VariantRecord &order : orders)
        ids.append(OrderCanceller::idOf(order));
    return ids;
}

QString accountOf(const VariantRecord &order)
{
    return order.value(Orvane_Fields::UserAccount::tradingAccount).toString();
}

RecordList carryOut(const RecordList &orders)
{
    RecordList results;
    ManualT0Logic::CancelOrderList(nullptr, orders, results);
    return results;
}

} // namespace

/// What became of the orders of one cancel().
struct OrderCanceller::Count {
    int accounts = 0; ///< of which the answer has not come
    int accepted = 0;
    int refused = 0;
    int unknown = 0;

    void add(int orders, const RecordList &results)
    {
        int failed = 0;
        for (const VariantRecord &result : results) {
            const QString status = result.value(Orvane_Fields::System::requestExeStatus).toString();
            if (status == Master_Values::RequestExeStatus::timeout)
                ++unknown;
            else if (status != Orvane_Values::RequestExeStatus::success)
                ++refused;
            else
                continue;
            ++failed;
        }
        accepted += qMax(0, orders - failed); // an order that a good answer leaves out was accepted
        --accounts;
    }
};

QString OrderCanceller::idOf(const VariantRecord &order)
{
    return order.value(Orvane_Fields::Security::orderID).toString();
}

void OrderCanceller::cancel(const RecordList &orders)
{
    QMap<QString, RecordList> byAccount;
    for (const VariantRecord &order : orders) {
        if (!m_underWay.contains(idOf(order)))
            byAccount[accountOf(order)].append(order);
    }
    const auto count = std::make_shared<Count>();
    count->accounts = byAccount.size();
    for (auto account = byAccount.cbegin(); account != byAccount.cend(); ++account)
        cancelAccount(account.key(), *account, count);
}

void OrderCanceller::cancelAccount(const QString &account, const RecordList &orders,
                                   const std::shared_ptr<Count> &count)
{
    const QStringList ids = idsOf(orders);
    m_underWay += QSet<QString>(ids.cbegin(), ids.cend());
    emit begun(ids);
    Background::run(
        QStringLiteral("trade.cancel.") + account, this, [orders] { return carryOut(orders); },
        [this, ids, count](const RecordList &results) {
            m_underWay -= QSet<QString>(ids.cbegin(), ids.cend());
            count->add(ids.size(), results);
            emit answered(ids, results);
            if (count->accounts == 0)
                emit finished(count->accepted, count->refused, count->unknown);
        });
}
