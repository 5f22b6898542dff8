#include "RandomChanges.h"

#include "MasterFields.h"
#include "OrvaneFields.h"

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::securityID;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

RandomChanges::RandomChanges(const Books &books, quint32 seed)
    : m_books(books)
    , m_random(seed)
{
    for (const Account &account : books.accounts)
        m_accounts.append(account.tradingAccount);
}

template <typename List> typename List::value_type RandomChanges::any(const List &good, int rarely, const List &odd)
{
    const List &list = good.isEmpty() || oneIn(rarely) ? odd : good;
    return list.at(below(list.size()));
}

Change RandomChanges::next(const Model &model)
{
    Change change;
    // Products seldom: while an account is not enabled, most other changes are refused.
    change.operation = oneIn(30) ? Change::AlterProducts : Change::Operation(1 + below(Change::OperationCount - 1));
    change.cover = oneIn(2);
    change.products = products();
    const int count = change.operation == Change::AlterResource ? 1 : oneIn(30) ? 0 : 1 + below(3);
    while (change.rows.size() < count)
        change.rows += rowsOf(model, change.operation);
    QStringList pools;
    for (const Model::Resource &resource : model.resources())
        for (const Model::Pool &pool : resource.pools)
            pools.append(pool.id);
    for (int i = 0; i < count && change.operation == Change::DeletePools; ++i)
        change.ids.append(any(pools, 30, {QStringLiteral("P000000000")}));
    return change;
}

RecordList RandomChanges::rowsOf(const Model &model, Change::Operation operation)
{
    const bool isAllocation = operation == Change::AllocatePublic || operation == Change::AllocateToTraders;
    const QVector<Model::Resource> none(1);
    const Model::Resource resource = any(model.resources(), 40, none);
    VariantRecord row = place();
    if (operation != Change::AddResources && operation != Change::AddPools) {
        row.insert(ResourceId, any({resource.id}, 40, QStringList{"", "R000000000", "R9_9"}));
        // The client asks for the pools of every account that a row names and shows them, also those of one that
        // is not enabled, which the model does not.
        row.insert(tradingAccount, oneIn(2) && model.isEnabled(resource.account) ? resource.account : QString());
        if (!oneIn(30)) { // else the security of another resource, or none
            row.insert(securityID, resource.security.securityID);
            row.insert(securityExchange, resource.security.exchange);
        }
    }
    RecordList rows;
    const QStringList traders = QStringList{"t1", "t2", "t3", "public"}.mid(0, isAllocation ? 3 : 4);
    // What one resource gives to several traders is one request.
    for (int left = operation == Change::AllocateToTraders ? 1 + below(2) : 1; left > 0; --left) {
        row.insert(T0TraderId, any(traders, 40, QStringList{"", "public", "x", "m", "nobody", "a_b", "t1,t2"}));
        row.insert(isAllocation || operation == Change::AddPools ? PoolTotalQty : ResourceQty,
                   any(QVariantList{100 * (1 + below(isAllocation ? 4 : 15))}, 12,
                       QVariantList{-100, 0, 105, 0.5, 250.0, QStringLiteral("200"), qint64(3'000'000'000)}));
        if (oneIn(4))
            row.insert(MaxExposureQty, below(5) * 100 - 100);
        rows.append(row);
    }
    return rows;
}

VariantRecord RandomChanges::place()
{
    const Instrument security = any(m_books.instruments, 50, {Instrument()});
    return {{tradingAccount, any(m_accounts, 50, QStringList{"", "A9", "a1"})},
            {securityID, security.securityID},
            {securityExchange, security.exchange}};
}

QMap<QString, QStringList> RandomChanges::products()
{
    QMap<QString, QStringList> products{{QStringLiteral("P9"), {QStringLiteral("Cash")}}};
    for (const Account &account : m_books.accounts)
        if (!oneIn(5))
            products[account.productAccount].append(oneIn(20) ? account.assetProp.toLower() : account.assetProp);
    return products;
}
