#include "bench/benchdata.h"
#include "bench/plainsqlite.h"
#include "bench/registration.h"
#include "bench/shownwindow.h"
#include "tests/support/resources.h"

#include <benchmark/benchmark.h>

namespace {

/// Two files that differ only in the number of what is measured, so that everything else cancels out.
struct Pair
{
    BenchShape few;
    BenchShape many;
};

// Both files are larger than SQLite's cache of pages.
constexpr Pair journals {{"memory-few-records", 60, 12, 50000, 1000},
                         {"memory-records", 60, 12, 100000, 1000}};
constexpr Pair wholeTables {{"memory-few-operations", 500, 3, 30000, 1000},
                            {"memory-operations", 500, 30, 30000, 1000}};
constexpr BenchShape reloadedShape {"memory-reloads", 20, 6, 500, 500};
constexpr int firstReloads = 10;
constexpr int manyReloads = 1000;

/// The heap that the window uses for the file of a shape.
qint64 heapOfWindow(const BenchShape &shape)
{
    const qint64 before = Resources::now().heapBytes;
    const ShownWindow window(shape);
    return Resources::now().heapBytes - before;
}

double difference(const Pair &pair)
{
    heapOfWindow(pair.few); // allocates what is allocated only once
    return double(heapOfWindow(pair.many) - heapOfWindow(pair.few));
}

void setComments(const Pair &pair, const char *text)
{
    for (const BenchShape &shape : {pair.few, pair.many}) {
        PlainSqlite database(BenchHome(shape).databasePath());
        database.exec((std::string("UPDATE maintainance SET comment=") + text).c_str());
    }
}

void memoryPerRecord(benchmark::State &state, const char *comment)
{
    setComments(journals, comment);
    for (auto _ : state)
        state.counters["bytes"] = difference(journals) / (journals.many.records - journals.few.records);
}

void memoryPerOperation(benchmark::State &state)
{
    setComments(wholeTables, "''");
    const auto cells = [](const BenchShape &shape) { return shape.cars * shape.operations; };
    for (auto _ : state)
        state.counters["bytes"] =
            difference(wholeTables) / (cells(wholeTables.many) - cells(wholeTables.few));
}

void growthByReloads(benchmark::State &state)
{
    ShownWindow window(reloadedShape);
    const auto reload = [&window](int times) {
        for (int time = 0; time < times; ++time)
            window.reload();
    };
    reload(firstReloads);
    for (auto _ : state) {
        const Resources before = Resources::now();
        reload(manyReloads);
        const Resources after = Resources::now();
        state.counters["bytes"] = double(after.heapBytes - before.heapBytes);
        state.counters["resident_bytes"] = double(after.residentBytes - before.residentBytes);
    }
}

} // namespace

void registerMemoryBenchmarks()
{
    const auto add = [](const char *name, auto run, auto... arguments) {
        benchmark::RegisterBenchmark(name, run, arguments...)->Unit(benchmark::kMillisecond)->Iterations(1);
    };
    add("memory/record", memoryPerRecord, "''");
    add("memory/record-with-comment", memoryPerRecord, "'Замена по регламенту'");
    add("memory/kart-operation", memoryPerOperation);
    add("memory/reloads", growthByReloads);
}
