#pragma once

#include <QObject>

#include <memory>

/// A test program holds the test classes of one folder and runs one of them:
///     tests_models tst_carslistmodel [options of QtTest]
/// Each class is registered at the end of its source file.
namespace TestProgram {

enum Application { WithWindows, WithoutWindows };
using Factory = std::unique_ptr<QObject> (*)();

/// Registers a class under "tst_" and its name in lower case without "Test". Returns true.
bool add(const char *className, Application application, Factory create);

} // namespace TestProgram

#define GARAGE_REGISTER_TEST(Class, application)                                                             \
    static const bool isRegistered##Class = TestProgram::add(                                                \
        #Class, TestProgram::application, [] { return std::unique_ptr<QObject>(new Class); });

/// Runs under QApplication.
#define GARAGE_TEST(Class) GARAGE_REGISTER_TEST(Class, WithWindows)
/// Runs under QCoreApplication.
#define GARAGE_TEST_WITHOUT_WINDOWS(Class) GARAGE_REGISTER_TEST(Class, WithoutWindows)
