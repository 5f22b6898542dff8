#include "MasterFields.h"
#include "MasterMsgType.h"
#include "MasterValues.h"
#include "OrvaneFields.h"
#include "StandMsgType.h"
#include "Store.h"
#include "TestBooks.h"
#include "TestClient.h"
#include "Tests.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

namespace T0_ = Master_Fields::ManualT0;
namespace UserAccount_ = Orvane_Fields::UserAccount;
using Master_Fields::System::addType;
using Master_Fields::System::alterType;

struct Thing {
    QString id; ///< empty: not known yet
    qint64 quantity = 0;
    qint64 exposure = -1;
    qint64 pending = -1;
};

/// What the gateway should hold, kept the simplest way; display units. The resource of a holding is the thing of the
/// trader "", its pools are those of the others.
struct Model {
    QMap<QString, bool> enabled;
    QMap<Holding, QMap<QString, Thing>> things;

    qint64 resource(const Holding &holding) const { return things.value(holding).value("").quantity; }

    qint64 allocated(const Holding &holding) const
    {
        qint64 sum = -resource(holding);
        for (const Thing &thing : things.value(holding))
            sum += thing.quantity;
        return sum;
    }

    /// Every field under its name in the audit.
    QMap<QString, QString> fields() const
    {
        QMap<QString, QString> all;
        for (auto account = enabled.cbegin(); account != enabled.cend(); ++account)
            all.insert("account " + account.key() + " enabled", *account ? "true" : "false");
        for (const auto &ofHolding : things) {
            for (auto thing = ofHolding.cbegin(); thing != ofHolding.cend(); ++thing) {
                const bool isPool = !thing.key().isEmpty();
                all.insert(isPool ? "pool " + thing->id + " PoolTotalQty" : "resource " + thing->id + " ResourceQty",
                           QString::number(thing->quantity));
                if (isPool) {
                    all.insert("pool " + thing->id + " MaxExposureQty", QString::number(thing->exposure));
                    all.insert("pool " + thing->id + " MaxPendExposureQty", QString::number(thing->pending));
                }
            }
        }
        return all;
    }
};

/// A request, and what it makes of the model: nothing unless it is good.
struct Step {
    QString type;
    VariantRecord header;
    RecordList rows;
    Model after;
    bool good = true;
};

/// Makes random requests, good and bad ones.
class Dice
{
public:
    explicit Dice(quint32 seed)
        : m_random(seed)
    {}

    int below(int n) { return int(m_random.bounded(n)); }
    bool once(int in) { return below(in) == 0; }
    qint64 quantity() { return once(12) ? -1 : below(30); }
    QString account() { return once(2) ? "A1" : "A2"; }
    QString security() { return QString::number(600000 + below(3)); }
    QString trader() { return QStringList{"t1", "t1", "t2", "public", "public", "nobody"}.at(below(6)); }

    template <typename Key, typename Value> Key keyOf(const QMap<Key, Value> &map)
    {
        return map.isEmpty() ? Key() : map.keys().at(below(map.size()));
    }

private:
    QRandomGenerator m_random;
};

qint64 factorOf(const Holding &holding)
{
    return holding.securityID == "600001" ? 10 : 1;
}

bool mayHave(const QString &trader, const Holding &holding)
{
    return trader == "public" || trader == "t1" || (trader == "t2" && holding.account == "A1");
}

VariantRecord rowOf(const Holding &holding)
{
    return {{UserAccount_::tradingAccount, holding.account},
            {Orvane_Fields::Security::securityID, holding.securityID},
            {UserAccount_::securityExchange, holding.exchange}};
}

VariantRecord poolRow(const Holding &holding, const QString &trader, qint64 quantity)
{
    VariantRecord row = rowOf(holding);
    row.insert(T0_::T0TraderId, trader);
    row.insert(T0_::PoolType, trader == "public" ? 0 : 1);
    row.insert(T0_::PoolTotalQty, quantity);
    return row;
}

void alterProducts(Step &step, Dice &dice)
{
    step.type = Master_MsgType::AlterManualT0ProductsRequest;
    QMap<QString, bool> seen;
    for (int i = dice.below(4); i > 0; --i) {
        const QString account = dice.account();
        const bool adds = !dice.once(4);
        step.rows.append({{UserAccount_::tradingAccount, account},
                          {UserAccount_::productAccount, account == "A1" ? "P1" : "P2"},
                          {alterType, adds ? Master_Values::AlterType::Add : Master_Values::AlterType::Delete}});
        step.good &= seen.value(account, adds) == adds;
        seen.insert(account, adds);
        step.after.enabled[account] = adds;
    }
}

