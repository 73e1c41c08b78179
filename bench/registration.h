#pragma once

/// Each registers a group of benchmarks.
void registerReloadBenchmarks();
void registerWindowBenchmarks();
void registerRemoteBenchmarks();
void registerLogBenchmarks();
void registerFreshTableBenchmarks();
