#include "RecordTable.h"

#include "HCore.h"
#include "Layout.h"
#include "Tests.h"

#include <QtCore/QRandomGenerator>
#include <QtGui/QClipboard>
#include <QtGui/QPaintEvent>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>

#include <limits>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

Columns columns()
{
    return {{"id", "Id", CellKind::Code, "id"},
            {"amount", "Amount", CellKind::Money, "amount"},
            {"name", "Name", CellKind::Text, "name"}};
}

VariantRecord row(const QString &id, const QVariant &amount, const QString &name = QString())
{
    VariantRecord row{{"id", id}, {"name", name}};
    if (amount.isValid())
        row.insert("amount", amount);
    return row;
}

QString keyOf(const VariantRecord &row)
{
    return row.value("id").toString();
}

QStringList ids(const RecordList &rows)
{
    QStringList ids;
    for (const VariantRecord &row : rows)
        ids.append(keyOf(row));
    return ids;
}

/// The ids of the rows that a table draws.
class PaintedRows : public QObject
{
public:
    explicit PaintedRows(RecordTable *table)
        : QObject(table)
        , m_table(table)
    {
        table->viewport()->installEventFilter(this);
    }

    QStringList rows;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        const QRegion region = static_cast<QPaintEvent *>(event)->region();
        for (int row = 0; row < m_table->model()->rowCount(); ++row) {
            const QModelIndex id = m_table->model()->index(row, 0);
            if (region.intersects(m_table->visualRect(id)))
                rows.append(id.data().toString());
        }
        return false;
    }

private:
    RecordTable *m_table;
};

} // namespace

class RecordTableTest : public QObject
{
    Q_OBJECT

private slots:
    void changesAreShownTogether();
    void randomChangesKeepRowsAndPlaces();
    void onlyRowsThatChangedAreDrawnAgain();
    void sortingPutsWhatIsMissingLast();
    void filterAndSearchHideRows();
    void filesKeepCodesAndQuotes();
    void layoutComesBackAndIsReset();
};

void RecordTableTest::changesAreShownTogether()
{
    RecordModel model(columns(), keyOf);
    model.setRows({row("a", 1), row("b", 2), row("c", 3), row("d", 4)});
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy shown(&model, &RecordModel::shown);
    for (int i = 0; i < 100; ++i)
        model.put({row("b", i), row("d", i), row("e", i)});
    model.remove({"a", "unknown"});
    QTRY_COMPARE(shown.size(), 1);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(ids(model.records()), QStringList({"b", "c", "d", "e"}));
    QCOMPARE(model.record("e").value("amount").toInt(), 99);
    model.put({row("b", 99)}); // the same again
    model.flush();
    QCOMPARE(changed.size(), 1);
}

