#include "PoolEdit.h"
#include "Tests.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

namespace {

using Step = PoolEdit::Step;
using Pools = PoolEdit::ServerPools;

const QString publicPool()
{
    return QStringLiteral("public");
}

Pools pools(const QVector<QPair<QString, qint64>> &quantities)
{
    Pools pools;
    for (const auto &[trader, quantity] : quantities)
        pools.insert(trader, {QStringLiteral("id-") + trader, {quantity, -1, -1}});
    return pools;
}

/// What a server makes of a step.
void carryOut(const Step &step, Pools &server)
{
    if (step.kind == Step::Limits) {
        for (auto pool = step.pools.cbegin(); pool != step.pools.cend(); ++pool)
            server[pool.key()].figures = {server.value(pool.key()).figures[0], (*pool)[1], (*pool)[2]};
        return;
    }
    const Pools before = server;
    for (const QString &trader : before.keys()) {
        if ((trader == publicPool()) == (step.kind == Step::Public))
            server.remove(trader);
    }
    for (auto pool = step.pools.cbegin(); pool != step.pools.cend(); ++pool) {
        PoolEdit::ServerPool made = before.value(pool.key(), {QStringLiteral("new"), PoolEdit::NoPool});
        made.figures[PoolEdit::Quantity] = (*pool)[PoolEdit::Quantity];
        if (made.figures[PoolEdit::Quantity] > 0)
            server.insert(pool.key(), made);
    }
}

/// Pools that hold something, as they are shown.
QMap<QString, PoolEdit::Figures> wantedPools(const PoolEdit &edit)
{
    QMap<QString, PoolEdit::Figures> wanted;
    for (const PoolEdit::Row &row : edit.rows()) {
        if (row.state != PoolEdit::State::Removed && row.shown[PoolEdit::Quantity] > 0)
            wanted.insert(row.trader, row.shown);
    }
    return wanted;
}

PoolEdit::Row row(const PoolEdit &edit, const char *trader)
{
    for (const PoolEdit::Row &row : edit.rows()) {
        if (row.trader == QLatin1String(trader))
            return row;
    }
    return {};
}

} // namespace

class PoolEditTest : public QObject
{
    Q_OBJECT

private slots:
    void othersChangesAndTypedOnes()
    {
        PoolEdit edit(publicPool(), 10);
        edit.takeServer(1000, pools({{"public", 100}, {"a", 200}, {"b", 300}, {"c", 100}}));
        edit.type("a", PoolEdit::Quantity, 250);
        edit.type("c", PoolEdit::Quantity, 150);
        edit.type("d", PoolEdit::Quantity, 55);
        QVERIFY(row(edit, "d").isOffUnit);
        QVERIFY(!edit.maySend());

        const auto changes = edit.takeServer(900, pools({{"public", 120}, {"a", 220}, {"c", 150}}));
        QStringList changed;
        for (const PoolEdit::ServerChange &change : changes)
            changed.append(change.trader);
        QCOMPARE(changed, QStringList({"", "a", "b", "public"})); // c is what was typed
        QCOMPARE(edit.publicQty(), 120);                          // untouched: follows
        QCOMPARE(row(edit, "a").shown[PoolEdit::Quantity], 250);  // typed: stays, and says so
        QVERIFY(row(edit, "a").isOvertaken);
        QCOMPARE((*row(edit, "a").server)[PoolEdit::Quantity], 220);
        QVERIFY(!edit.hasRow("b"));
        QCOMPARE(row(edit, "c").state, PoolEdit::State::Same);
        QCOMPARE(row(edit, "d").state, PoolEdit::State::Added);
        edit.type("a", PoolEdit::Quantity, 260); // in sight of the server's 220
        QVERIFY(!row(edit, "a").isOvertaken);
    }

    void removedAndEmptied()
    {
        PoolEdit edit(publicPool(), 1);
        edit.takeServer(1000, pools({{"a", 200}, {"b", 300}}));
        edit.remove("a");
        edit.type("b", PoolEdit::Quantity, 0);
        QCOMPARE(edit.freeQty(), 1000);
        const QVector<Step> steps = edit.steps();
        QCOMPARE(steps.size(), 1);
        QCOMPARE(steps.first().kind, Step::DeletePrivate); // an allocation of no rows would not be sent
        QCOMPARE(steps.first().ids, QStringList({"id-a", "id-b"}));
        QVERIFY(edit.takeServer(1000, {}).isEmpty());
        QVERIFY(!edit.isTyped());
    }

    /// Whatever is typed that fits, no request on the way makes the pools exceed the resource, and the last one leaves
    /// nothing to send.
    void neverTooMuchOnTheWay()
    {
        QRandomGenerator random(7);
        const QStringList traders{publicPool(), "a", "b", "c"};
        int sent = 0;
        for (int round = 0; round < 2000; ++round) {
            Pools server;
            for (const QString &trader : traders) {
                if (random.bounded(3) > 0)
                    server.insert(trader, {QStringLiteral("id-") + trader, {random.bounded(1, 250), -1, -1}});
            }
            PoolEdit edit(publicPool(), 1);
            edit.takeServer(1000, server);
            for (const QString &trader : traders) {
                if (random.bounded(4) == 0)
                    edit.remove(trader);
                else if (random.bounded(2) == 0)
                    edit.type(trader, PoolEdit::Field(random.bounded(trader == publicPool() ? 1 : 3)),
                              random.bounded(-1, 600));
            }
            if (edit.freeQty() < 0)
                continue;
            const QMap<QString, PoolEdit::Figures> wanted = wantedPools(edit);
            for (int step = 0; step < 3 && !edit.steps().isEmpty(); ++step, ++sent) {
                carryOut(edit.steps().first(), server);
                PoolEdit held(publicPool(), 1);
                held.takeServer(1000, server);
                QVERIFY(held.freeQty() >= 0);
                edit.takeServer(1000, server);
            }
            QVERIFY(edit.steps().isEmpty());
            edit.revertAll();
            QCOMPARE(wantedPools(edit), wanted);
        }
        QVERIFY(sent > 1000);
    }
};

T0_REGISTER_TEST(PoolEditTest)

#include "PoolEditTest.moc"
