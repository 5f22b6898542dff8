#include "LogicTest.h"
#include "Tests.h"

#include <random>

using namespace Master_Fields::ManualT0;
using namespace Master_Values::OpenPositionSide;

namespace {

constexpr int Max = ManualT0Logic::MaxResourceQty;

/// A row in full: product, account, symbol, id, exchange, name, quantity, "t0" or "-", resource id.
QStringList shown(const RecordList &candidates)
{
    using namespace Orvane_Fields;
    QStringList lines;
    for (const VariantRecord &row : candidates) {
        QStringList fields;
        for (const QString &field : {UserAccount::productAccount, UserAccount::tradingAccount, Security::symbol,
                                     Security::securityID, UserAccount::securityExchange, Security::chineseName})
            fields.append(row.value(field).toString());
        const bool typed = row.size() == 9 && row.value(ResourceQty).type() == QVariant::LongLong &&
                           row.value(T0SymbolFlag).type() == QVariant::Bool;
        fields.append(typed ? row.value(ResourceQty).toString() : QString("other types"));
        fields.append(row.value(T0SymbolFlag).toBool() ? "t0" : "-");
        fields.append(row.value(ResourceId).toString());
        lines.append(fields.join(' ').trimmed());
    }
    return lines;
}

QString symbolOf(const QString &security)
{
    return security.section(' ', 0, 0) + '.' + security.right(2);
}

/// One account's day in one security, in server units: what it owned before, how much of that it borrowed, and
/// what was traded T0. Usage of two traders.
struct Day {
    qint64 owned = 0;
    qint64 borrowed = 0;
    qint64 tradeable = 0;
    qint64 setAside = 0;
    RecordList usage;
};

class Days
{
public:
    Day of(const QString &account, const QString &security, bool isBond)
    {
        Day day;
        day.owned = upTo(3) == 0 ? 0 : upTo(2000);
        day.setAside = upTo(3) == 0 ? 0 : upTo(1500);
        day.tradeable = day.owned;
        for (const char *trader : {"u1", "t2"})
            day.usage.append(Rows::usage(account, trader, security, "1", traded(day, isBond)));
        day.borrowed = account == "A3" ? upTo(int(day.tradeable) + 1) : 0;
        return day;
    }

private:
    int upTo(int limit) { return int(m_engine() % unsigned(limit)); }

    /// What one trader did; takes it out of what is tradeable.
    VariantRecord traded(Day &day, bool isBond)
    {
        const bool isLong = upTo(2) == 0;
        const int carried = isLong ? upTo(300) : upTo(int(day.tradeable) / 2 + 1);
        const int closed = upTo(carried + 1);
        // A long was bought before today and can be sold; a short was sold, and what closes it may have to rest.
        day.tradeable += isLong ? carried - closed : (isBond ? closed : 0) - carried;
        const int bought = upTo(500);
        const int sold = upTo(int(day.tradeable) + (isBond ? bought : 0) + 1);
        day.tradeable += (isBond ? bought : 0) - sold;
        return {{PreUnclosedSide, isLong ? BuyOpen : SellOpen},
                {PreUnclosedBoughtQty, isLong ? carried : closed},
                {PreUnclosedSoldQty, isLong ? closed : carried},
                {DailyBoughtQty, bought},
                {DailySoldQty, sold}};
    }

    std::mt19937 m_engine{1};
};

} // namespace

class CandidatesTest : public LogicTest
{
    Q_OBJECT

private slots:
    void lists_data();
    void lists();
    void candidatesCanBeAdded();
    void allocatable_data();
    void allocatable();
    void tradingChangesNothing();

private:
    void openHoldings();
    double freeOf(const QString &account, const QString &security);
};

