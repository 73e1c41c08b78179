#pragma once

#include "data/records.h"

#include <optional>

/// When a service operation is due again.
namespace DueRule {

/// By how much a counter exceeds its limit; 0 or less if it does not. None without a limit (0).
[[nodiscard]] std::optional<qint64> excess(int counter, int limit);

/// True if at least one counter is strictly above a limit that is not 0: the loader's due list and the
/// colour of a cell.
[[nodiscard]] bool isDue(const OperationStat &stat, const Limits &limits);

/// True for a recorded operation that the loader's due list contains: still open, or due.
[[nodiscard]] bool isPending(const OperationStat &stat, const Limits &limits);

/// The table filter's rule: only a limit of 1 or more counts. A negative limit, which any counter exceeds,
/// therefore colours the cell red and is reported as due, but the filter does not accept the car for it.
[[nodiscard]] bool isDueForFilter(const OperationStat &stat, const Limits &limits);

} // namespace DueRule
