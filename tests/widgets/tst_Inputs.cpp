#include "ManualT0DoubleSpinbox.h"
#include "ManualT0TraderCombo.h"
#include "Tests.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QLineEdit>

#include <limits>

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A window with another field, where the focus is in the beginning.
template <typename Input> struct Window : QWidget {
    QLineEdit *other = new QLineEdit;
    Input *input = new Input;

    Window()
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(other);
        layout->addWidget(input);
        show();
        activateWindow();
        other->setFocus();
    }
};

QStringList texts(const QComboBox &box)
{
    QStringList found;
    for (int row = 0; row < box.count(); ++row)
        found << box.itemText(row) + '|' + box.itemData(row).toString();
    return found;
}

} // namespace

class InputsTest : public QObject
{
    Q_OBJECT

private slots:
    void stepsUpAndDown_data()
    {
        QTest::addColumn<double>("up");
        QTest::addColumn<double>("down");
        QTest::addColumn<double>("from");
        QTest::addColumn<int>("steps");
        QTest::addColumn<double>("to"); // between 0 and 10, standard step 0.01

        QTest::newRow("stops at the maximum") << 0.05 << 0. << 9.99 << 1 << 10.;
        QTest::newRow("stays at the maximum") << 0.05 << 0. << 10. << 1 << 10.;
        QTest::newRow("stops at the minimum") << 0. << 1. << 0.5 << -1 << 0.;
        QTest::newRow("reaches the maximum") << 0.5 << 0. << 9.5 << 1 << 10.;
        QTest::newRow("several steps") << 0.05 << 1. << 1. << 3 << 1.15;
        QTest::newRow("down by its own step") << 0.05 << 1. << 5. << -2 << 3.;
        QTest::newRow("only an up step: down is standard") << 0.05 << 0. << 5. << -1 << 4.99;
        QTest::newRow("only a down step: up is standard") << 0. << 1. << 5. << 1 << 5.01;
        QTest::newRow("no number is standard") << notANumber << notANumber << 5. << 1 << 5.01;
        QTest::newRow("below the decimals") << 0.004 << 0. << 5. << 1 << 5.;
        QTest::newRow("no step") << 1. << 1. << 5. << 0 << 5.;
        QTest::newRow("without end") << std::numeric_limits<double>::infinity() << 0. << 5. << 1 << 10.;
    }
    void stepsUpAndDown()
    {
        QFETCH(double, up);
        QFETCH(double, down);
        QFETCH(double, from);
        QFETCH(int, steps);
        ManualT0DoubleSpinbox box;
        box.setMaximum(10);
        QVERIFY(box.SetUpStep(up));
        QVERIFY(box.SetDownStep(down));
        box.setValue(from);
        box.stepBy(steps);
        QTEST(box.value(), "to");
    }

    void negativeStepIsRefused()
    {
        ManualT0DoubleSpinbox box;
        QCOMPARE(box.minimum(), 0.);
        QCOMPARE(box.maximum(), 1e13);
        QCOMPARE(box.singleStep(), 0.01);
        QCOMPARE(box.decimals(), 2);
        QVERIFY(box.SetUpStep(0.05));
        QVERIFY(!box.SetUpStep(-0.01));
        QVERIFY(!box.SetDownStep(-1));
        QCOMPARE(box.GetUpStep(), 0.05);
        QCOMPARE(box.GetDownStep(), 0.);
        QVERIFY(box.SetUpStep(0));
        box.stepBy(1);
        QCOMPARE(box.value(), 0.01);
    }

    void stepsFromWhatIsTyped()
    {
        Window<ManualT0DoubleSpinbox> window;
        ManualT0DoubleSpinbox &box = *window.input;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setKeyboardTracking(false);
        box.SetUpStep(0.5);
        box.setFocus();
        QTest::keyClicks(&box, "12");
        QTest::keyClick(&box, Qt::Key_Up);
        QCOMPARE(box.value(), 12.5);
        QTest::keyClicks(&box, "7"); // replaces the number
        QSignalSpy entered(&box, &MasterDoubleSpinBox::returnPressed);
        QTest::keyClick(&box, Qt::Key_Return);
        QCOMPARE(entered.count(), 1);
        QCOMPARE(box.value(), 7.);
    }

