#pragma once

#include "garagectl/audit/messagelog.h"
#include "garagectl/audit/storedrecords.h"
#include "garagectl/findings/findingtext.h"

/// The comparison of a message log with the database.
namespace Audit {

/// Every kind of finding. The ids are listed in docs/garagectl.md.
const std::vector<FindingText> &catalogue();

Findings compare(const MessageLog &log, const StoredRecords &stored);

} // namespace Audit
