#include "LogicTest.h"
#include "PictureCheck.h"
#include "Tests.h"

#include "MasterConstants.h"

#include <random>

using MasterConstants::SettingFieldName::ManualT0Settings::TradeCustQty;

namespace {

int stepCount()
{
    const int steps = qEnvironmentVariableIntValue("T0_MODEL_STEPS");
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
    return steps > 0 ? steps : 400;
#else
    return steps > 0 ? steps : 3000;
#endif
}

} // namespace

/// The hub against a model made of plain lists, over random answers, pushes, refreshes and choices.
class ModelTest : public LogicTest
{
    Q_OBJECT

private slots:
    void hubAnswersAsTheModelDoes_data();
    void hubAnswersAsTheModelDoes();

private:
    void step(Chance &chance);
    void answerSomeAccount(Chance &chance);
    void answerSomeUsage(Chance &chance);
    QStringList compare(Chance &chance);

    Model model;
    QString lastStep;
};

void ModelTest::hubAnswersAsTheModelDoes_data()
{
    QTest::addColumn<unsigned>("seed");
    const unsigned given = qEnvironmentVariable("T0_MODEL_SEED").toUInt();
    const unsigned first = given ? given : std::random_device()();
    for (unsigned seed = first; seed < first + 4; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void ModelTest::hubAnswersAsTheModelDoes()
{
    QFETCH(unsigned, seed);
    close();
    desk = tradingDesk();
    open(Mode::ByHand, {600000, 600000, 0, 600000});
    model = Model();
    Chance chance(seed);
    for (int type = 0; type <= 6; ++type)
        hub->RefreshDataByType(type); // nothing was started yet
    for (int i = 0; i < stepCount() / 4; ++i) {
        step(chance);
        const QStringList differences = compare(chance);
        const QString where = QStringLiteral("seed %1, step %2 (%3):\n").arg(seed).arg(i).arg(lastStep);
        QVERIFY2(differences.isEmpty(), qPrintable(where + differences.join('\n')));
    }
    takeAsked();
}

void ModelTest::step(Chance &chance)
{
    const int kind = chance.upTo(46);
    const bool success = kind < 35 ? !chance.oneIn(5) : chance.oneIn(2); // five failures in a row must be met
    const QString code = success ? Rows::Success : chance.of({"fail", "timeout"});
    if (kind < 20) {
        answerSomeAccount(chance);
    } else if (kind < 30) {
        answerSomeUsage(chance);
    } else if (kind < 32) {
        const QStringList accounts = chance.some({"A1", "A2", "A3", "A9"});
        lastStep = "choose " + accounts.join(',');
        hub->SetCurrentTradeAccount(accounts);
        model.choose(accounts);
    } else if (kind < 35) {
        const int type = chance.upTo(7);
        lastStep = QStringLiteral("refresh %1").arg(type);
        hub->RefreshDataByType(type);
        model.refreshType(type);
    } else if (kind < 38) {
        RecordList rows;
        for (int i = chance.upTo(6); i > 0; --i) {
            const QString account = chance.account();
            rows.append(Rows::product(chance.oneIn(9) ? "P7" : account == "A4" ? "P2" : "P1", account));
        }
        lastStep = "products " + code;
        answerProducts(rows, code);
        model.answerProducts(success, rows);
    } else if (kind < 40) {
        lastStep = "InitData";
        hub->InitData();
        model.initData();
    } else if (kind < 42) {
        const QStringList accounts = chance.some({"A1", "A2", "A3"});
        lastStep = "priority " + code;
        answerPriority(accounts, code);
        model.answerPriority(success, accounts);
    } else if (kind < 44) {
        lastStep = "settings";
        const VariantRecord settings{{TradeCustQty, chance.upTo(300)}};
        hub->SetSymbolTradeSettings("600000.SH", settings);
        model.settings.insert("600000.SH", settings);
    } else {
        RecordList rows;
        for (const QString &id : chance.some({"u1", "t2", "t3", "t4"}))
            rows.append(Rows::trader(id, id + QString::number(chance.upTo(3))));
        lastStep = "traders " + code;
        const bool isManager = chance.oneIn(2);
        answerTraders(rows, isManager, code);
        model.answerTraders(success, rows, isManager);
    }
}

void ModelTest::answerSomeAccount(Chance &chance)
{
    const QString account = chance.account();
    const bool success = !chance.oneIn(5);
    const QString code = success ? Rows::Success : Rows::Fail;
    if (chance.oneIn(2)) {
        lastStep = "resources " + account + ' ' + code;
        const bool cover = !chance.oneIn(3);
        const RecordList rows = chance.rows(account, [&](const QString &of) { return chance.resource(of); });
        answerResources(account, rows, code, cover);
        model.answerResources(account, success, rows, cover);
        return;
    }
    lastStep = "pools " + account + ' ' + code;
    const RecordList rows = chance.rows(account, [&](const QString &of) { return chance.pool(of); });
    answerPools(account, rows, code);
    model.answerPools(account, success, rows);
    if (!chance.oneIn(3))
        return;
    // The same again: no news, where it is a later answer both times; unless a field is gone.
    RecordList again = rows;
    if (!again.isEmpty() && chance.oneIn(3))
        again.first().erase(std::prev(again.first().end()));
    answerPools(account, again, code);
    model.answerPools(account, success, again);
}

void ModelTest::answerSomeUsage(Chance &chance)
{
    const bool loading = model.states[Model::Usage] == Model::Loading;
    if (!chance.oneIn(3)) {
        const VariantRecord row = chance.usage(chance.account());
        lastStep = "push " + text(row, Master_Fields::System::ModifyTime);
        push(row);
        model.push(row);
        return;
    }
    const bool success = loading || !chance.oneIn(5); // a failed first load waits for a timer
    lastStep = QStringLiteral("usage %1").arg(success);
    const RecordList rows = chance.rows(chance.account(), [&](const QString &of) { return chance.usage(of); });
    answerUsage(rows, success ? Rows::Success : Rows::Fail);
    model.answerUsage(success, rows);
}

QStringList ModelTest::compare(Chance &chance)
{
    PictureCheck check(*hub, model);
    QStringList asked = takeAsked();
    asked.sort();
    model.asked.sort();
    check.differ("asked", asked, std::exchange(model.asked, {}));
    check.differ("events", takeEvents(), std::exchange(model.events, {}));
    check.compareHeld();
    for (int i = 0; i < 6; ++i)
        check.compareLookups(chance);
    return check.differences();
}

T0_REGISTER_TEST(ModelTest)

#include "tst_Model.moc"
