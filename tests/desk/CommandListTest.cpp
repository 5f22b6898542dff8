#include "CommandList.h"
#include "Appearance.h"
#include "Tests.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QWidget>

#include <cmath>

namespace {

/// How bright a part of a colour is to the eye, as readability is measured.
double light(double part)
{
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * light(colour.redF()) + 0.7152 * light(colour.greenF()) + 0.0722 * light(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// A window with two pages, a table in the first.
struct Window {
    QWidget window;
    QWidget *page = new QWidget(&window);
    QWidget *table = new QWidget(page);
    QWidget *otherPage = new QWidget(&window);
    CommandList commands{&window};

    QWidget *place(const QString &name)
    {
        return name == QLatin1String("page")    ? page
               : name == QLatin1String("table") ? table
               : name == QLatin1String("other") ? otherPage
                                                : nullptr;
    }
    QAction *add(const char *id, QWidget *context, const char *keys)
    {
        return commands.add({QString::fromLatin1(id), QString::fromLatin1(id), QKeySequence(QLatin1String(keys))},
                            context, [] {});
    }
    QString keysOf(const char *id) { return commands.find(QString::fromLatin1(id))->keys().toString(); }
};

} // namespace

class CommandListTest : public QObject
{
    Q_OBJECT

private slots:
    void keysMeet_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("meet");
        QTest::newRow("both in the whole window") << ""
                                                  << ""
                                                  << "F1" << true;
        QTest::newRow("the window's answers on every page") << ""
                                                            << "table"
                                                            << "F1" << true;
        QTest::newRow("a page's answers in its table") << "page"
                                                       << "table"
                                                       << "F1" << true;
        QTest::newRow("of one table") << "table"
                                      << "table"
                                      << "F1" << true;
        QTest::newRow("of two pages") << "page"
                                      << "other"
                                      << "F1" << false;
        QTest::newRow("a table and another page") << "table"
                                                  << "other"
                                                  << "F1" << false;
        QTest::newRow("another key") << "page"
                                     << "page"
                                     << "F3" << false;
        QTest::newRow("the begin of a sequence") << "page"
                                                 << "page"
                                                 << "F1, F2" << true;
    }
    void keysMeet()
    {
        QFETCH(QString, one);
        QFETCH(QString, other);
        QFETCH(QString, keys);
        QFETCH(bool, meet);
        Window w;
        w.add("one", w.place(one), "F1");
        w.add("other", w.place(other), "F9");
        const QKeySequence wanted(keys);
        QCOMPARE(w.commands.holderOf(wanted, QStringLiteral("other")) != nullptr, meet);
        QCOMPARE(w.commands.setKeys(QStringLiteral("other"), wanted).isEmpty(), !meet);
        QCOMPARE(w.keysOf("other"), meet ? QStringLiteral("F9") : wanted.toString());
        w.commands.restoreDefaults();
    }

    void keptAndRestored()
    {
        {
            Window w;
            w.add("a", w.table, "F1");
            w.add("b", w.table, "F2");
            // Two keys change places: one has to stand aside.
            QVERIFY(!w.commands.setKeys(QStringLiteral("a"), QKeySequence(Qt::Key_F2)).isEmpty());
            QVERIFY(!w.commands.setKeys(QStringLiteral("a"), QKeySequence(Qt::Key_Tab)).isEmpty());
            QCOMPARE(w.commands.setKeys(QStringLiteral("a"), {}), QString());
            QCOMPARE(w.commands.setKeys(QStringLiteral("b"), QKeySequence(Qt::Key_F1)), QString());
        }
        Window w;
        w.add("a", w.table, "F1");
        w.add("b", w.table, "F2");
        w.add("late", w.table, "F1"); // new in this version, with a key that the user has given away
        QCOMPARE(w.keysOf("a"), QString());
        QCOMPARE(w.keysOf("b"), QStringLiteral("F1"));
        QCOMPARE(w.keysOf("late"), QString());
        w.commands.restoreDefaults();
        QCOMPARE(w.keysOf("a"), QStringLiteral("F1"));
        QCOMPARE(w.keysOf("b"), QStringLiteral("F2"));
        Window after;
        after.add("b", after.table, "F2");
        QCOMPARE(after.keysOf("b"), QStringLiteral("F2"));
    }

    void aCommandGoesWithItsPlace()
    {
        Window w;
        w.add("gone", w.table, "F1");
        w.add("stays", w.otherPage, "F1");
        delete w.table;
        QVERIFY(!w.commands.find(QStringLiteral("gone")));
        QCOMPARE(w.commands.commands().size(), 1);
        QCOMPARE(w.keysOf("stays"), QStringLiteral("F1"));
    }

    void coloursAreReadable()
    {
        for (const bool isDark : {false, true}) {
            const QPalette palette = Appearance::palette(isDark);
            for (const QPalette::ColorRole base : {QPalette::Base, QPalette::AlternateBase}) {
                const QColor under = palette.color(base);
                QVERIFY(contrast(Appearance::red(isDark), under) >= 4.5);
                QVERIFY(contrast(Appearance::green(isDark), under) >= 4.5);
                QVERIFY(contrast(palette.color(QPalette::Text), under) >= 7);
            }
            QVERIFY(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)) >= 4.5);
        }
    }
};

T0_REGISTER_TEST(CommandListTest)

#include "CommandListTest.moc"
