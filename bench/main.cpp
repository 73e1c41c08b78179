#include "bench/registration.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    // Otherwise the loader's progress lines would be part of the measured time.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type != QtDebugMsg)
            fprintf(stderr, "%s\n", qPrintable(text));
    });

    registerReloadBenchmarks();
    registerWindowBenchmarks();
    registerMemoryBenchmarks();
    registerRemoteBenchmarks();
    registerLogBenchmarks();
    registerFreshTableBenchmarks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
