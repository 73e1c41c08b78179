#include "support/testprogram.h"

#include <QApplication>
#include <QByteArray>
#include <QtTest>

#include <cstdio>
#include <map>

namespace {

struct Entry
{
    TestProgram::Application application;
    TestProgram::Factory create;
};

/// A function, because test files register their classes before main() in any order.
std::map<QByteArray, Entry> &entries()
{
    static std::map<QByteArray, Entry> all;
    return all;
}

int printNames()
{
    std::fprintf(stderr, "The first argument is one of:\n");
    for (const auto &entry : entries())
        std::fprintf(stderr, "  %s\n", entry.first.constData());
    return 64;
}

std::unique_ptr<QCoreApplication> createApplication(TestProgram::Application kind, int &argc, char **argv)
{
    if (kind == TestProgram::WithoutWindows)
        return std::make_unique<QCoreApplication>(argc, argv);
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

bool TestProgram::add(const char *className, Application application, Factory create)
{
    entries().insert({"tst_" + QByteArray(className).mid(4).toLower(), {application, create}});
    return true;
}

int main(int argc, char **argv)
{
    const auto entry = argc > 1 ? entries().find(argv[1]) : entries().end();
    if (entry == entries().end())
        return printNames();
    // QtTest reads the remaining arguments.
    argv[1] = argv[0];
    --argc;
    ++argv;

    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    const auto application = createApplication(entry->second.application, argc, argv);
    QCoreApplication::setApplicationName(QString::fromLatin1(entry->first));
    const std::unique_ptr<QObject> test = entry->second.create();
    return QTest::qExec(test.get(), argc, argv);
}
