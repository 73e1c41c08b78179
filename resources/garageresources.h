#pragma once

/// Makes the compiled-in icons (":/icons/...") available. May be called more than once; needed because a
/// static library's resources are dropped by the linker unless something references them.
void initGarageResources();
