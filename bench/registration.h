#pragma once

/// Each registers a group of benchmarks.
void registerReloadBenchmarks();
void registerWindowBenchmarks();
void registerMemoryBenchmarks();
void registerRemoteBenchmarks();
void registerLogBenchmarks();
void registerFreshTableBenchmarks();