void CandidatesTest::openHoldings()
{
    close();
    desk.instruments << ScriptedReference::Instrument{"900901.SH", "900901", "SH", 1, 0, "StockType", "otherwise"}
                     << ScriptedReference::Instrument{"600009.SH", "600009", "elsewhere"}
                     << ScriptedReference::Instrument{"123001.SZ", "123001", "SZ", 1, 0, "BondType", "Convertiblebond"};
    desk.positions = {{"A1", "600000", "SH", 400},      {"A1", "110001", "SH", 20},  {"A1", "900901", "SH", 500},
                      {"A1", "600009", "elsewhere", 9}, {"A1", "600000", "SH", 600}, {"A2", "00700", "SZHK", 3},
                      {"A2", "300001", "SZ", 0},        {"A2", "00700", "HHK", 2},   {"A3", "600000", "SH", 100},
                      {"A4", "600000", "SH", -5}};
    desk.marginSecurities = {{"A3", "600000", "SH", 50, "InUse"},
                             {"A3", "600000", "SH", 1000, "otherwise"},
                             {"A3", "300001", "SZ", 70, "InUse"},
                             {"A1", "600000", "SH", 999, "InUse"}};
    open(Mode::ByHand);
    start({Rows::resource("r1", "A1", "600000 SH", 10), Rows::resource("r2", "A4", "110001 SH", 1)});
}

void CandidatesTest::lists_data()
{
    QTest::addColumn<QStringList>("products");
    QTest::addColumn<QString>("assetProp");
    QTest::addColumn<bool>("withT0Symbols");
    QTest::addColumn<QStringList>("rows");
    const QStringList cash{"P1 A1 110001.SH 110001 SH 证券110001 200 t0",
                           "P1 A1 600000.SH 600000 SH 证券600000 1000 - r1", "P1 A2 00700.HK 00700 HHK 证券00700 200 -",
                           "P1 A2 00700.HK 00700 SZHK 证券00700 300 -"};
    const QStringList credit{"P1 A3 600000.SH 600000 SH 证券600000 150 -", "P1 A3 300001.SZ 300001 SZ 证券300001 70 -"};
    QTest::newRow("what cash accounts hold") << QStringList("P1") << "Cash" << false << cash;
    QTest::newRow("what credit accounts hold and borrowed") << QStringList("P1") << "Credit" << false << credit;
    QTest::newRow("every account once") << QStringList{"P2", "P1", "P1"} << "" << false << cash + credit;
    QTest::newRow("bonds that are not held")
        << QStringList("P2") << "" << true
        << QStringList{"P2 A4 110001.SH 110001 SH 证券110001 0 t0 r2", "P2 A4 123001.SZ 123001 SZ 证券123001 0 t0"};
    QTest::newRow("bonds among what is held") << QStringList("P1") << "Credit" << true
                                              << QStringList{"P1 A3 110001.SH 110001 SH 证券110001 0 t0", credit[0],
                                                             "P1 A3 123001.SZ 123001 SZ 证券123001 0 t0", credit[1]};
    QTest::newRow("no products") << QStringList() << "" << true << QStringList();
    QTest::newRow("nobody's product, nobody's property") << QStringList{"P9", "P1"} << "cash" << true << QStringList();
}

void CandidatesTest::lists()
{
    QFETCH(QStringList, products);
    QFETCH(QString, assetProp);
    QFETCH(bool, withT0Symbols);
    openHoldings();
    QTEST(shown(hub->GetT0ResourceCandidatesList(products, assetProp, withT0Symbols)), "rows");
}

void CandidatesTest::candidatesCanBeAdded()
{
    openHoldings();
    QString errorText;
    const RecordList candidates = hub->GetT0ResourceCandidatesList({"P1", "P2"}, "", true);
    QCOMPARE(hub->AddT0Resource(candidates, true, errorText), Rows::Success);
    const QStringList sent = server->takeChanges().filter("110001");
    QCOMPARE(sent.size(), 1); // the bonds of quantity 0 are not sent
    QVERIFY(sent.first().contains(" ResourceQty=20 "));
    takeAsked();
}

void CandidatesTest::allocatable_data()
{
    QTest::addColumn<QString>("security");
    QTest::addColumn<double>("tradeable"); // server units, as what is set aside
    QTest::addColumn<double>("setAside");
    QTest::addColumn<VariantRecord>("traded");
    QTest::addColumn<double>("expected");
    const auto row = [](const char *rule, const QString &security, double tradeable, double setAside,
                        const VariantRecord &traded, double expected) {
        QTest::newRow(rule) << security << tradeable << setAside << traded << expected;
    };
    const QString share = "600000 SH";
    const QString bond = "110001 SH";
    const VariantRecord carried{{PreUnclosedSide, BuyOpen}, {PreUnclosedBoughtQty, 300}};
    row("what was sold of it is still set aside", share, 700, 500, {{DailySoldQty, 300}}, 500);
    row("display units", bond, 25, 6, {}, 190);
    row("rounded down to whole server units", bond, 25, 6, {{DailySoldQty, 0.5}}, 190);
    row("the bound of input fields", share, 4e9, 500, {}, Max - 500);
    row("an absurd quantity does not wrap", bond, 9e18, 6, {{DailySoldQty, 1e18}}, Max - 60);
}