/// Against a list that is searched: rows that stay keep their order, those that come stand at the end.
void RecordTableTest::randomChangesKeepRowsAndPlaces()
{
    RecordModel model(columns(), keyOf);
    RecordTable table("test.random", &model);
    table.sortByColumn(1, Qt::AscendingOrder);
    QAbstractItemModelTester modelTester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester viewTester(table.model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QRandomGenerator random(7);
    QMap<QString, VariantRecord> rows;
    QStringList order;
    for (int step = 0; step < 400; ++step) {
        QStringList gone;
        for (int i = random.bounded(4); i > 0; --i)
            gone.append(QString::number(random.bounded(40)));
        RecordList put;
        for (int i = random.bounded(6); i > 0; --i)
            put.append(row(QString::number(random.bounded(40)), random.bounded(100)));
        for (const QString &key : qAsConst(gone)) {
            rows.remove(key);
            order.removeOne(key);
        }
        for (const VariantRecord &record : qAsConst(put)) {
            if (!rows.contains(keyOf(record)))
                order.append(keyOf(record));
            rows.insert(keyOf(record), record);
        }
        model.remove(gone);
        model.flush();
        model.put(put);
        model.flush();
        QCOMPARE(ids(model.records()), order);
        for (int i = 0; i < order.size(); ++i) {
            QCOMPARE(model.rowOf(order.at(i)), i);
            QCOMPARE(model.record(i), rows.value(order.at(i)));
        }
    }
}

void RecordTableTest::onlyRowsThatChangedAreDrawnAgain()
{
    RecordModel model(columns(), keyOf);
    model.setRows({row("a", 1), row("b", 2), row("c", 3), row("d", 4), row("e", 5)});
    RecordTable table("test.drawn", &model);
    table.sortByColumn(0, Qt::DescendingOrder);
    table.resize(500, 400);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    PaintedRows painted(&table);
    const auto paintedBy = [&](const std::function<void()> &change) {
        QCoreApplication::processEvents();
        painted.rows.clear();
        change();
        [&] { QTRY_VERIFY(!painted.rows.isEmpty()); }();
        return painted.rows;
    };
    const auto put = [&](const RecordList &rows) {
        model.put(rows);
        model.flush();
    };
    QCOMPARE(paintedBy([&] { put({row("a", 9), row("d", 9)}); }), QStringList({"d", "a"}));
    QCOMPARE(paintedBy([&] { put({row("c", 9), row("d", 9)}); }), QStringList({"c"}));
    QCOMPARE(paintedBy([&] { model.setBusy({"b"}, true); }), QStringList({"b"}));
    QCOMPARE(paintedBy([&] { model.refreshCells(); }), QStringList({"e", "d", "c", "b", "a"}));
}

void RecordTableTest::sortingPutsWhatIsMissingLast()
{
    RecordModel model(columns(), keyOf);
    RecordTable table("test.sort", &model);
    model.setRows({row("none", {}), row("10", 10), row("nan", notANumber), row("-9", -9), row("9", 9)});
    table.sortByColumn(1, Qt::AscendingOrder);
    QCOMPARE(ids(table.shownRecords()).mid(0, 3), QStringList({"-9", "9", "10"}));
    table.sortByColumn(1, Qt::DescendingOrder);
    QCOMPARE(ids(table.shownRecords()).mid(0, 3), QStringList({"10", "9", "-9"}));
    QCOMPARE(table.model()->index(4, 1).data().toString(), QStringLiteral("--"));
    model.put({row("10", -20)}); // a change moves the row
    model.flush();
    QCOMPARE(ids(table.shownRecords()).mid(0, 3), QStringList({"9", "-9", "10"}));
}

void RecordTableTest::filterAndSearchHideRows()
{
    RecordModel model(columns(), keyOf);
    RecordTable table("test.filter", &model);
    model.setRows({row("600001", 1234.5, "星河科技"), row("000001", 2, "远山银行"), row("600002", 3, "星河银行")});
    table.search("1,234");
    QCOMPARE(ids(table.shownRecords()), QStringList("600001"));
    table.search("yhyh"); // initials are of one name
    QCOMPARE(ids(table.shownRecords()), QStringList());
    table.search("yinhang");
    QCOMPARE(ids(table.shownRecords()), QStringList());
    table.search("ysyh");
    QCOMPARE(ids(table.shownRecords()), QStringList("000001"));
    table.search("银行");
    table.setFilter([](const VariantRecord &row) { return row.value("amount").toDouble() > 2; });
    QCOMPARE(ids(table.shownRecords()), QStringList("600002"));
    table.setFilter({});
    table.search({});
    QCOMPARE(table.shownRecords().size(), 3);
}

void RecordTableTest::filesKeepCodesAndQuotes()
{
    RecordModel model(columns(), keyOf);
    RecordTable table("test.file", &model);
    model.setRows({row("000001", 1234567.125, "a \"b\", c"), row("2", {}, "x")});
    table.horizontalHeader()->moveSection(2, 0);
    QTemporaryDir folder;
    const QString name = folder.filePath("out.csv");
    QCOMPARE(table.exportTo(name), QString());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("\xEF\xBB\xBFName,Id,Amount\r\n\"a \"\"b\"\", "
                                        "c\",\"=\"\"000001\"\"\",1234567.125\r\nx,\"=\"\"2\"\"\",\r\n"));
    QVERIFY(table.exportTo(folder.filePath("none/out.csv")).contains("none/out.csv"));
    table.selectRow(1);
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("Name\tId\tAmount\nx\t2\t--\n"));
}

void RecordTableTest::layoutComesBackAndIsReset()
{
    RecordModel model(columns(), keyOf);
    {
        RecordTable table("test.layout", &model);
        table.horizontalHeader()->moveSection(2, 0);
        table.setColumnWidth(0, 77);
        table.sortByColumn(1, Qt::DescendingOrder);
    }
    RecordTable again("test.layout", &model);
    QCOMPARE(again.horizontalHeader()->visualIndex(2), 0);
    QCOMPARE(again.columnWidth(0), 77);
    QCOMPARE(again.horizontalHeader()->sortIndicatorSection(), 1);
    again.resetLayout();
    RecordTable reset("test.layout", &model);
    QCOMPARE(reset.horizontalHeader()->visualIndex(2), 2);
    QVERIFY(reset.columnWidth(0) != 77);
    RecordModel other({{"id", "Id", CellKind::Code, "id"}}, keyOf); // other columns: not their layout
    RecordTable("test.layout", &other).horizontalHeader()->resizeSection(0, 55);
    QVERIFY(RecordTable("test.layout", &model).columnWidth(0) != 55);
}

T0_REGISTER_TEST(RecordTableTest)
#include "RecordTableTest.moc"
