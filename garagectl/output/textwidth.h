#pragma once

#include <QString>

/// How wide texts are on a terminal, in cells: wide East Asian characters and emoji take two, combining marks
/// none.
namespace TextWidth {

int width(const QString &text);
/// The text, or its beginning and "…" if it is wider than `cells`.
QString elided(const QString &text, int cells);
/// The text on one line without anything that would act on a terminal: white space becomes single blanks,
/// control characters and marks of writing direction become "�".
QString printable(const QString &text);

} // namespace TextWidth
