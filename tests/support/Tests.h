#pragma once

#include <QtCore/QObject>

#include <memory>

/// The test classes of one executable. Its main() is in this library: it makes the one application object of
/// the process and runs every registered class in order of name. Arguments are QtTest's; "-class NAME" runs
/// one class only.
namespace Tests {

using Factory = std::unique_ptr<QObject> (*)();

int add(const char *name, Factory factory);

} // namespace Tests

#define T0_REGISTER_TEST(Class)                                                                                        \
    static const int registered##Class =                                                                               \
        Tests::add(#Class, []() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); });
