#include "WidgetsTest.h"

#include <QtCore/QLocale>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China)); // the one of the machine may have no separators
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    int failed = 0;
    for (const auto make : {makeHostLookTest, makeInputsTest, makeOrderQueuePanelTest})
        failed += QTest::qExec(make().get(), argc, argv);
    return failed == 0 ? 0 : 1;
}
