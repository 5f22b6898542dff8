#include "MasterUtils.h"
#include "OrderQueuePanel.h"
#include "Tests.h"

#include <QtGui/QPalette>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QListView>

#include <functional>
#include <limits>

using Orders = QMap<QString, double>;

namespace {

const QColor normalColor(Qt::darkGray);
const QColor highlightColor(Qt::yellow);
const QColor monitorColor(Qt::blue);
constexpr double price = 10.01;

/// A panel as users see it: what its cells show, and how often it was drawn.
struct Panel : OrderQueuePanel {
    Panel()
    {
        SetNormalColor(normalColor);
        SetHighlightColor(highlightColor);
    }

    QListView *list() const { return findChild<QListView *>(); }
    QModelIndex cell(int row) const { return list()->model()->index(row, 0); }

    QStringList texts() const
    {
        QStringList found;
        for (int row = 0; row < list()->model()->rowCount(); ++row)
            found << cell(row).data().toString();
        return found;
    }

    /// One letter a cell: m marked, l large, o ordinary, ? colours of no rule.
    QString looks() const
    {
        QString found;
        for (int row = 0; row < list()->model()->rowCount(); ++row) {
            const auto text = cell(row).data(Qt::ForegroundRole).value<QColor>();
            const auto background = cell(row).data(Qt::BackgroundRole).value<QColor>();
            const bool isNormal = text == normalColor;
            if (text == monitorColor && background == MasterUtils::GetBackgroundColor(monitorColor))
                found += 'm';
            else if (isNormal && background == highlightColor)
                found += 'l';
            else
                found += isNormal && background == MasterUtils::SystemBackgroundColor() ? 'o' : '?';
        }
        return found;
    }
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(Panel &)>)

class OrderQueuePanelTest : public QObject
{
    Q_OBJECT

private slots:
    void showsLotsAndKeepsShares()
    {
        Panel panel;
        panel.SetOrderQueue(price, {150, 1000, 99, -150, 0});
        QCOMPARE(panel.texts(), QStringList({"1", "10", "0", "-1", "0"}));
        QCOMPARE(panel.cell(0).data(Qt::UserRole), QVariant(150));
        QVERIFY(!panel.cell(0).data(Qt::ToolTipRole).isValid());
    }

    void firstRuleThatFitsColours_data()
    {
        QTest::addColumn<int>("monitorQty");
        QTest::addColumn<int>("baseQty");
        QTest::addColumn<Orders>("orders");
        QTest::addColumn<QString>("looks"); // of 100, 0, 100, 99, 500

        const Orders here{{"a", price}};
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("every cell of the quantity is marked") << 100 << 0 << here << "momoo";
        QTest::newRow("a mark goes before large") << 100 << 100 << here << "momol";
        QTest::newRow("no order at the price: large counts") << 100 << 100 << Orders{{"a", 10.02}} << "lolol";
        QTest::newRow("nothing is monitored") << 0 << 0 << here << "ooooo";
        QTest::newRow("one of several orders is at the price") << 99 << 0 << Orders{{"a", 9}, {"b", price}} << "ooomo";
        QTest::newRow("as good as the price") << 500 << 0 << Orders{{"a", price + 5e-11}} << "oooom";
        QTest::newRow("nearly the price") << 500 << 0 << Orders{{"a", price + 2e-10}} << "ooooo";
        QTest::newRow("no number is at no price") << 500 << 0 << Orders{{"a", nan}} << "ooooo";
        QTest::newRow("negative thresholds are none") << -1 << -1 << here << "ooooo";
    }
    void firstRuleThatFitsColours()
    {
        QFETCH(int, monitorQty);
        QFETCH(int, baseQty);
        QFETCH(Orders, orders);
        Panel panel;
        panel.SetBaseQty(baseQty);
        panel.SetOrderInfos(orders); // before there is a queue
        panel.SetMonitorQty(monitorQty, monitorColor);
        panel.SetOrderQueue(price, {100, 0, 100, 99, 500});
        QTEST(panel.looks(), "looks");
    }

