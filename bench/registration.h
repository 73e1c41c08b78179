#pragma once

/// Each makes a group of measurements known to the benchmark library.
void registerReloadBenchmarks();
void registerWindowBenchmarks();
void registerRemoteBenchmarks();
