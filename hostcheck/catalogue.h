#pragma once

#include <QLatin1String>

#include <vector>

enum class Severity { Error, Warning, Note };

/// "error", "warning" or "note".
QLatin1String severityName(Severity severity);

/// One way in which a host can be wrong. The ids are stable and are listed in docs/hostcheck.md.
struct FindingKind
{
    QLatin1String id;
    Severity severity;
    QLatin1String breaks; ///< what goes wrong with the garage module in such a host
    QLatin1String guide; ///< page and section below docs/
};

namespace Catalogue {

const std::vector<FindingKind> &all();
/// The kind of that id, which must be in the list.
const FindingKind &kind(QLatin1String id);

} // namespace Catalogue
