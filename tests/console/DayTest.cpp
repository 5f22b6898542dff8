#include "OrvaneFields.h"
#include "Program.h"
#include "Tests.h"
#include "VariantRecord.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace Program;

namespace {

/// The texts of orders and cancels that did not succeed, in order, each once.
QStringList refusals(const Run &run)
{
    using namespace Orvane_Fields::System;
    QStringList texts;
    for (const QJsonObject &line : run.lines())
        for (const QJsonValue &out : line.value("out").toArray())
            for (const QJsonValue &row : out.toArray())
                if (row.toObject().value(requestExeStatus) != QLatin1String("success"))
                    texts.append(row.toObject().value(textDescription).toString());
    texts.removeDuplicates();
    return texts;
}

} // namespace

class DayTest : public QObject
{
    Q_OBJECT

private slots:
    void theDayIsTheSameEveryTimeAndInReplay();
};
T0_REGISTER_TEST(DayTest)

void DayTest::theDayIsTheSameEveryTimeAndInReplay()
{
    const QTemporaryDir dir;
    const QString journal = dir.filePath("journal");
    QFile script(QStringLiteral(T0_DAY));
    QVERIFY(script.open(QIODevice::ReadOnly));
    QProcess programs[3];
    start(programs[0], {QStringLiteral(T0_DAY), "--json"});
    start(programs[1], {QStringLiteral(T0_DAY)});
    start(programs[2], {"--journal", journal});
    programs[2].write(script.readAll() + "picture hash\n");
    programs[2].closeWriteChannel();
    const Run day = finish(programs[0]);
    QVERIFY2(day.exitCode == 0, qPrintable(day.errors));
    const Run tables = finish(programs[1]);
    QVERIFY(tables.exitCode == 0 && tables.output.size() > 10000);
    const Run recorded = finish(programs[2]);
    const QByteArray hash = lastLine(recorded.output);
    QCOMPARE(recorded.output, tables.output + hash);

    const Run replay = runConsole({}, {"--replay", journal});
    QVERIFY2(replay.exitCode == 0, qPrintable(replay.errors));
    QVERIFY(hash.startsWith("picture ") && hash.size() > 64);
    QCOMPARE(lastLine(replay.output), hash);
    QVERIFY(tables.output.contains(replay.output.chopped(hash.size())));

    QCOMPARE(refusals(day), (QStringList{"卖出数量应为100的整数倍，零股应一次性卖出", "委托价格必须是[0.01]的整数倍！",
                                         "委托价格不是最小变动价位的整数倍",
                                         "价格不是有效价位，或超出涨跌停范围11.12到13.6", "买入数量应为100的整数倍",
                                         "委托数量900000超过可用额度2700", "已被限制为只减仓，该方向没有可减的仓位",
                                         "交易员trader3已被暂停交易，不能委托，只能撤单", "请求超时"}));
    QString statuses;
    for (const QJsonValue &order : resultOf(day, "orders"))
        statuses += order.toObject().value(Orvane_Fields::Security::orderStatus).toString().at(0);
    // The two orders of the batch that timed out are cancelled, like the one whose batch was answered.
    QCOMPARE(statuses, QStringLiteral("FFFFFFFFFFCCC"));
}

#include "DayTest.moc"
