#pragma once

#include "garagectl/findings/findingtext.h"

#include <vector>

/// Every way known in which a database can be wrong. The ids are listed in docs/garagectl.md.
namespace DoctorCatalogue {

const std::vector<FindingText> &all();

/// The finding of that id, which must be in the list.
Finding finding(const char *id, qint64 count, const QStringList &examples = {});

} // namespace DoctorCatalogue
