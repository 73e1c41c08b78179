#include "garagectl/wording.h"

#include <QLocale>
#include <QStringList>

namespace {
Wording::Language language = Wording::English;
}

Wording::Language Wording::ofSystem()
{
    const QStringList languages = QLocale::system().uiLanguages();
    const bool isRussian = !languages.isEmpty() && languages.first().startsWith(QLatin1String("ru"));
    return isRussian ? Russian : English;
}

void Wording::use(Language newLanguage)
{
    language = newLanguage;
}

Wording::Language Wording::current()
{
    return language;
}

QString text(const char *english, const char *russian)
{
    return QString::fromUtf8(language == Wording::Russian ? russian : english);
}

std::string utf8Text(const char *english, const char *russian)
{
    return text(english, russian).toStdString();
}
