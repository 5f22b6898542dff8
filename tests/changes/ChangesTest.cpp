#include "FaultChannel.h"
#include "HostSession.h"
#include "LocalChannel.h"
#include "ManualT0Logic.h"
#include "ManualT0LogicPlugin.h"
#include "ManualT0LogicPresenterClass.h"
#include "ManualT0LogicPrivate.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "RandomChanges.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtCore/QTextStream>
#include <QtTest/QtTest>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::securityExchange;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

const char *const operationNames[] = {"AlterT0ProductAccount",
                                      "AddT0Resource",
                                      "AlterT0Resource",
                                      "DeleteT0Resource",
                                      "AllocatePublicResource",
                                      "AllocateResourceToTrader",
                                      "AddSecurityPoolAndResource",
                                      "DeleteSecurityPoolsByIdList"};

const QString &messageOf(Change::Operation operation)
{
    using namespace Master_MsgType;
    static const QString types[] = {AlterManualT0ProductsRequest,        AddManualT0ResourceRequest,
                                    AlterManualT0ResourceRequest,        DeleteManualT0ResourceRequest,
                                    AllocateManualT0SecurityPoolRequest, AllocateManualT0SecurityPoolRequest,
                                    AddManualT0ResourceAndPoolRequest,   DeleteManualT0SecurityPoolRequest};
    return types[operation];
}

/// Manager "m"; traders t1 (every account), t2 (A1, A3) and t3 (A2); "x", who is no trader. Nothing is set aside.
Books books()
{
    using namespace Orvane_Values::Exchange;
    const QString cash = Stand_Values::AssetProp::Cash;
    const QString trader = Master_Values::UserRoles::ManualT0Trader;
    Books books;
    // What is put into a text must not be taken for a place in it.
    books.accounts = {{"P1", "One", "A1", "A1%2", cash, {sh, hhk}, true, "", 0, 0},
                      {"P1", "One", "A2", "A2%1", Master_Values::FundAccountType::Credit, {sh}, true, "", 0, 0},
                      {"P2", "Two", "A3", "A3", cash, {sh, hhk}, true, "", 0, 0}};
    books.users = {{"m", "Manager", "O1", {Master_Values::UserRoles::ManualT0Mangager}, {}},
                   {"t1", "First", "O1", {trader}, {"A1", "A2", "A3"}},
                   {"t2", "Second", "O1", {trader}, {"A3", "A1"}},
                   {"t3", "Third", "O1", {trader}, {"A2"}},
                   {"x", "Nobody", "O1", {}, {"A1"}}};
    for (const auto &[exchange, id, factor] : {std::tuple{sh, "600001", 1}, {sh, "110001", 10}, {hhk, "00700", 1}}) {
        Instrument instrument;
        instrument.exchange = exchange;
        instrument.securityID = QString::fromLatin1(id);
        instrument.symbol = instrument.securityID + QLatin1Char('.') + exchange;
        instrument.dispFactor = factor;
        books.instruments.append(instrument);
    }
    books.buildIndexes();
    return books;
}

/// One line a row with the given fields, sorted. Limits below 0 mean none, however they were scaled.
QStringList lines(const RecordList &rows, const QStringList &fields)
{
    QStringList result;
    for (const VariantRecord &row : rows) {
        QString line;
        for (const QString &field : fields) {
            const QVariant value = row.value(field);
            line += (value.type() == QVariant::String ? value.toString()
                                                      : QString::number(qMax(-1.0, value.toDouble()), 'f', 1)) +
                    QLatin1Char(' ');
        }
        result.append(line);
    }
    result.sort();
    return result;
}

const QStringList resourceFields()
{
    return {tradingAccount, symbol, ResourceId, ResourceQty, PublicPoolQty, PrivatePoolQty};
}

const QStringList poolFields()
{
    return {tradingAccount, symbol, T0TraderId, PoolDetailId, PoolTotalQty, MaxExposureQty};
}

const QStringList usageFields()
{
    return {tradingAccount, symbol, T0TraderId, RtPoolTotalQty, RtTotalBuyLimit, RtTotalSellLimit};
}