void addResources(Step &step, Dice &dice)
{
    step.type = Master_MsgType::AddManualT0ResourceRequest;
    const bool cover = dice.once(2);
    step.header.insert(addType, cover ? Master_Values::AddType::Cover : Master_Values::AddType::Append);
    const QString account = dice.account();
    QSet<Holding> seen;
    for (int i = dice.below(3); i >= 0; --i) {
        const Holding holding{account, dice.security(), "SH"};
        const qint64 quantity = dice.quantity();
        step.rows.append(rowOf(holding));
        step.rows.last().insert(T0_::ResourceQty, quantity);
        Thing &resource = step.after.things[holding][""];
        resource.quantity = (cover ? 0 : resource.quantity) + quantity * factorOf(holding);
        step.good &= quantity > 0 && !seen.contains(holding) && step.after.enabled.value(account) &&
                     resource.quantity >= step.after.allocated(holding);
        seen.insert(holding);
    }
}

void alterResource(Step &step, Dice &dice)
{
    step.type = Master_MsgType::AlterManualT0ResourceRequest;
    const Holding holding = dice.keyOf(step.after.things);
    Thing &resource = step.after.things[holding][""];
    const qint64 quantity = 3 * dice.quantity();
    step.rows.append({{T0_::ResourceId, resource.id}, {T0_::ResourceQty, double(quantity)}});
    resource.quantity = quantity * factorOf(holding);
    step.good = !resource.id.isEmpty() && quantity >= 0 && resource.quantity >= step.after.allocated(holding);
}

void deleteResources(Step &step, Dice &dice)
{
    step.type = Master_MsgType::DeleteManualT0ResourceRequest;
    for (int i = dice.below(3); i > 0; --i) {
        const auto things = step.after.things.take(dice.keyOf(step.after.things));
        const QString id = dice.once(8) ? "R999999999" : things.value("").id;
        step.rows.append({{T0_::ResourceId, id}});
        step.good &= !id.isEmpty() && id != "R999999999";
    }
}

void allocate(Step &step, Dice &dice)
{
    step.type = Master_MsgType::AllocateManualT0SecurityPoolRequest;
    const Holding holding = dice.keyOf(step.after.things);
    const QMap<QString, Thing> before = step.after.things.value(holding);
    QMap<QString, Thing> &things = step.after.things[holding];
    const bool isPublic = dice.once(3);
    step.header = {{addType, Master_Values::AddType::Cover},
                   {T0_::ResourceId, before.value("").id},
                   {T0_::PoolType, isPublic ? 0 : 1}};
    step.good = before.contains("");
    for (const QString &trader : before.keys())
        if (!trader.isEmpty() && (trader == "public") == isPublic)
            things.remove(trader);
    QStringList seen;
    for (int i = isPublic ? 0 : dice.below(3); i >= 0; --i) {
        const QString trader = isPublic && !dice.once(8) ? "public" : dice.trader();
        const qint64 quantity = dice.quantity();
        step.rows.append(poolRow(holding, trader, quantity));
        step.good &=
            mayHave(trader, holding) && (trader == "public") == isPublic && quantity >= 0 && !seen.contains(trader);
        seen.append(trader);
        Thing pool = before.value(trader);
        pool.quantity = quantity * factorOf(holding);
        if (quantity != 0)
            things.insert(trader, pool);
    }
    step.good &= step.after.allocated(holding) <= step.after.resource(holding);
}

void changePools(Step &step, Dice &dice)
{
    const bool deletes = dice.once(3);
    step.type =
        deletes ? Master_MsgType::DeleteManualT0SecurityPoolRequest : Master_MsgType::AlterManualT0SecurityPoolRequest;
    QStringList seen;
    for (int i = dice.below(2); i >= 0; --i) {
        const Holding holding = dice.keyOf(step.after.things);
        const QString trader = dice.trader();
        Thing &pool = step.after.things[holding][trader];
        step.good &= !pool.id.isEmpty() && !seen.contains(pool.id);
        seen.append(pool.id);
        VariantRecord row{{T0_::PoolDetailId, pool.id}};
        if (!deletes) {
            const qint64 quantity = dice.quantity();
            const qint64 limit = dice.quantity();
            row.insert(T0_::PoolTotalQty, quantity);
            row.insert(T0_::MaxExposureQty, limit);
            pool.exposure = limit < 0 ? -1 : limit * factorOf(holding);
            pool.quantity = quantity * factorOf(holding);
            step.good &= quantity >= 0;
        }
        step.rows.append(row);
    }
    for (const Holding &holding : step.after.things.keys()) {
        step.good &= step.after.allocated(holding) <= step.after.resource(holding);
        for (const QString &trader : step.after.things.value(holding).keys())
            if (deletes && seen.contains(step.after.things.value(holding).value(trader).id))
                step.after.things[holding].remove(trader);
    }
}

