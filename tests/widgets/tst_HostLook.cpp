#include "MasterUtils.h"
#include "PinyinInitials.h"
#include "Tests.h"
#include "ZrListView.h"

#include <QtGui/QPainter>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QListView>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyledItemDelegate>

#include <cmath>

namespace {

RecordList numbered(int count)
{
    RecordList records;
    for (int i = 0; i < count; ++i)
        records.append({{"0", QString::number(i)}, {"8", QColor(Qt::cyan)}, {"300", i}});
    return records;
}

/// Counts the cells that a view paints and measures.
struct CountingDelegate : QStyledItemDelegate {
    mutable QSet<int> painted;
    mutable int measured = 0;

    void paint(QPainter *, const QStyleOptionViewItem &, const QModelIndex &index) const override
    {
        painted.insert(index.row());
    }
    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        ++measured;
        return {60, 20};
    }
};

} // namespace

class HostLookTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyVisibleCellsArePainted()
    {
        ZrListView view;
        CountingDelegate delegate;
        QListView *list = view.getOriginListView();
        list->setItemDelegate(&delegate);
        view.setViewMode(QListView::IconMode);
        view.setGridSize({60, 20});
        view.resize(330, 202);
        view.show();
        view.updateRecordDataList(numbered(10000));
        QTRY_VERIFY(!delegate.painted.isEmpty());
        QVERIFY2(delegate.painted.size() <= 5 * 11, qPrintable(QString::number(delegate.painted.size())));
        QVERIFY(delegate.measured < 10);

        // A trader who looks at the tail of the queue still does after the next one.
        list->verticalScrollBar()->setValue(1000);
        delegate.painted.clear();
        view.updateRecordDataList(numbered(10000));
        QTRY_VERIFY(delegate.painted.contains(1000 / 20 * 5 + 5));
        QVERIFY(!delegate.painted.contains(0));
        QCOMPARE(list->verticalScrollBar()->value(), 1000);
    }

    void backgroundFillsTheCell()
    {
        ZrListView view;
        view.getOriginListView()->setFrameShape(QFrame::NoFrame);
        view.setViewMode(QListView::IconMode);
        view.setGridSize({60, 24});
        view.resize(300, 100);
        view.updateRecordDataList(numbered(4));
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const QImage picture = view.getOriginListView()->viewport()->grab().toImage();
        const QRect second = view.getOriginListView()->visualRect(view.getOriginListView()->model()->index(1, 0));
        QCOMPARE(second.size(), QSize(60, 24));
        QCOMPARE(picture.pixelColor(second.topLeft()), QColor(Qt::cyan));
        QCOMPARE(picture.pixelColor(second.bottomRight()), QColor(Qt::cyan));
    }

    void keysGoToTheParent()
    {
        struct Parent : QWidget {
            int keys = 0;
            void keyPressEvent(QKeyEvent *) override { ++keys; }
        } parent;
        auto *view = new ZrListView(&parent);
        view->updateRecordDataList(numbered(3));
        QTest::keyClick(view->getOriginListView(), Qt::Key_Down);
        QCOMPARE(parent.keys, 0);
        view->setKeyEnable(false);
        QTest::keyClick(view->getOriginListView(), Qt::Key_Down);
        QCOMPARE(parent.keys, 1);
        QCOMPARE(view->getOriginListView()->focusPolicy(), Qt::NoFocus);
    }

    void textIsReadableOnItsBackground()
    {
        const auto luminance = [](const QColor &c) {
            const auto part = [](double v) { return v < 0.04 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
            return 0.05 + 0.2126 * part(c.redF()) + 0.7152 * part(c.greenF()) + 0.0722 * part(c.blueF());
        };
        const QPalette before = QApplication::palette();
        for (const char *skin : {"white", "#1e1e1e", "#808080"}) {
            QPalette palette = before;
            palette.setColor(QPalette::Base, QColor(skin));
            QApplication::setPalette(palette);
            for (const char *name : {"red", "#000078", "yellow", "#777777", "black", "white"}) {
                const QColor color(name);
                const double ratio = luminance(color) / luminance(MasterUtils::GetBackgroundColor(color));
                QVERIFY2(qMax(ratio, 1 / ratio) >= 4.49, qPrintable(QString("%1 on %2").arg(name, skin)));
            }
            QCOMPARE(MasterUtils::GetBackgroundColor({}), QColor(skin));
        }
        QApplication::setPalette(before);
    }

    void pinyinInitials_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("initials");
        QTest::newRow("first and last of the level, and borders") << "啊座澳芭昔压"
                                                                  << "azabxy";
        QTest::newRow("full-width letters") << "万科Ａ"
                                            << "wka";
        QTest::newRow("signs and blanks") << "*ST 海投-2"
                                          << "sth"
                                             "t2";
        QTest::newRow("rare characters") << "鑫㐀𠀀科"
                                         << "k";
        QTest::newRow("other readings") << "重庆银行 西藏"
                                        << "cqyhxz";
        QTest::newRow("nothing") << ""
                                 << "";
    }
    void pinyinInitials()
    {
        QFETCH(QString, text);
        QTEST(PinyinInitials(text), "initials");
    }
};

T0_REGISTER_TEST(HostLookTest)

#include "tst_HostLook.moc"
