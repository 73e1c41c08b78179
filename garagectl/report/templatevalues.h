#pragma once

#include "garagectl/fleet/duerow.h"

#include <QDate>
#include <QString>

#include <ctemplate/template_dictionary.h>

/// Values of the template report/page.html, which escapes them where it shows them.
namespace TemplateValues {

using Dictionary = ctemplate::TemplateDictionary;

constexpr int nameWidth = 60; // cells of TextWidth
constexpr int commentWidth = 400;

/// The text on one line, elided; without characters that act on the text around them.
void setText(Dictionary &values, const char *name, const QString &text, int width = nameWidth);
void setNumber(Dictionary &values, const char *name, double number);
/// A section with the value TEXT; left out if the text is empty.
void addComment(Dictionary &values, const QString &comment);
/// A section with the value NAME; left out if the text is empty.
void addPerson(Dictionary &values, const QString &person);
/// The section BAR of an operation: how much of its limit is used up.
void addBar(Dictionary &values, const DueRow &row);
/// VALUE: how many percent that is, followed by the section PERCENT; "—" if there is no limit or no record.
void setShare(Dictionary &values, const DueRow &row);
/// STATE_KEY and STATE_TEXT
void setState(Dictionary &values, DueState state);

/// The name of a day, a month or both, in the current language: a format of QLocale.
QString dayText(const QDate &day, const char *format);
QDate mondayOf(const QDate &day);

} // namespace TemplateValues