    void separatorsOnlyWhileNobodyTypes()
    {
        Window<ManualT0DoubleSpinbox> window;
        ManualT0DoubleSpinbox &box = *window.input;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setValue(1234567);
        QCOMPARE(box.text(), QString("1,234,567.00"));
        QTest::mouseClick(box.findChild<QLineEdit *>(), Qt::LeftButton);
        QCOMPARE(box.text(), QString("1234567.00"));
        QTRY_COMPARE(box.findChild<QLineEdit *>()->selectedText(), QString("1234567.00"));
        QTest::keyClicks(&box, "7654321");
        window.other->setFocus();
        QCOMPARE(box.text(), QString("7,654,321.00"));
        QVERIFY(!box.testAttribute(Qt::WA_InputMethodEnabled));
    }

    void wheelTurnsOnlyTheFocusedInput()
    {
        Window<ManualT0DoubleSpinbox> window;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto turn = [&window] {
            QWheelEvent up(QPointF(5, 5), QPointF(5, 5), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                           Qt::NoScrollPhase, false);
            QApplication::sendEvent(window.input, &up);
            return window.input->value();
        };
        QCOMPARE(turn(), 0.);
        window.input->setFocus();
        QCOMPARE(turn(), 0.01);
    }

    void statusIsShownAndTakenBack()
    {
        ManualT0DoubleSpinbox box;
        box.setToolTip("price");
        const QImage plain = box.grab().toImage();
        box.setInputStatus(InputStatusStyle::InputStatus::Warning, "far from the last");
        box.setInputStatus(InputStatusStyle::InputStatus::Error, "above the limit");
        QCOMPARE(box.toolTip(), QString("above the limit"));
        QCOMPARE(box.accessibleDescription(), QString("above the limit"));
        QVERIFY(box.grab().toImage() != plain);
        box.setInputStatus(InputStatusStyle::InputStatus::Normal);
        QCOMPARE(box.toolTip(), QString("price"));
        QCOMPARE(box.accessibleDescription(), QString());
        QCOMPARE(box.grab().toImage(), plain);
    }

    void shortCutBringsTheFocus()
    {
        Window<ManualT0TraderCombo> window;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.input->setShortCut(QKeySequence("Ctrl+K"));
        QVERIFY(!window.input->hasFocus());
        QTest::keyClick(window.other, Qt::Key_K, Qt::ControlModifier);
        QVERIFY(window.input->hasFocus());
    }

    void tradersAreListed()
    {
        ManualT0TraderCombo box;
        box.InitTraders({}, true, true);
        QCOMPARE(texts(box), QStringList({"public|public", "全部交易员|"}));
        QCOMPARE(box.currentIndex(), 0);
        box.InitTraders({{"t02", "Li"}, {"t01", "Li"}}, true, false);
        QCOMPARE(texts(box), QStringList({"全部交易员|", "Li t01|t01", "Li t02|t02"}));
        box.setCurrentIndex(2);
        box.InitTraders({{"t02", "Li"}, {"t01", "Li"}}, false, false);
        QCOMPARE(texts(box), QStringList({"Li t01|t01", "Li t02|t02"}));
        QCOMPARE(box.currentData().toString(), QString("t01"));
        QVERIFY(box.isSearchEnabled());
    }

