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

ScriptedReference tradingDesk()
{
    using namespace Stand_Fields::Security;
    ScriptedReference reference = sharedDesk();
    for (ScriptedReference::Instrument &instrument : reference.instruments) {
        if (instrument.securityID == "300001")
            instrument.further = {{qtyStep, 20}, {minQty, 50}};
        if (instrument.securityID == "110001")
            instrument.further = {{qtyStep, 10}, {minQty, 10}};
    }
    reference.positions = {{"A1", "600000", "SH", 300}, {"A1", "600000", "SH", 100}, {"A1", "110001", "SH", 20},
                           {"A2", "00700", "SZHK", 3},  {"A2", "300001", "SZ", 0},   {"A2", "600000", "SH", 70},
                           {"A3", "600000", "SH", 100}, {"A3", "00700", "HHK", 2},   {"A4", "600000", "SH", -5}};
    reference.marginSecurities = {{"A3", "600000", "SH", 50, "InUse"},
                                  {"A3", "110001", "SH", 30, "otherwise"},
                                  {"A3", "300001", "SZ", 40, "InUse"},
                                  {"A1", "300001", "SZ", 999, "InUse"}};
    const QStringList states{"Accepted", "PartlyFilled", "Filled", "Cancelled", "Accepted"};
    for (int i = 0; i < 18; ++i) {
        const QString symbol = i % 2 ? "600000.SH" : "00700.HK";
        reference.orders.append({{Orvane_Fields::Security::orderID, QStringLiteral("o%1").arg(i)},
                                 {tradingAccount, QStringLiteral("A%1").arg(1 + i % 3)},
                                 {Orvane_Fields::Security::symbol, symbol},
                                 {Orvane_Fields::UserAccount::securityExchange, i % 2   ? "SH"
                                                                                : i % 4 ? "HHK"
                                                                                        : "SZHK"},
                                 {Orvane_Fields::Security::side, i % 7 < 4 ? "buy" : "sell"},
                                 {Orvane_Fields::UserAccount::loginUserId, i % 11 < 6 ? "u1" : "t2"},
                                 {Orvane_Fields::Security::orderStatus, states.at(i % states.size())},
                                 {Master_Fields::Security::VantaBusiType, i % 13 ? "ManualT0Order" : "other"}});
    }
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
