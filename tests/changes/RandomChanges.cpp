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
{}

int RandomChanges::below(int end)
{
    return int(m_random() % quint32(end));
}

template <typename List> typename List::value_type RandomChanges::anyOf(const List &list)
{
    return list.at(below(list.size()));
}

Change RandomChanges::next(const Model &model)
{
    Change change;
    // Products seldom: while an account is not enabled, most other changes are refused.
    change.operation = oneIn(30) ? Change::AlterProducts : Change::Operation(1 + below(Change::OperationCount - 1));
    change.cover = oneIn(2);
    const int rows = change.operation == Change::AlterResource ? 1 : oneIn(30) ? 0 : 1 + below(3);
    switch (change.operation) {
    case Change::AlterProducts:
        change.products = products();
        break;
    case Change::AllocatePublic:
    case Change::AllocateToTraders:
        change.rows = poolRows(model);
        break;
    case Change::DeletePools:
        change.ids = poolIds(model);
        break;
    default:
        for (int i = 0; i < rows; ++i) {
            VariantRecord row = place();
            if (change.operation == Change::AlterResource || change.operation == Change::DeleteResources)
                row = {{ResourceId, resourceId(model)}};
            row.insert(change.operation == Change::AddPools ? PoolTotalQty : ResourceQty, quantity());
            row.insert(T0TraderId, trader());
            if (oneIn(4))
                row.insert(MaxExposureQty, below(5) * 100 - 100);
            change.rows.append(row);
        }
    }
    return change;
}

VariantRecord RandomChanges::place()
{
    const Instrument security = anyOf(m_books.instruments);
    const QString account = oneIn(50) ? anyOf(QStringList{"", "A9", "a1"}) : anyOf(m_books.accounts).tradingAccount;
    return {{tradingAccount, account},
            {securityID, oneIn(50) ? QStringLiteral("999999") : security.securityID},
            {securityExchange, security.exchange}};
}

QVariant RandomChanges::quantity()
{
    static const QVariantList odd{-100, 0, 105, 0.5, 250.0, QStringLiteral("200"), qint64(3'000'000'000)};
    return oneIn(12) ? anyOf(odd) : QVariant(100 * (1 + below(10)));
}

QString RandomChanges::trader()
{
    static const QStringList odd{"", "x", "m", "nobody", "a_b", "t1,t2"};
    return oneIn(40) ? anyOf(odd) : anyOf(QStringList{"public", "t1", "t2", "t3"});
}

QString RandomChanges::resourceId(const Model &model)
{
    const auto resources = model.resources();
    return resources.isEmpty() || oneIn(40) ? anyOf(QStringList{"", "R000000000", "R9_9"}) : anyOf(resources).id;
}

VariantRecord RandomChanges::poolRow(const Model &model, const Model::Resource &resource)
{
    VariantRecord row = place();
    if (!oneIn(30)) { // else the security of another resource, or none
        row.insert(securityID, resource.security.securityID);
        row.insert(securityExchange, resource.security.exchange);
    }
    row.insert(ResourceId, oneIn(30) ? QStringLiteral("R000000000") : resource.id);
    // The client asks for the pools of every account that a row names and shows them, also those of one that is not
    // enabled, which the model does not.
    row.insert(tradingAccount, oneIn(2) && model.isEnabled(resource.account) ? resource.account : QString());
    row.insert(T0TraderId, trader());
    row.insert(PoolTotalQty, quantity());
    return row;
}

RecordList RandomChanges::poolRows(const Model &model)
{
    const auto resources = model.resources();
    RecordList rows;
    if (resources.isEmpty() || oneIn(40))
        return rows;
    Model::Resource resource = anyOf(resources);
    for (int left = 1 + below(3); left > 0; --left) {
        rows.append(poolRow(model, resource));
        if (oneIn(2))
            resource = anyOf(resources);
    }
    return rows;
}

QStringList RandomChanges::poolIds(const Model &model)
{
    QStringList known;
    for (const Model::Resource &resource : model.resources())
        for (const Model::Pool &pool : resource.pools)
            known.append(pool.id);
    QStringList ids;
    for (int left = oneIn(30) ? 0 : 1 + below(2); left > 0; --left)
        ids.append(known.isEmpty() || oneIn(30) ? QStringLiteral("P000000000") : anyOf(known));
    return ids;
}

QMap<QString, QStringList> RandomChanges::products()
{
    QMap<QString, QStringList> products;
    for (const Account &account : m_books.accounts)
        if (!oneIn(5))
            products[account.productAccount].append(oneIn(20) ? account.assetProp.toLower() : account.assetProp);
    if (oneIn(5))
        products.insert(QStringLiteral("P9"), {QStringLiteral("Cash")});
    return products;
}
