#include "LogicTest.h"
#include "RealtimeFields.h"
#include "Tests.h"

#include <random>

using namespace Master_Fields::ManualT0;

namespace {

/// Rows of a healthy house: pools within their resources, all kinds of securities, unknown ones too.
struct House {
    RecordList resources;
    RecordList pools;
    RecordList usage;

    explicit House(unsigned seed)
    {
        std::mt19937 random(seed);
        const QStringList accounts{"A1", "A2", "A3", "A4"};
        const QStringList securities{"600000 SH", "110001 SH", "00700 HHK", "999999 SH"};
        for (int i = 0; i < 200; ++i) {
            const QString id = QString::number(i);
            const QString account = accounts.at(int(random() % 4));
            const QString security = securities.at(int(random() % 4));
            const int quantity = int(random() % 1000);
            resources.append(Rows::resource("R" + id, account, security, quantity));
            int left = quantity;
            for (const char *trader : {"public", "u1", "t2"}) {
                const int part = int(random() % unsigned(left + 1));
                pools.append(Rows::pool(trader + id, account, security, trader, part, "R" + id));
                left -= part;
            }
            VariantRecord fields;
            for (const QString &field : RealtimeFields::scaledQty() + RealtimeFields::summedAmount()) {
                if (random() % 4)
                    fields.insert(field, double(random() % 100) / 4);
            }
            usage.append(Rows::usage(account, random() % 2 ? "u1" : "t2", security, "1", fields));
        }
    }
};

QStringList texts(QStringList messages)
{
    for (QString &message : messages)
        message = message.section('\t', 0, 0);
    return messages;
}

} // namespace

class IntegrityTest : public LogicTest
{
    Q_OBJECT

private slots:
    void whatIsRightIsNotTold();
    void faultsAreToldAndMended_data();
    void faultsAreToldAndMended();
    void whatStaysIsToldOnce();
    void checksRunByThemselves();
    void failedAnswersAreAskedForAgain();

private:
    QStringList check()
    {
        onHub([this] { HubProbe::check(*hub); });
        return texts(session->takeBusinessMessages());
    }
};

void IntegrityTest::whatIsRightIsNotTold()
{
    const House house(std::random_device{}());
    start(house.resources, house.pools, house.usage);
    QCOMPARE(check(), QStringList());
    const House later(std::random_device{}());
    for (int slices = 1; slices < 40; ++slices) { // what comes between two slices is no fault
        onHub([&] { HubProbe::beginCheck(*hub, slices); });
        for (const char *account : {"A1", "A2", "A3", "A4"}) {
            answerResources(account, later.resources.mid(slices * 5, 60));
            answerPools(account, later.pools.mid(slices * 15, 180));
        }
        push(later.usage.at(slices));
        if (slices % 7 == 0)
            hub->RefreshDataByType(slices % 2 ? ManualT0Logic::Resources : ManualT0Logic::SecurityPools);
        onHub([this] { HubProbe::check(*hub); });
        takeAsked();
    }
    for (const QString &message : texts(session->takeBusinessMessages()))
        QVERIFY2(!message.contains("数据自检"), qPrintable(message));
}

void IntegrityTest::faultsAreToldAndMended_data()
{
    QTest::addColumn<bool>("atOnce"); // else in the second check
    for (const char *what :
         {"resource without its symbol", "resource under another exchange", "resource without its account",
          "resource that is not there", "pool without its trader", "pool without its trading key", "pool twice",
          "pool that is not there", "usage without its exchange", "usage under a symbol that nobody knows",
          "usage that is not there", "usage with a wrong sum", "usage with a part changed"})
        QTest::newRow(what) << true;
    for (const char *what : {"pool that its resource does not know", "resource with a pool that is not there",
                             "pool larger than its resource"})
        QTest::newRow(what) << false;
}

