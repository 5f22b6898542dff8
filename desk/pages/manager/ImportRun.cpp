#include "ImportRun.h"

#include "Background.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "ViewParts.h"

#include <QtCore/QMap>

namespace {

RecordList records(const QVector<ResourceRow> &rows, bool withPools)
{
    using namespace Master_Fields::ManualT0;
    RecordList records;
    for (const ResourceRow &row : rows) {
        VariantRecord record{{Orvane_Fields::UserAccount::tradingAccount, row.account},
                             {Orvane_Fields::Security::securityID, row.securityID},
                             {Orvane_Fields::UserAccount::securityExchange, row.exchange}};
        record.insert(withPools ? PoolTotalQty : ResourceQty, row.quantity);
        if (withPools)
            record.insert(T0TraderId, row.trader);
        records.append(record);
    }
    return records;
}

ChangeOutcome send(const QVector<ResourceRow> &rows, bool withPools, bool cover)
{
    const QString &msgType =
        withPools ? Master_MsgType::AddManualT0ResourceAndPoolRequest : Master_MsgType::AddManualT0ResourceRequest;
    return ChangeOutcome::of(msgType, [&](QString &errorText) {
        return withPools ? ManualT0Logic::AddSecurityPoolAndResource(records(rows, true), cover, errorText)
                         : ManualT0Logic::AddT0Resource(records(rows, false), cover, errorText);
    });
}

} // namespace

ImportRun::ImportRun(const ImportModel &model, bool cover, QObject *parent)
    : QObject(parent)
    , m_cover(cover)
{
    QMap<QPair<QString, bool>, Request> requests;
    for (const int at : model.tickedRows()) {
        const ResourceRow &row = model.items().at(at).row;
        Request &request = requests[{row.account, !row.trader.isEmpty()}];
        request.withPools = !row.trader.isEmpty();
        request.rows.append(at);
        request.content.append(row);
    }
    m_requests = requests.values().toVector();
}

void ImportRun::start()
{
    m_running = m_requests.size();
    for (const Request &request : qAsConst(m_requests)) {
        Background::run(
            QLatin1String(ViewParts::changeLane), this,
            [request, cover = m_cover] { return send(request.content, request.withPools, cover); },
            [this, request](const ChangeOutcome &outcome) { take(request, outcome); });
    }
}

void ImportRun::take(const Request &request, const ChangeOutcome &outcome)
{
    (outcome.isGood() ? m_good : m_bad) += request.rows.size();
    emit ended(request.rows, outcome);
    if (--m_running > 0)
        return;
    emit finished(m_good, m_bad);
    deleteLater();
}