void addBoth(Step &step, Dice &dice)
{
    step.type = Master_MsgType::AddManualT0ResourceAndPoolRequest;
    const bool cover = dice.once(2);
    const QString account = dice.account();
    step.header = {{addType, cover ? Master_Values::AddType::Cover : Master_Values::AddType::Append},
                   {UserAccount_::tradingAccount, account},
                   {T0_::PoolType, 1}};
    step.good = step.after.enabled.value(account);
    const Model before = step.after;
    QMap<Holding, QStringList> seen;
    for (int i = dice.below(4); i >= 0; --i) {
        const Holding holding{account, dice.security(), "SH"};
        const QString trader = dice.trader();
        const qint64 quantity = dice.quantity();
        if (cover && !seen.contains(holding))
            step.after.things[holding] = {{"", {before.things.value(holding).value("").id}}};
        step.good &= mayHave(trader, holding) && quantity > 0 && !seen.value(holding).contains(trader);
        seen[holding].append(trader);
        Thing pool = before.things.value(holding).value(trader);
        pool.quantity = (cover ? 0 : pool.quantity) + quantity * factorOf(holding);
        VariantRecord row = poolRow(holding, trader, quantity);
        if (dice.once(2)) {
            row.insert(T0_::MaxPendExposureQty, 5);
            pool.pending = 5 * factorOf(holding);
        }
        step.rows.append(row);
        step.after.things[holding].insert(trader, pool);
        step.after.things[holding][""].quantity += quantity * factorOf(holding);
    }
}

Step anyStep(const Model &model, Dice &dice)
{
    Step step;
    step.after = model;
    using Make = void (*)(Step &, Dice &);
    const QVector<Make> kinds{alterProducts, addResources, alterResource, deleteResources, allocate,
                              allocate,      changePools,  addBoth,       addBoth};
    kinds.at(dice.below(kinds.size()))(step, dice);
    step.header.insert(UserAccount_::loginUserId, "m");
    if (dice.once(2))
        step.header.insert(Orvane_Fields::System::subGroupNumber, step.rows.size());
    return step;
}

Holding holdingOf(const VariantRecord &row)
{
    return {row.value(UserAccount_::tradingAccount).toString(),
            row.value(Orvane_Fields::Security::securityID).toString(),
            row.value(UserAccount_::securityExchange).toString()};
}

/// The model as clients see it.
Model pictureOf(TestClient &client)
{
    Model model;
    const QStringList accounts{"A1", "A2", "A3"};
    for (const QString &account : accounts)
        model.enabled.insert(account, false);
    const MessageBody products = client.ask(Master_MsgType::QueryManualT0ProductsRequest);
    for (const VariantRecord &row : products.rows.mid(1))
        model.enabled.insert(row.value(UserAccount_::tradingAccount).toString(), true);
    for (const QString &account : accounts) {
        const VariantRecord query{{UserAccount_::tradingAccount, account}};
        const RecordList rows = client.all(Master_MsgType::QueryManualT0ResourceRequest, query) +
                                client.all(Master_MsgType::QueryManualT0SecurityPoolRequest, query);
        for (const VariantRecord &row : rows) {
            const QString trader = row.value(T0_::T0TraderId).toString();
            const auto units = [&row](const QString &field) {
                const qint64 number = row.value(field, -1).toLongLong();
                return number < 0 ? -1 : number * factorOf(holdingOf(row));
            };
            model.things[holdingOf(row)].insert(
                trader, {row.value(trader.isEmpty() ? T0_::ResourceId : T0_::PoolDetailId).toString(),
                         units(trader.isEmpty() ? T0_::ResourceQty : T0_::PoolTotalQty), units(T0_::MaxExposureQty),
                         units(T0_::MaxPendExposureQty)});
        }
    }
    return model;
}

/// Gives what is new in the model the ids of the picture; false: an id is not a new one.
bool adoptIds(Model &model, const Model &picture, QSet<QString> &given)
{
    bool good = true;
    for (auto things = model.things.begin(); things != model.things.end(); ++things) {
        for (auto thing = things->begin(); thing != things->end(); ++thing) {
            if (!thing->id.isEmpty())
                continue;
            thing->id = picture.things.value(things.key()).value(thing.key()).id;
            good &= !given.contains(thing->id);
            given.insert(thing->id);
        }
    }
    return good;
}

using Usage = QMap<QString, VariantRecord>;

Usage usageOf(TestClient &client)
{
    Usage usage;
    const VariantRecord query{{T0_::T0TraderId, "t1,t2"}};
    for (const VariantRecord &row : client.all(Master_MsgType::QueryManualT0RealTimePoolUsageRequest, query)) {
        const Holding holding = holdingOf(row);
        usage.insert(QStringList{row.value(T0_::T0TraderId).toString(), holding.account, holding.securityID}.join('/'),
                     row);
    }
    return usage;
}