void IntegrityTest::faultsAreToldAndMended()
{
    QFETCH(bool, atOnce);
    const QString what = QTest::currentDataTag();
    const RecordList resources{Rows::resource("r1", "A1", "600000 SH", 900)};
    const RecordList pools{Rows::pool("p1", "A1", "600000 SH", "u1", 500, "r1"),
                           Rows::pool("p2", "A1", "600000 SH", "public", 400, "r1")};
    const RecordList usage{Rows::usage("A1", "u1", "600000 SH", "1", {{DailyBuyLimit, 500}})};
    start(resources, pools, usage);
    const RecordList before =
        hub->GetAllResourceList() + hub->GetAllSecurityPoolList() + hub->GetRealtimePoolDetailList({"A1"}, {}, {}, {});
    onHub([&] { HubProbe::damage(*hub, what); });
    if (!atOnce)
        QCOMPARE(check(), QStringList());

    const QString message = QStringLiteral("数据自检发现1处不一致，已重新查询账号：");
    const bool isOfAny = atOnce && what.endsWith("not there"); // nobody knows its account
    QCOMPARE(check(), QStringList(message + (isOfAny ? "A1、A2、A3、A4" : "A1")));
    const QStringList asked = takeAsked();
    QCOMPARE(asked.filter("A1"), QStringList({"resources A1", "pools A1"}));
    QCOMPARE(asked.last(), QStringLiteral("usage t2,u1"));
    QCOMPARE(takeEvents(), QStringList());
    QCOMPARE(HubProbe::indexFaults(*hub), QStringList());

    answerResources("A1", resources);
    answerPools("A1", pools);
    answerUsage(usage);
    QCOMPARE(check(), QStringList());
    takeEvents();
    const RecordList after =
        hub->GetAllResourceList() + hub->GetAllSecurityPoolList() + hub->GetRealtimePoolDetailList({"A1"}, {}, {}, {});
    QCOMPARE(after, before);
}

void IntegrityTest::whatStaysIsToldOnce()
{
    const RecordList resources{Rows::resource("r1", "A1", "600000 SH", 900)};
    const RecordList larger{Rows::pool("p1", "A1", "600000 SH", "u1", 901, "r1")};
    const RecordList fitting{Rows::pool("p1", "A1", "600000 SH", "u1", 900, "r1")};
    start(resources, larger);
    QVector<int> told;
    for (int i = 0; i < 8; ++i) {
        if (i == 4 || i == 5)
            answerPools("A1", i == 4 ? fitting : larger);
        told.append(check().size());
        takeAsked();
    }
    takeEvents();
    QCOMPARE(told, QVector<int>({0, 1, 0, 0, 0, 0, 1, 0}));
}

void IntegrityTest::checksRunByThemselves()
{
    close();
    open(Mode::ByHand, {600000, 600000, 600000, 1});
    start({Rows::resource("r1", "A1", "600000 SH", 900)});
    onHub([this] { HubProbe::damage(*hub, "resource without its symbol"); });
    QStringList asked;
    while (asked.size() < 3)
        asked += awaitAsked();
    QVERIFY(session->settle(60000)); // the checks that go on are not waited for
    QCOMPARE(session->takeBusinessMessages().size(), 1);
}

void IntegrityTest::failedAnswersAreAskedForAgain()
{
    start();
    answerResources("A1", {}, Rows::Fail);
    answerPools("A2", {}, Rows::Fail);
    answerPools("A9", {}, Rows::Fail); // not enabled
    answerResources("A9", {}, Rows::Fail);
    QCOMPARE(takeAsked(), QStringList());
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(check(), QStringList());
        QCOMPARE(takeAsked(), QStringList({"resources A1", "pools A2"}));
        QCOMPARE(check(), QStringList());
        QCOMPARE(takeAsked(), QStringList()); // while nobody answers
        answerResources("A1", {}, Rows::Fail);
        answerPools("A2", {}, Rows::Fail);
    }
    hub->RefreshDataByType(ManualT0Logic::SecurityPools);
    takeAsked();
    QCOMPARE(check(), QStringList());
    QCOMPARE(takeAsked(), QStringList("resources A1")); // the pools are being asked for
    answerResources("A1", {}, Rows::Fail);
    hub->RefreshDataByType(ManualT0Logic::Resources);
    takeAsked();
    QCOMPARE(check(), QStringList());
    QCOMPARE(takeAsked(), QStringList()); // both are
    for (const char *account : {"A1", "A2", "A3", "A4"}) {
        answerPools(account, {});
        answerResources(account, {});
    }
    QCOMPARE(check(), QStringList());
    QCOMPARE(takeAsked(), QStringList());
    takeEvents();
}

T0_REGISTER_TEST(IntegrityTest)

#include "tst_Integrity.moc"
