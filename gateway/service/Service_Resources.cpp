#include "Service.h"

#include "Answers.h"
#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "MasterFields.h"
#include "MasterValues.h"
#include "OrvaneFields.h"

namespace {

namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;

/// Whether a row adds; anything but the two known words is refused.
bool readAlterType(ChangeRow &row)
{
    const QString type = row.id(Master_Fields::System::alterType);
    const bool adds = type == Master_Values::AlterType::Add;
    row.require(adds || type == Master_Values::AlterType::Delete, GatewayTexts::badAlterType(type));
    return adds;
}

} // namespace

MessageBody Service::alterProducts(const Request &request)
{
    QMap<QString, bool> wanted;
    const QString refusal = readRows(request.rows, [&](ChangeRow &row) {
        const QString product = row.id(UserAccount_::productAccount);
        const QString id = row.id(UserAccount_::tradingAccount);
        const bool adds = readAlterType(row);
        const Account *account = m_books.account(id);
        row.require(account, GatewayTexts::unknownAccount(id));
        row.require(account && account->productAccount == product, GatewayTexts::otherProduct(id, product));
        row.require(wanted.value(id, adds) == adds, GatewayTexts::contradiction(id));
        wanted.insert(id, adds);
    });
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    for (auto account = wanted.cbegin(); account != wanted.cend(); ++account) {
        if (m_memory.enabled.contains(account.key()) == *account)
            continue;
        m_changes.setEnabled(account.key(), *account);
        if (*account)
            m_memory.enabled.insert(account.key());
        else
            m_memory.enabled.remove(account.key());
    }
    return Answers::success();
}

MessageBody Service::addResources(const Request &request)
{
    ChangeRow header(request.row);
    const bool cover = header.covers();
    QString only;
    QSet<Holding> seen;
    QVector<StoredResource> wanted;
    const QString refusal = readSomeRows(request.rows, [&](ChangeRow &row) {
        const QString account = row.id(UserAccount_::tradingAccount);
        only = only.isEmpty() ? account : only;
        row.require(account == only, GatewayTexts::oneAccount(account));
        checkAddable(row, account);
        const Holding holding = holdingOf(row, account);
        row.require(!seen.contains(holding), GatewayTexts::repeatedSecurity(holding.securityID));
        StoredResource resource = m_store->resourceOf(holding);
        const qint64 given = row.quantity(T0_::ResourceQty, factorOf(holding), 1);
        const qint64 inUse = allocated(holding);
        resource = {resource.id, holding, cover ? given : resource.quantity + given};
        row.require(resource.quantity <= ChangeRow::maxQuantity,
                    GatewayTexts::tooLarge(T0_::ResourceQty, ChangeRow::maxQuantity));
        row.require(resource.quantity >= inUse, GatewayTexts::belowPools(inUse));
        seen.insert(holding);
        wanted.append(resource);
    });
    if (!header.refusal().isEmpty() || !refusal.isEmpty())
        return Answers::refused(header.refusal().isEmpty() ? refusal : header.refusal());
    RecordList rows;
    for (const StoredResource &resource : qAsConst(wanted))
        rows.append({{T0_::ResourceId, m_changes.saveResource(resource)}});
    return Answers::success(rows);
}

MessageBody Service::alterResources(const Request &request)
{
    QMap<QString, StoredResource> wanted;
    const QString refusal = readSomeRows(request.rows, [&](ChangeRow &row) {
        StoredResource resource = resourceOf(row);
        row.require(!wanted.contains(resource.id), GatewayTexts::repeatedId(resource.id));
        resource.quantity = row.quantity(T0_::ResourceQty, factorOf(resource.holding));
        const qint64 inUse = allocated(resource.holding);
        row.require(resource.quantity >= inUse, GatewayTexts::belowPools(inUse));
        wanted.insert(resource.id, resource);
    });
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    for (const StoredResource &resource : qAsConst(wanted))
        m_changes.saveResource(resource);
    return Answers::success();
}

MessageBody Service::deleteResources(const Request &request)
{
    QMap<QString, StoredResource> doomed;
    const QString refusal = readRows(request.rows, [&](ChangeRow &row) {
        const StoredResource resource = resourceOf(row);
        row.require(!doomed.contains(resource.id), GatewayTexts::repeatedId(resource.id));
        const QString against = standsAgainst(resource.holding, QString());
        row.require(against.isEmpty(), against);
        doomed.insert(resource.id, resource);
    });
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    for (const StoredResource &resource : qAsConst(doomed))
        m_changes.removeResource(resource);
    return Answers::success();
}
