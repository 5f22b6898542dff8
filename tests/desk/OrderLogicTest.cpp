#include "MasterFields.h"
#include "MasterValues.h"
#include "OrderResults.h"
#include "OrderRoom.h"
#include "OrderWarnings.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "Tests.h"

#include <QtTest/QtTest>

using namespace Orvane_Fields;

namespace {

VariantRecord sentTo(const char *account, int quantity)
{
    return {{UserAccount::tradingAccount, account}, {Security::orderQty, quantity}};
}

VariantRecord answer(const char *account, const QString &status, const char *orderId)
{
    return {{UserAccount::tradingAccount, account},
            {System::requestExeStatus, status},
            {Security::orderID, orderId},
            {Stand_Fields::Order::requestId, QStringLiteral("r")}};
}

QStringList idsOf(const RecordList &sent)
{
    QStringList ids;
    for (const VariantRecord &order : sent)
        ids.append(order.value(Security::orderID).toString());
    return ids;
}

} // namespace

/// What the trader page works out without a window.
class OrderLogicTest : public QObject
{
    Q_OBJECT

    const QString m_success = Orvane_Values::RequestExeStatus::success;
    const QString m_fail = Orvane_Values::RequestExeStatus::fail;
    const QString m_timeout = Master_Values::RequestExeStatus::timeout;

private slots:
    void resultsComeByAccount()
    {
        // Order answers in the order of the accounts' priority, not in that of the rows, and not for foreign accounts.
        const RecordList sent = OrderResults::match(
            {sentTo("B", 1), sentTo("A", 2), sentTo("X", 3), sentTo("B", 4)},
            {answer("A", m_success, "a2"), answer("B", m_success, "b1"), answer("B", m_success, "b4")},
            "not submitted");
        QCOMPARE(idsOf(sent), QStringList({"b1", "a2", "", "b4"}));
        QVERIFY(OrderResults::isRefused(sent.at(2)));
        QCOMPARE(sent.at(2).value(System::textDescription).toString(), QStringLiteral("not submitted"));
    }

    void fateTellsUnknownOrdersOnly()
    {
        const RecordList request{answer("A", m_timeout, ""), answer("A", m_success, "known"),
                                 answer("A", m_timeout, "")};
        const RecordList told = OrderResults::withFate(
            request, {answer("A", m_success, "1"), answer("A", m_fail, "2"), answer("A", m_fail, "")});
        QCOMPARE(idsOf(told), QStringList({"1", "known", ""}));
        QVERIFY(OrderResults::isRefused(told.at(2)));

        // Nothing new; a single refusal holds for all; rows that are missing stay unknown.
        QCOMPARE(OrderResults::withFate(request, {answer("", m_timeout, "")}), request);
        const RecordList refused = OrderResults::withFate(request, {answer("", m_fail, "")});
        QVERIFY(OrderResults::isRefused(refused.at(0)) && OrderResults::isRefused(refused.at(2)));
        QVERIFY(OrderResults::isUnknown(OrderResults::withFate(request, {answer("A", m_success, "1")}).at(2)));
    }

    void warnings_data()
    {
        QTest::addColumn<QString>("side");
        QTest::addColumn<double>("price");
        QTest::addColumn<double>("last");
        QTest::addColumn<int>("warnings");
        const QString buy = Master_Values::SideUnion::normalBuy;
        const QString sell = Master_Values::SideUnion::collateralSell;
        // Own orders wait to be sold at 10.30 and bought at 9.80; limits are 9 and 11.
        QTest::newRow("two per cent is near") << buy << 10.2 << 10. << 0;
        QTest::newRow("more is far") << buy << 10.21 << 10. << 1;
        QTest::newRow("far below") << buy << 9.79 << 10. << 1;
        QTest::newRow("at the upper limit, far, and across the own sale") << buy << 11. << 10. << 3;
        QTest::newRow("just below the limit") << sell << 10.99 << 10.9 << 0;
        QTest::newRow("at the lower limit and across the own purchase") << sell << 9. << 9.1 << 2;
        QTest::newRow("at the price of the own sale") << buy << 10.3 << 10.3 << 1;
        QTest::newRow("own orders of the same direction") << buy << 9.8 << 9.8 << 0;
        QTest::newRow("no last price") << buy << 10. << 0. << 1;
    }

    void warnings()
    {
        QFETCH(QString, side);
        QFETCH(double, price);
        QFETCH(double, last);
        OrderWish wish;
        wish.symbol = QStringLiteral("S");
        wish.sideUnion = side;
        wish.price = price;
        SymbolQuote quote;
        quote.last = last;
        quote.upLimit = 11;
        quote.downLimit = 9;
        const auto own = [](const QString &side, double price) {
            return VariantRecord{
                {Security::symbol, "S"}, {Master_Fields::Security::SideUnion, side}, {Security::price, price}};
        };
        VariantRecord elsewhere = own(Master_Values::SideUnion::normalSell, 9.);
        elsewhere.insert(UserAccount::securityExchange, "another");
        const RecordList live{own(Master_Values::SideUnion::normalSell, 10.3),
                              own(Master_Values::SideUnion::normalBuy, 9.8), elsewhere};
        QTEST(OrderWarnings::of(wish, quote, live).size(), "warnings");
    }

    void quickQuantities()
    {
        OrderRoom room;
        room.quota = 1950;
        room.closable = 70;
        using namespace QuickQuantity;
        QCOMPARE(of(Third, room, true, 100, 100), 600);
        QCOMPARE(of(All, room, true, 100, 100), 1900);
        QCOMPARE(of(All, room, false, 100, 100), 1950); // odd lots are sold whole
        QCOMPARE(of(Close, room, false, 100, 100), 70);
        QCOMPARE(of(TenLots, room, true, 100, 200), 2000);
    }
};

T0_REGISTER_TEST(OrderLogicTest)
#include "OrderLogicTest.moc"
