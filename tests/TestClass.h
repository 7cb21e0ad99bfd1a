// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

namespace brevant::test {

/// Makes a test class known to the program of its folder, which runs the one that its first argument names.
class TestClass final {
public:
    using Main = int (*)(int count, char **values);

    TestClass(const char *name, Main run);
};

/// Stands in for the application where a test is to have none.
struct NoApplication {
    NoApplication(int &, char **) {}
};

template <typename Test, typename Application>
int runTest(int count, char **values)
{
    [[maybe_unused]] const Application application(count, values);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    Test test;
    return QTest::qExec(&test, count, values);
}

} // namespace brevant::test

/// What QTEST_MAIN is to a program of one class. Application: what the class runs in.
#define BREVANT_TEST(Test, Application)                                                                      \
    static const brevant::test::TestClass registered(#Test, [](int count, char **values) {                   \
        return brevant::test::runTest<Test, Application>(count, values);                                     \
    });
