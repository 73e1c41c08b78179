#pragma once

#include <QString>

#include <string>

/// The language of everything that is written for people: Russian or English.
namespace Wording {

enum Language { English, Russian };

/// Russian if the system's language is, otherwise English.
Language ofSystem();
/// Sets the language of all texts requested from now on.
void use(Language language);
Language current();

} // namespace Wording

/// The text in the current language; both are UTF-8.
QString text(const char *english, const char *russian);
/// The same as UTF-8, for the command-line parser.
std::string utf8Text(const char *english, const char *russian);