/// A manager's client at a gateway in memory.
class Desk
{
public:
    explicit Desk(const Books &books)
    {
        QString errorText;
        const auto gateway = PaperGateway::open(books, QString(), errorText);
        auto channel = std::make_unique<FaultChannel>(std::make_unique<LocalChannel>(gateway));
        faults = channel.get();
        HostConfig config;
        config.channel = std::move(channel);
        config.user = QStringLiteral("m");
        config.requestTimeoutMs = 60000;
        session = HostSession::open(std::move(config), errorText);
        hub = std::make_unique<ManualT0LogicPrivate>(nullptr, HubTiming{600000, 600000, 600000});
        presenter = new ManualT0LogicPresenterClass(ManualT0LogicPlugin::instanceId(), nullptr);
        ManualT0LogicPlugin::connectHub(hub.get(), presenter, Qt::AutoConnection);
        hub->InitData();
    }

    ~Desk()
    {
        hub->stop();
        ZrPresenterClass::release(presenter);
    }

    Ending run(const Change &change)
    {
        Ending ending;
        ending.code = call(change, ending.text);
        return ending;
    }

    VariantRecord gatewayPicture()
    {
        QString errorText;
        VariantRecord picture;
        RecordList rows;
        session->request(Stand_MsgType::PictureRequest, {}, {}, errorText, picture, rows);
        return picture;
    }

    std::unique_ptr<HostSession> session;
    FaultChannel *faults = nullptr;
    std::unique_ptr<ManualT0LogicPrivate> hub;

private:
    QString call(const Change &change, QString &text)
    {
        switch (change.operation) {
        case Change::AlterProducts:
            return hub->AlterT0ProductAccount(change.products, text);
        case Change::AddResources:
            return hub->AddT0Resource(change.rows, change.cover, text);
        case Change::AlterResource:
            return hub->AlterT0Resource(change.rows.first(), text);
        case Change::DeleteResources:
            return hub->DeleteT0Resource(change.rows, text);
        case Change::AllocatePublic:
            return hub->AllocatePublicResource(change.rows, text);
        case Change::AllocateToTraders:
            return hub->AllocateResourceToTrader(change.rows, text);
        case Change::AddPools:
            return hub->AddSecurityPoolAndResource(change.rows, change.cover, text);
        default:
            return hub->DeleteSecurityPoolsByIdList(change.ids, text);
        }
    }

    ManualT0LogicPresenterClass *presenter = nullptr;
};

RecordList recordsOf(const QVariant &list)
{
    RecordList rows;
    for (const QVariant &row : list.toList())
        rows.append(row.toMap());
    return rows;
}

/// How often each operation ended how.
class Tally
{
public:
    void count(Change::Operation operation, const Ending &ending, Fate struck)
    {
        int column = ending.code == Orvane_Values::RequestExeStatus::success ? 1 : ending.serverSpoke ? 3 : 2;
        if (struck != Fate::Answered)
            column = struck == Fate::NeverArrives ? 4 : 5;
        ++m_counts[operation][0];
        ++m_counts[operation][column];
    }

    void print() const
    {
        QTextStream out(stdout);
        out << "                              changes accepted unsent refused timed-out lost\n";
        QVector<int> sums(6);
        for (int operation = 0; operation < Change::OperationCount; ++operation) {
            printLine(out, operationNames[operation], m_counts[operation]);
            for (int i = 0; i < sums.size(); ++i)
                sums[i] += m_counts[operation][i];
        }
        printLine(out, "all", sums.constData());
    }

private:
    static void printLine(QTextStream &out, const char *name, const int *counts)
    {
        out << QString::fromLatin1(name).leftJustified(28);
        for (int i = 0; i < 6; ++i)
            out << qSetFieldWidth(9) << counts[i] << qSetFieldWidth(0);
        out << '\n';
    }

    int m_counts[Change::OperationCount][6] = {};
};

