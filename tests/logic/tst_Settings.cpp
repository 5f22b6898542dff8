#include "LogicTest.h"
#include "Tests.h"

#include "HCore.h"
#include "MasterConstants.h"

using MasterConstants::SettingFieldName::ManualT0Settings::TradeSymbolSetting;

namespace {

QVariant stored()
{
    return HCore::instance()->settings(TradeSymbolSetting, QString(), QString(), QSettings::UserScope);
}

/// Leaves a mark where the settings are stored: it stays until they are saved again.
void mark()
{
    HCore::instance()->saveSetting(TradeSymbolSetting, QStringLiteral("mark"), QString(), QString(),
                                   QSettings::UserScope);
}

bool saved()
{
    return stored().toString() != QLatin1String("mark");
}

} // namespace

class SettingsTest : public LogicTest
{
    Q_OBJECT

private slots:
    void savesOnlyWhatChanges();
    void refusesEmptyTexts();
    void storesCompactJsonBySymbol();
    void readsBackWhatWasStored();
    void unreadableStoreIsEmpty_data();
    void unreadableStoreIsEmpty();
    void fixedLists();
    void searchTextsOfTheSymbols();
    void choiceDuringABurstWins();
    void withoutALoginNothingIsTheUsers();
};

void SettingsTest::savesOnlyWhatChanges()
{
    const VariantRecord settings{{"qty", 100}};
    QVERIFY(hub->SetSymbolTradeSettings("S", settings));
    const auto saves = [](bool expected, auto change) {
        mark();
        change();
        QCOMPARE(saved(), expected);
    };
    saves(false, [&] { QVERIFY(hub->SetSymbolTradeSettings("S", settings)); });
    saves(true, [&] { QVERIFY(hub->SetSymbolTradeSettings("S", {{"qty", 200}})); });
    saves(false, [&] { hub->DeleteSymbolTradeSettings("unknown"); });
    saves(false, [&] { hub->DeleteSymbolTradeSettings(""); });
    saves(true, [&] { hub->DeleteSymbolTradeSettings("S"); });
    saves(false, [&] { hub->DeleteSymbolTradeSettings("S"); });
    QCOMPARE(takeEvents(), QStringList());
}

void SettingsTest::refusesEmptyTexts()
{
    hub->SetSymbolTradeSettings("S", {{"qty", 1}});
    mark();
    QVERIFY(!hub->SetSymbolTradeSettings("", {{"qty", 1}}));
    QVERIFY(!hub->SetSymbolTradeSettings("S", {}));
    QVERIFY(!saved());
    bool found = false;
    QCOMPARE(hub->GetSymbolTradeSettings("S", &found).value("qty").toInt(), 1);
    QVERIFY(found);
    QVERIFY(hub->GetSymbolTradeSettings("T", &found).isEmpty());
    QVERIFY(!found);
    QCOMPARE(hub->GetSymbolTradeSettings("S", nullptr).size(), 1);
}

void SettingsTest::storesCompactJsonBySymbol()
{
    hub->SetSymbolTradeSettings("b", {{"n", 1}});
    hub->SetSymbolTradeSettings("a", {{"t", "x"}, {"f", 0.5}});
    QCOMPARE(stored().toString(), QStringLiteral(R"({"a":{"f":0.5,"t":"x"},"b":{"n":1}})"));
}

void SettingsTest::readsBackWhatWasStored()
{
    const VariantRecord settings{{"list", QVariantList{1, "two"}}, {"map", QVariantMap{{"k", true}}}};
    const QStringList symbols{"600000.SH", "with \"quotes\"", QStringLiteral("平安银行"), "a.b.c"};
    for (const QString &symbol : symbols)
        hub->SetSymbolTradeSettings(symbol, settings);
    const QString text = stored().toString();
    close();
    open(Mode::ByHand, slowTimers(), Rows::user, text);
    for (const QString &symbol : symbols) {
        bool found = false;
        QCOMPARE(hub->GetSymbolTradeSettings(symbol, &found), settings);
        QVERIFY(found);
    }
    mark();
    QVERIFY(hub->SetSymbolTradeSettings(symbols.first(), settings));
    QVERIFY(!saved());
}

void SettingsTest::unreadableStoreIsEmpty_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("found");
    QTest::newRow("no JSON") << "{" << false;
    QTest::newRow("a list") << "[1]" << false;
    QTest::newRow("a symbol whose value is no object has empty settings") << R"({"S":1})" << true;
}

void SettingsTest::unreadableStoreIsEmpty()
{
    QFETCH(QString, text);
    close();
    open(Mode::ByHand, slowTimers(), Rows::user, text);
    bool found = true;
    QVERIFY(hub->GetSymbolTradeSettings("S", &found).isEmpty());
    QTEST(found, "found");
}

void SettingsTest::fixedLists()
{
    QCOMPARE(hub->GetSupportExchangeList(), QStringList({"SH", "SZ", "BJ", "HHK", "SZHK"}));
    QCOMPARE(hub->GetT0Symbols(), QStringList("110001.SH"));
    QCOMPARE(hub->GetTradableQtyByAccountAndSymbol("A1", "600000.SH", "SH", {"x"}), 0LL);
}

void SettingsTest::searchTextsOfTheSymbols()
{
    start({}, {}, {Rows::usage("A1", "u1", "600000 SH", "1"), Rows::usage("A2", "u1", "00700 HHK", "1")});
    hub->SetCurrentTradeAccount({"A2", "A1"});
    QCOMPARE(hub->GetCurrentInputSymbolList(),
             QStringList({"00700.HK|证券00700|ZQ00700", "600000.SH|证券600000|ZQ600000"}));
    hub->SetCurrentTradeAccount({});
    QCOMPARE(hub->GetCurrentInputSymbolList(), QStringList());
    takeEvents();
}

void SettingsTest::choiceDuringABurstWins()
{
    close();
    open(Mode::ByHand, {600000, 600000, 1, 600000});
    start();
    for (int round = 0; round < 20; ++round) {
        const QString account = round % 2 == 0 ? "A1" : "A2";
        const QString time = QStringLiteral("%1").arg(round, 3, 10, QLatin1Char('0'));
        const QString security = round % 2 == 0 ? "600000 SH" : "300001 SZ";
        QMetaObject::invokeMethod(hub.get(), [this, row = Rows::usage(account, "u1", security, time)] {
            hub->slotRecvPoolRealtimeChangedPush(row);
        });
        hub->SetCurrentTradeAccount({account});
    }
    settle();
    QTRY_COMPARE(hub->GetCurrentTradableSymbolList(), QStringList("300001.SZ"));
    takeEvents();
}

void SettingsTest::withoutALoginNothingIsTheUsers()
{
    close();
    open(Mode::ByHand, slowTimers(), QString());
    hub->InitData();
    answerTraders({}, false);
    QCOMPARE(takeAsked(), QStringList({"products", "traders", "priority", "usage "}));
    QVERIFY(hub->GetCandidateT0ProductAccount().isEmpty());
    takeEvents();
}

T0_REGISTER_TEST(SettingsTest)

#include "tst_Settings.moc"