    void keysChooseATrader_data()
    {
        using Keys = QList<int>;
        QTest::addColumn<QString>("typed");
        QTest::addColumn<Keys>("keys");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("taken");

        QTest::newRow("part of the name") << "远" << Keys{Qt::Key_Return} << "t1" << 1;
        QTest::newRow("part of the id, other case") << "T3" << Keys{Qt::Key_Enter} << "t3" << 1;
        QTest::newRow("initials") << "yq" << Keys{Qt::Key_Return} << "t3" << 1;
        QTest::newRow("second of what fits") << "h" << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Return} << "t4" << 1;
        QTest::newRow("down and up again")
            << "h" << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return} << "t3" << 1;
        QTest::newRow("nothing typed: the whole list")
            << "" << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Return} << "t1" << 1;
        QTest::newRow("typing alone chooses nothing") << "yq" << Keys{} << "" << 0;
        QTest::newRow("fits nothing") << "zz" << Keys{Qt::Key_Return} << "" << 0;
        QTest::newRow("given up while typing") << "yq" << Keys{Qt::Key_Escape} << "" << 0;
        QTest::newRow("given up in the list") << "h" << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Escape} << "" << 0;
        QTest::newRow("left with the tabulator") << "yq" << Keys{Qt::Key_Tab} << "" << 0;
        QTest::newRow("marked and left with the tabulator") << "h" << Keys{Qt::Key_Down, Qt::Key_Tab} << "t3" << 1;
    }
    void keysChooseATrader()
    {
        QFETCH(QString, typed);
        QFETCH(QList<int>, keys);
        QFETCH(QString, id);
        Window<ManualT0TraderCombo> window;
        ManualT0TraderCombo &box = *window.input;
        box.InitTraders({{"t1", "顾远山"}, {"t2", "沈知秋"}, {"t3", "叶青禾"}, {"t4", "何江晚"}}, true, false);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setFocus();
        const QSignalSpy taken(&box, QOverload<int>::of(&QComboBox::activated));
        for (const QChar letter : qAsConst(typed))
            QTest::sendKeyEvent(QTest::Click, target(box), Qt::Key_unknown, QString(letter), Qt::NoModifier);
        for (const int key : qAsConst(keys))
            QTest::keyClick(target(box), Qt::Key(key));
        QCOMPARE(box.currentData().toString(), id);
        QTEST(taken.count(), "taken");
        if (!keys.isEmpty())
            QCOMPARE(box.currentText(), box.itemText(box.currentIndex()));
    }

    void likeTextsAreToldApart_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("id");
        QTest::newRow("the whole text before a part") << "Lin" << QList<int>{Qt::Key_Return} << "c";
        QTest::newRow("same text, Enter") << "an" << QList<int>{Qt::Key_Up, Qt::Key_Return} << "d";
        QTest::newRow("same text, tabulator") << "an" << QList<int>{Qt::Key_Up, Qt::Key_Tab} << "d";
    }
    void likeTextsAreToldApart()
    {
        QFETCH(QString, typed);
        QFETCH(QList<int>, keys);
        Window<MasterComboBox> window;
        window.input->setSearchEnabled();
        window.input->AddItemsList({"An", "Linan", "Lin", "An"}, {"a", "b", "c", "d"});
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.input->setFocus();
        QTest::keyClicks(window.input, typed);
        for (const int key : qAsConst(keys))
            QTest::keyClick(target(*window.input), Qt::Key(key));
        QTEST(window.input->currentData().toString(), "id");
    }

    void focusTakenAwayWhileTheListIsOpen()
    {
        Window<ManualT0TraderCombo> window;
        window.input->InitTraders({{"t1", "顾远山"}}, true, false);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.input->setFocus();
        QTest::keyClicks(window.input, "t");
        QVERIFY(window.input->completer()->popup()->isVisible());
        window.other->setFocus();
        QVERIFY(!window.input->completer()->popup()->isVisible());
        QCOMPARE(window.input->currentText(), QString("全部交易员"));
    }

private:
    /// Where the window system sends a key to: the list while it is open.
    static QWidget *target(const QComboBox &box)
    {
        return box.completer()->popup()->isVisible() ? static_cast<QWidget *>(box.completer()->popup())
                                                     : QApplication::focusWidget();
    }
};

T0_REGISTER_TEST(InputsTest)

#include "tst_Inputs.moc"
