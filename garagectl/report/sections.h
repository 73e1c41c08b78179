#pragma once

#include "garagectl/report/report.h"
#include "garagectl/report/templatevalues.h"

/// The sections of the page.
namespace ReportSections {

using Dictionary = TemplateValues::Dictionary;

/// The fleet at a glance: a table per model, a bar per kart and operation.
void fillFleet(Dictionary &page, const Report &report);
/// What is open, due or soon, in this order.
void fillDue(Dictionary &page, const Report &report);
/// The days on which operations will be due.
void fillCalendar(Dictionary &page, const Report &report);
/// The records that were done, per week and person.
void fillWork(Dictionary &page, const Report &report);
/// The open records, and the latest records of each kart.
void fillHistory(Dictionary &page, const Report &report);

} // namespace ReportSections