/// Without trades the limits are what the pools give, and nothing in a disabled account.
bool usageFits(const Usage &usage, const Model &model)
{
    int expected = 0;
    for (auto pools = model.things.cbegin(); pools != model.things.cend(); ++pools)
        for (const char *trader : {"t1", "t2"})
            expected += pools->contains(trader) || (pools->contains("public") && mayHave(trader, pools.key()));
    bool good = usage.size() >= expected;
    for (const VariantRecord &row : usage) {
        const Holding holding = holdingOf(row);
        const auto pools = model.things.value(holding);
        const double total =
            double(pools.value(row.value(T0_::T0TraderId).toString()).quantity + pools.value("public").quantity) /
            double(factorOf(holding));
        const double limit = model.enabled.value(holding.account) ? total : 0;
        good &= row.value(T0_::RtPoolTotalQty) == total && row.value(T0_::DailyBuyLimit) == limit &&
                row.value(T0_::DailySellLimit) == limit;
    }
    return good;
}

QStringList differences(const Model &before, const Model &after)
{
    const QMap<QString, QString> old = before.fields();
    const QMap<QString, QString> fresh = after.fields();
    QStringList lines;
    QStringList keys = old.keys() + fresh.keys();
    keys.removeDuplicates();
    for (const QString &key : qAsConst(keys))
        if (old.value(key) != fresh.value(key))
            lines.append(key + ": " + old.value(key) + " > " + fresh.value(key));
    lines.sort();
    return lines;
}

QStringList auditOf(const QString &file, const QString &request)
{
    QStringList lines;
    const QString error = Store::readAudit(file, {}, [&](const AuditEntry &entry) {
        if (entry.request != request)
            return;
        lines.append(entry.refusal.isEmpty() ? QStringList{entry.object, entry.objectId, entry.field}.join(' ') + ": " +
                                                   entry.from + " > " + entry.to
                                             : entry.refusal);
    });
    lines.sort();
    return error.isEmpty() ? lines : QStringList{error};
}

} // namespace

/// Random changes against a naive model.
class ChangeModelTest : public QObject
{
    Q_OBJECT

private slots:
    void everyChangeIsWholeOrNothing_data();
    void everyChangeIsWholeOrNothing();
};

void ChangeModelTest::everyChangeIsWholeOrNothing_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 3; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void ChangeModelTest::everyChangeIsWholeOrNothing()
{
    QFETCH(quint32, seed);
    Dice dice(seed);
    const QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("state"));
    TestClient client(openGateway(TestBooks::withAccounts(), file), "m");
    for (const char *trader : {"t1", "t2"})
        QVERIFY(client.subscribe(Master_MsgType::ManualT0RealTimePoolUsagePush, trader));
    Model model = pictureOf(client);
    Usage usage = usageOf(client);
    QSet<QString> ids;
    for (const auto &things : qAsConst(model.things))
        ids.insert(things.value("").id);
    QString lastTime;
    int accepted = 0;
    for (int i = 0; i < 200; ++i) {
        Step step = anyStep(model, dice);
        const Envelope envelope = changeOf(step.type, step.header, step.rows);
        const int pushesBefore = client.pushed().size();
        const MessageBody answer = client.send(envelope);
        const QByteArray what =
            QStringLiteral("%1, step %2: \"%3\"").arg(step.type, QString::number(i), refusal(answer)).toUtf8();
        QVERIFY2(succeeded(answer) == step.good, what.constData());
        accepted += int(step.good);

        const Model picture = pictureOf(client);
        if (!step.good)
            step.after = model;
        QVERIFY2(adoptIds(step.after, picture, ids), what.constData());
        QVERIFY2(differences(step.after, picture).isEmpty(),
                 what + differences(step.after, picture).join('\n').toUtf8());
        QCOMPARE(auditOf(file, envelope.id), step.good ? differences(model, step.after) : QStringList{refusal(answer)});

        // Exactly the records that changed were pushed, as they are, each with a new time.
        const Usage now = usageOf(client);
        Usage changed;
        for (auto row = now.cbegin(); row != now.cend(); ++row)
            if (usage.value(row.key()) != *row)
                changed.insert(row.key(), *row);
        const RecordList pushes = client.pushed().mid(pushesBefore);
        QCOMPARE(pushes.size(), changed.size());
        for (const VariantRecord &row : pushes) {
            QVERIFY2(changed.values().contains(row), what.constData());
            const QString time = row.value(Master_Fields::System::ModifyTime).toString();
            QVERIFY2(time > lastTime, what.constData());
            lastTime = time;
        }
        QVERIFY2(usageFits(now, step.after), what.constData());
        model = step.after;
        usage = now;
    }
    QVERIFY2(accepted > 50 && accepted < 170, qPrintable(QString::number(accepted)));
}

T0_REGISTER_TEST(ChangeModelTest)
#include "ChangeModelTest.moc"
