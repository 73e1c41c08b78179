#pragma once

#include <valgrind/callgrind.h>

/// Runs of the work to be counted. More only take longer: the counts repeat.
inline constexpr int countedIterations = 5;

/// Callgrind, if it watches (with --instr-atstart=no), counts the instructions of all threads while one of
/// these lives. Costs nothing otherwise.
class InstructionCount final
{
public:
    InstructionCount() { CALLGRIND_START_INSTRUMENTATION; }
    ~InstructionCount() { CALLGRIND_STOP_INSTRUMENTATION; }
    InstructionCount(const InstructionCount &) = delete;
    InstructionCount &operator=(const InstructionCount &) = delete;
};