QString differenceOf(const char *what, const RecordList &actual, const RecordList &expected, const QStringList &fields)
{
    const QStringList are = lines(actual, fields);
    const QStringList should = lines(expected, fields);
    return are == should ? QString()
                         : QStringLiteral("%1 are\n  %2\nand should be\n  %3")
                               .arg(QLatin1String(what), are.join("\n  "), should.join("\n  "));
}

/// The first of what server, model and client hold in which they differ.
QString disagreement(Desk &desk, Model &model)
{
    const VariantRecord held = desk.gatewayPicture();
    const RecordList resources = recordsOf(held.value(Stand_Fields::Picture::Resources));
    const RecordList pools = recordsOf(held.value(Stand_Fields::Picture::SecurityPools));
    const RecordList usage = recordsOf(held.value(Stand_Fields::Picture::RealtimeUsage));
    const QStringList accounts = desk.hub->GetAllT0TradingAccountList();
    QStringList differences{
        model.learnIds(resources, pools),
        differenceOf("the server's resources", resources, model.resourceRows(), resourceFields()),
        differenceOf("the server's pools", pools, model.poolRows(), poolFields()),
        differenceOf("the client's resources", desk.hub->GetAllResourceList(), resources, resourceFields()),
        differenceOf("the client's pools", desk.hub->GetAllSecurityPoolList(), pools, poolFields()),
        differenceOf("the client's usage", desk.hub->GetRealtimePoolDetailList(accounts, {}, {}, {}), usage,
                     usageFields())};
    differences.removeAll(QString());
    return differences.value(0);
}

} // namespace

class ChangesTest : public QObject
{
    Q_OBJECT

private slots:
    void clientServerAndModelAgree_data();
    void clientServerAndModelAgree();
};
T0_REGISTER_TEST(ChangesTest)

void ChangesTest::clientServerAndModelAgree_data()
{
    QTest::addColumn<bool>("withFaults");
    QTest::newRow("every request is answered") << false;
    QTest::newRow("requests time out and answers are lost") << true;
}

void ChangesTest::clientServerAndModelAgree()
{
    QFETCH(bool, withFaults);
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("T0_CHANGE_STEPS", &isGiven);
    const Books theBooks = books();
    Desk desk(theBooks);
    QVERIFY(desk.session->settle(60000));
    Model model(theBooks);
    RandomChanges random(theBooks, withFaults ? 2 : 1);
    Tally tally;
    for (int step = 0; step < (isGiven ? given : 1500); ++step) {
        const Change change = random.next(model);
        const Fate fate =
            withFaults && random.oneIn(4) ? (random.oneIn(2) ? Fate::NeverArrives : Fate::AnswerLost) : Fate::Answered;
        desk.faults->clearFaults();
        if (fate != Fate::Answered)
            desk.faults->addFault(messageOf(change.operation),
                                  fate == Fate::NeverArrives ? FaultChannel::Fault::Timeout : FaultChannel::Fault::Lose,
                                  0, 1);
        Fate left = fate;
        const Ending expected = model.expect(change, left);
        const Ending ended = desk.run(change);
        tally.count(change.operation, expected, left == fate ? Fate::Answered : fate);
        const QByteArray what = QByteArray::number(step) + ' ' + operationNames[change.operation];
        QVERIFY2(ended.code == expected.code, what + ": " + ended.code.toUtf8() + " " + ended.text.toUtf8());
        QVERIFY2(expected.serverSpoke ? ended.text.startsWith(expected.text) && ended.text != expected.text
                                      : ended.text == expected.text,
                 what + ": " + ended.text.toUtf8());

        // A deletion whose answer is lost asks for the resources again but not for their pools.
        if (change.operation == Change::DeleteResources && ended.code == Master_Values::RequestExeStatus::timeout)
            desk.hub->RefreshDataByType(ManualT0Logic::SecurityPools);
        QVERIFY2(desk.session->settle(60000), what);

        const QString difference = disagreement(desk, model);
        QVERIFY2(difference.isEmpty(), what + ": " + difference.toUtf8());
    }
    if (isGiven)
        tally.print();
}

#include "ChangesTest.moc"