void CandidatesTest::allocatable()
{
    QFETCH(QString, security);
    QFETCH(double, tradeable);
    QFETCH(double, setAside);
    QFETCH(VariantRecord, traded);
    close();
    desk.positions = {{"A1", security.section(' ', 0, 0), "SH", qint64(tradeable)}};
    open(Mode::ByHand);
    QCOMPARE(freeOf("A1", security), 0.); // not enabled yet
    start({Rows::resource("r1", "A1", security, setAside)}, {}, {Rows::usage("A1", "t2", security, "1", traded)});
    QTEST(freeOf("A1", security), "expected");
    const QString symbol = symbolOf(security);
    QCOMPARE(hub->GetAllocatableQty2ResourceByTradingAccount("A1", "", "SH"), 0.);
    QCOMPARE(hub->GetAllocatableQty2ResourceByTradingAccount("A1", symbol, ""), 0.);
    QCOMPARE(hub->GetAllocatableQty2Resource("", "", symbol, "SH"), 0.);
}

double CandidatesTest::freeOf(const QString &account, const QString &security)
{
    return hub->GetAllocatableQty2ResourceByTradingAccount(account, symbolOf(security), security.section(' ', 1));
}

void CandidatesTest::tradingChangesNothing()
{
    Days days;
    const QMap<QString, int> factors{{"600000 SH", 1}, {"110001 SH", 10}, {"00700 SZHK", 100}};
    for (int round = 0; round < 25; ++round) {
        close();
        desk.positions.clear();
        desk.marginSecurities.clear();
        QMap<QString, QMap<QString, double>> expected; // by security and account
        RecordList resources;
        RecordList usage;
        for (auto factor = factors.cbegin(); factor != factors.cend(); ++factor) {
            const QString id = factor.key().section(' ', 0, 0);
            const QString exchange = factor.key().section(' ', 1);
            const bool isBond = id == "110001";
            for (const QString account : {"A1", "A2", "A3", "A4"}) {
                const Day day = days.of(account, factor.key(), isBond);
                desk.positions.append({account, id, exchange, day.tradeable - day.borrowed});
                desk.marginSecurities.append({account, id, exchange, day.borrowed, "InUse"});
                // Two resources: their sum counts.
                resources << Rows::resource(account + id, account, factor.key(), day.setAside / 3)
                          << Rows::resource(id + account, account, factor.key(), day.setAside - day.setAside / 3);
                usage += day.usage;
                const qint64 used = day.setAside * *factor;
                const qint64 owned = day.owned * *factor;
                expected[factor.key()][account] = isBond && owned == 0 ? Max - used : qMax<qint64>(0, owned - used);
            }
        }
        open(Mode::ByHand);
        start(resources, {}, usage);
        for (auto factor = factors.cbegin(); factor != factors.cend(); ++factor) {
            const QMap<QString, double> byAccount = expected.value(factor.key());
            for (auto account = byAccount.cbegin(); account != byAccount.cend(); ++account)
                QCOMPARE(freeOf(account.key(), factor.key()), *account);
            const auto ofProduct = [&](const char *assetProp) {
                return hub->GetAllocatableQty2Resource("P1", assetProp, symbolOf(factor.key()),
                                                       factor.key().section(' ', 1));
            };
            QCOMPARE(ofProduct("Cash"), qMin(double(Max), byAccount["A1"] + byAccount["A2"]));
            QCOMPARE(ofProduct(""), qMin(double(Max), byAccount["A1"] + byAccount["A2"] + byAccount["A3"]));
        }
    }
}

T0_REGISTER_TEST(CandidatesTest)

#include "tst_Candidates.moc"
