#include "Tests.h"

#include <QtCore/QCoreApplication>
#include <QtTest/QtTest>

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
    QCoreApplication application(argc, argv);
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
