#include "host/terminal/translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

/// The linker drops a static library's resources unless they are referenced by name.
static void initResources()
{
    Q_INIT_RESOURCE(translations);
}

namespace {

const QLatin1String russian("ru");
const QLatin1String english("en");

QString systemLanguage()
{
    const QString first = QLocale::system().uiLanguages().value(0);
    return first == russian || first.startsWith(QLatin1String("ru-")) ? russian : english;
}

/// Before QCommandLineParser, whose messages are translated themselves.
QString requestedLanguage(const QStringList &arguments)
{
    const QLatin1String option("--lang");
    const auto at = arguments.lastIndexOf(option);
    if (at >= 0)
        return arguments.value(at + 1);
    const QLatin1String prefix("--lang=");
    const QStringList values = arguments.filter(QLatin1String("--lang="));
    return values.isEmpty() || !values.last().startsWith(prefix) ? QString()
                                                                 : values.last().mid(prefix.size());
}

void installFile(const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(name, folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

QStringList Translation::languages()
{
    return {russian, english};
}

QString Translation::language(const QStringList &arguments)
{
    const QString requested = requestedLanguage(arguments);
    return languages().contains(requested) ? requested : systemLanguage();
}

void Translation::install(const QString &language)
{
    initResources();
    // Names of months and separators of thousands: the system's if it speaks the language.
    const QLocale locale(language);
    const QLocale system = QLocale::system();
    QLocale::setDefault(system.language() == locale.language() ? system : locale);
    if (language != russian)
        return;
    installFile(QStringLiteral("qtbase_ru"), QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    installFile(QStringLiteral("garage-host_ru"), QStringLiteral(":/host"));
}
