#include "FaultChannel.h"
#include "HubClient.h"
#include "LocalChannel.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "PictureLines.h"
#include "RandomChanges.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "Tests.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextStream>
#include <QtTest/QtTest>

using namespace Master_Fields::ManualT0;
using Orvane_Fields::Security::symbol;
using Orvane_Fields::UserAccount::tradingAccount;

namespace {

using namespace PictureLines;
using PictureLines::line;
using PictureLines::lines;

struct Operation {
    const char *name;
    QString msgType;
    QString (*call)(ManualT0LogicPrivate &hub, const Change &change, QString &text);
};

/// In the order of Change::Operation.
const Operation &operationOf(const Change &change)
{
    using namespace Master_MsgType;
    using H = ManualT0LogicPrivate;
    using C = Change;
    using T = QString;
    static const Operation operations[] = {
        {"AlterT0ProductAccount", AlterManualT0ProductsRequest,
         [](H &hub, const C &c, T &text) { return hub.AlterT0ProductAccount(c.products, text); }},
        {"AddT0Resource", AddManualT0ResourceRequest,
         [](H &hub, const C &c, T &text) { return hub.AddT0Resource(c.rows, c.cover, text); }},
        {"AlterT0Resource", AlterManualT0ResourceRequest,
         [](H &hub, const C &c, T &text) { return hub.AlterT0Resource(c.rows.first(), text); }},
        {"DeleteT0Resource", DeleteManualT0ResourceRequest,
         [](H &hub, const C &c, T &text) { return hub.DeleteT0Resource(c.rows, text); }},
        {"AllocatePublicResource", AllocateManualT0SecurityPoolRequest,
         [](H &hub, const C &c, T &text) { return hub.AllocatePublicResource(c.rows, text); }},
        {"AllocateResourceToTrader", AllocateManualT0SecurityPoolRequest,
         [](H &hub, const C &c, T &text) { return hub.AllocateResourceToTrader(c.rows, text); }},
        {"AddSecurityPoolAndResource", AddManualT0ResourceAndPoolRequest,
         [](H &hub, const C &c, T &text) { return hub.AddSecurityPoolAndResource(c.rows, c.cover, text); }},
        {"DeleteSecurityPoolsByIdList", DeleteManualT0SecurityPoolRequest,
         [](H &hub, const C &c, T &text) { return hub.DeleteSecurityPoolsByIdList(c.ids, text); }}};
    return operations[change.operation];
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

QStringList lines(const Model &model)
{
    QStringList resources;
    QStringList pools;
    for (const Model::Resource &held : model.resources()) {
        if (!model.isEnabled(held.account))
            continue;
        resources.append(line(
            {held.account, held.security.symbol, held.id, held.quantity, held.allocated(false), held.allocated(true)}));
        for (auto pool = held.pools.cbegin(); pool != held.pools.cend(); ++pool)
            pools.append(
                line({held.account, held.security.symbol, pool.key(), pool->id, pool->quantity, pool->maxExposure}));
    }
    resources.sort();
    pools.sort();
    return resources + pools;
}

/// What the pools let traders buy and sell, where nobody has traded: one line of each who may trade anything.
QStringList limitLines(const Model &model, const Books &books)
{
    QStringList result;
    for (const Model::Resource &held : model.resources()) {
        const qint64 ofAll = held.pools.value(Books::publicTrader()).quantity;
        for (const QString &trader : books.tradersOf(held.account)) {
            const qint64 limit = ofAll + held.pools.value(trader).quantity;
            if (limit > 0 && model.isEnabled(held.account))
                result.append(line({held.account, held.security.symbol, trader, limit, limit, limit}));
        }
    }
    result.sort();
    return result;
}

std::unique_ptr<FaultChannel> channelTo(const Books &books)
{
    QString errorText;
    return std::make_unique<FaultChannel>(
        std::make_unique<LocalChannel>(PaperGateway::open(books, QString(), errorText)));
}

/// How often each operation ended how.
class Tally
{
public:
    void count(const char *operation, const Ending &ending, Fate struck)
    {
        const bool accepted = ending.code == Orvane_Values::RequestExeStatus::success;
        const char *how = struck == Fate::NeverArrives ? "timed out"
                          : struck == Fate::AnswerLost ? "lost"
                          : accepted                   ? "accepted"
                          : ending.serverSpoke         ? "refused"
                                                       : "not sent";
        for (const char *row : {operation, "all"}) {
            ++m_counts[QLatin1String(row)]["changes"];
            ++m_counts[QLatin1String(row)][how];
        }
    }

    void print() const
    {
        QTextStream out(stdout);
        for (auto row = m_counts.cbegin(); row != m_counts.cend(); ++row) {
            out << row.key().leftJustified(28);
            for (const char *how : {"changes", "accepted", "not sent", "refused", "timed out", "lost"})
                out << QString::number(row->value(how)).rightJustified(8) << ' ' << how;
            out << '\n';
        }
    }

private:
    QMap<QString, QMap<QByteArray, int>> m_counts;
};

FaultChannel::Fault faultOf(Fate fate)
{
    return fate == Fate::NeverArrives ? FaultChannel::Fault::Timeout : FaultChannel::Fault::Lose;
}

/// Where server, model and client differ; empty: nowhere.
QString disagreement(HubClient &client, Model &model, const Books &books)
{
    const VariantRecord held = PictureLines::ofGateway(*client.session);
    const RecordList resources = recordsOf(held.value(Stand_Fields::Picture::Resources));
    const RecordList pools = recordsOf(held.value(Stand_Fields::Picture::SecurityPools));
    const ManualT0LogicPrivate &hub = *client.hub;
    const QStringList accounts = hub.GetAllT0TradingAccountList();
    const QStringList limits{tradingAccount, symbol, T0TraderId, RtPoolTotalQty, RtTotalBuyLimit, RtTotalSellLimit};
    const QStringList usage = lines(recordsOf(held.value(Stand_Fields::Picture::RealtimeUsage)), limits);
    const QString idFault = model.learnIds(resources, pools);
    return idFault + differenceOf("the server", lines(resources, pools), lines(model)) +
           differenceOf("the client", lines(hub.GetAllResourceList(), hub.GetAllSecurityPoolList()),
                        lines(resources, pools)) +
           differenceOf("the server's usage", usage.filter(QRegularExpression(" [1-9]\\d* \\d+ \\d+$")),
                        limitLines(model, books)) +
           differenceOf("the client's usage", lines(hub.GetRealtimePoolDetailList(accounts, {}, {}, {}), limits),
                        usage);
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
    auto channel = channelTo(theBooks);
    FaultChannel &faults = *channel;
    HubClient client(std::move(channel), "m");
    QVERIFY(client.settle());
    Model model(theBooks);
    RandomChanges random(theBooks, withFaults ? 2 : 1);
    Tally tally;
    for (int step = 0; step < (isGiven ? given : 1500); ++step) {
        const Change change = random.next(model);
        const Operation &operation = operationOf(change);
        const QByteArray what = QByteArray::number(step) + ' ' + operation.name + ": ";
        const Fate fate =
            withFaults && random.oneIn(4) ? random.oneIn(2) ? Fate::NeverArrives : Fate::AnswerLost : Fate::Answered;
        faults.clearFaults();
        if (fate != Fate::Answered)
            faults.addFault(operation.msgType, faultOf(fate), 0, 1);
        Fate left = fate;
        const Ending expected = model.expect(change, left);
        QString text;
        const QString code = operation.call(*client.hub, change, text);
        tally.count(operation.name, expected, left == fate ? Fate::Answered : fate);
        QVERIFY2(code == expected.code, what + code.toUtf8() + ' ' + text.toUtf8());
        QVERIFY2(text.startsWith(expected.text) && (text != expected.text) == expected.serverSpoke,
                 what + text.toUtf8());

        // deliberate: a deletion nobody knows the end of asks for the resources again but not for their pools
        if (change.operation == Change::DeleteResources && code == Master_Values::RequestExeStatus::timeout)
            client.hub->RefreshDataByType(ManualT0Logic::SecurityPools);
        QVERIFY2(client.settle(), what);
        const QString difference = disagreement(client, model, theBooks);
        QVERIFY2(difference.isEmpty(), what + difference.toUtf8());
    }
    if (isGiven)
        tally.print();
}

#include "ChangesTest.moc"