    void markFollowsTheOrders()
    {
        Panel panel;
        panel.SetOrderQueue(price, {100, 200});
        panel.SetMonitorQty(100, monitorColor);
        QCOMPARE(panel.looks(), QString("oo"));
        panel.AppendOrderInfo("a", price);
        QCOMPARE(panel.looks(), QString("mo"));
        panel.AppendOrderInfo("a", 9.99); // the only order has been altered away
        QCOMPARE(panel.looks(), QString("oo"));
        panel.AppendOrderInfo("a", price);
        panel.AppendOrderInfo("b", 9.99);
        panel.RemoveOrderInfo("b");
        QCOMPARE(panel.looks(), QString("mo"));
        panel.SetOrderQueue(9.99, {100, 200});
        QCOMPARE(panel.looks(), QString("oo"));
        panel.SetOrderQueue(price, {100, 200});
        panel.RemoveOrderInfo("a");
        QCOMPARE(panel.looks(), QString("oo"));
    }

    void drawsOnceOrNotAtAll_data()
    {
        using Step = std::function<void(Panel &)>;
        QTest::addColumn<Step>("step");
        QTest::addColumn<int>("drawings");

        const auto row = [](const char *name, int drawings, const Step &step) {
            QTest::newRow(name) << step << drawings;
        };
        row("ten thousand orders", 1, [](Panel &p) {
            QList<int> queue;
            for (int qty = 0; qty < 10000; ++qty)
                queue << qty;
            p.SetOrderQueue(price, queue);
            QCOMPARE(p.texts().size(), 10000);
        });
        row("orders replaced", 1, [](Panel &p) { p.SetOrderInfos({}); });
        row("order added", 1, [](Panel &p) { p.AppendOrderInfo("b", 1); });
        row("order removed", 1, [](Panel &p) { p.RemoveOrderInfo("a"); });
        row("unknown order removed", 0, [](Panel &p) { p.RemoveOrderInfo("b"); });
        row("monitor", 1, [](Panel &p) { p.SetMonitorQty(1, monitorColor); });
        row("thresholds and colours", 0, [](Panel &p) {
            p.SetBaseQty(100);
            p.SetHighlightColor(Qt::red);
            p.SetNormalColor(Qt::green);
        });
        row("cleared", 1, [](Panel &p) {
            p.Clear();
            QCOMPARE(p.texts(), QStringList());
        });
    }
    void drawsOnceOrNotAtAll()
    {
        QFETCH(std::function<void(Panel &)>, step);
        Panel panel;
        panel.SetOrderInfos({{"a", price}});
        panel.SetOrderQueue(price, {100});
        const QSignalSpy resets(panel.list()->model(), &QAbstractItemModel::modelReset);
        step(panel);
        QTEST(resets.count(), "drawings");
    }

    void colourIsSeenWithTheNextQueue()
    {
        Panel panel;
        panel.SetBaseQty(100);
        panel.SetOrderQueue(price, {100});
        panel.SetHighlightColor(Qt::red);
        QCOMPARE(panel.looks(), QString("l"));
        panel.SetOrderQueue(price, {100});
        QCOMPARE(panel.cell(0).data(Qt::BackgroundRole).value<QColor>(), QColor(Qt::red));
    }

    void newSkinRecoloursButDoesNotBringBackWhatWasCleared()
    {
        const QPalette before = QApplication::palette();
        QPalette dark = before;
        dark.setColor(QPalette::Base, QColor(20, 20, 20));
        Panel shown;
        Panel cleared;
        shown.SetOrderQueue(price, {100});
        cleared.SetOrderQueue(price, {100});
        cleared.Clear();
        QApplication::setPalette(dark);
        const QString looks = shown.looks();
        const QStringList texts = cleared.texts();
        QApplication::setPalette(before);
        QCOMPARE(looks, QString("o"));
        QCOMPARE(texts, QStringList());
    }
};

T0_REGISTER_TEST(OrderQueuePanelTest)

#include "tst_OrderQueuePanel.moc"
