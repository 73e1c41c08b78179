#pragma once

#include <valgrind/callgrind.h>

/// Iterations of the counted work. The counts are repeatable, so more iterations only take longer.
inline constexpr int countedIterations = 5;

/// Under Callgrind (with --instr-atstart=no), the instructions of all threads are counted while such an
/// object exists. Costs nothing otherwise.
class InstructionCount final
{
public:
    InstructionCount() { CALLGRIND_START_INSTRUMENTATION; }
    ~InstructionCount() { CALLGRIND_STOP_INSTRUMENTATION; }
    InstructionCount(const InstructionCount &) = delete;
    InstructionCount &operator=(const InstructionCount &) = delete;
};
