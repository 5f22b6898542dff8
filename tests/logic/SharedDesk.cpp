#include "SharedDesk.h"

#include "Rows.h"
#include "VantaKeys.h"

using namespace Vanta_Keys::EventMsgName;
using Orvane_Fields::UserAccount::tradingAccount;

ScriptedReference sharedDesk()
{
    const QStringList all{"SH", "SZ", "HHK", "SZHK"};
    ScriptedReference reference;
    reference.organCode = QStringLiteral("org");
    reference.accounts = {
        {"A1", "P1", "Cash", all}, {"A2", "P1", "Cash", all}, {"A3", "P1", "Credit", all}, {"A4", "P2", "Cash", all}};
    reference.instruments = {{"600000.SH", "600000", "SH", 1, 10.5},
                             {"300001.SZ", "300001", "SZ"},
                             {"110001.SH", "110001", "SH", 10, 0, Orvane_Values::MdcSecurityType::BondType,
                              Orvane_Values::MdcSubSecurityType::Convertiblebond},
                             {"00700.HK", "00700", "HHK", 100},
                             {"00700.HK", "00700", "SZHK", 100}};
    return reference;
}

QString eventText(const QString &name, const QVariant &payload)
{
    const auto joined = [&payload](const QString &field) {
        RecordList rows;
        for (const QVariant &row : payload.toList())
            rows.append(row.toMap());
        return Rows::texts(rows, field).join(',');
    };
    if (name == ManualT0DataInited)
        return QStringLiteral("inited ") + payload.toString();
    if (name == ManualT0ResourceUpdated)
        return QStringLiteral("resources ") + payload.toMap().value(tradingAccount).toString();
    if (name == ManualT0SecurityPoolUpdated)
        return QStringLiteral("pools ") + payload.toStringList().join(',');
    if (name == ManualT0SecurityPoolDeleted)
        return QStringLiteral("deleted ") + joined(Master_Fields::ManualT0::PoolDetailId);
    if (name == ManualT0CurTradeAccountChanged)
        return QStringLiteral("accounts ") + payload.toStringList().join(',');
    if (name == ManualT0CurInputSymbolChanged)
        return payload.isValid() ? QStringLiteral("symbols with a payload") : QStringLiteral("symbols");
    QStringList keys;
    for (const QVariant &row : payload.toList()) {
        const VariantRecord record = row.toMap();
        QStringList key;
        for (const QString &field : {Master_Fields::ManualT0::T0TraderId, tradingAccount,
                                     Orvane_Fields::Security::symbol, Orvane_Fields::UserAccount::securityExchange})
            key.append(record.value(field).toString());
        keys.append(key.join('_'));
    }
    return QStringLiteral("usage ") + keys.join(',');
}
