#include "Tests.h"

#include <QtCore/QLocale>
#include <QtTest/QtTest>
#ifdef T0_GUI_TESTS
#include <QtWidgets/QApplication>
using Application = QApplication;
#else
using Application = QCoreApplication;
#endif

#include <map>

namespace {

std::map<QString, Tests::Factory> &registry()
{
    static std::map<QString, Tests::Factory> classes;
    return classes;
}

} // namespace

int Tests::add(const char *name, Factory factory)
{
    registry().emplace(QString::fromLatin1(name), factory);
    return int(registry().size());
}

int main(int argc, char **argv)
{
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China)); // that of the machine may have no separators
    Application application(argc, argv);
    QStringList arguments = application.arguments();
    QString only;
    const int option = arguments.indexOf(QStringLiteral("-class"));
    if (option > 0 && option + 1 < arguments.size()) {
        only = arguments.at(option + 1);
        arguments.erase(arguments.begin() + option, arguments.begin() + option + 2);
    }

    int failed = 0;
    int run = 0;
    for (const auto &[name, factory] : registry()) {
        if (!only.isEmpty() && name != only)
            continue;
        ++run;
        failed += QTest::qExec(factory().get(), arguments);
    }
    if (run == 0)
        qCritical("no test class was run");
    return failed == 0 && run > 0 ? 0 : 1;
}
