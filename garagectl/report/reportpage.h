#pragma once

#include "garagectl/report/report.h"

#include <QByteArray>

/// The report as one HTML page that needs nothing beside it: style and drawings are inside, and there are no
/// scripts.
namespace ReportPage {

/// UTF-8, in the current language.
QByteArray html(const Report &report);

} // namespace ReportPage
