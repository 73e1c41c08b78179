#include "garagectl/commandline.h"

#include "data/garagedatabase.h"
#include "garagectl/commandlist.h"
#include "garagectl/helpformatter.h"
#include "garagectl/output/terminal.h"
#include "garagectl/wording.h"

#include <QCoreApplication>

#include <CLI/CLI.hpp>

#include <cstring>
#include <string>

namespace {

const char *const russian = "ru";
const char *const english = "en";

/// The value of "--lang", which must be known before the texts of the help are made.
void chooseLanguage(int argc, const char *const *argv)
{
    Wording::use(Wording::ofSystem());
    for (int i = 1; i < argc; ++i) {
        const bool isSeparate = std::strcmp(argv[i], "--lang") == 0 && i + 1 < argc;
        const char *value = isSeparate                 ? argv[i + 1]
            : std::strncmp(argv[i], "--lang=", 7) == 0 ? argv[i] + 7
                                                       : "";
        if (std::strcmp(value, russian) == 0)
            Wording::use(Wording::Russian);
        else if (std::strcmp(value, english) == 0)
            Wording::use(Wording::English);
    }
}

/// The parser's details are English.
QString usageMessage(const CLI::ParseError &error)
{
    const QString detail = QString::fromStdString(error.what());
    QString problem = text("wrong arguments: %1", "неверные аргументы: %1");
    if (dynamic_cast<const CLI::ExtrasError *>(&error))
        problem = text("there is no such command or option: %1", "такой команды или ключа нет: %1");
    else if (dynamic_cast<const CLI::RequiredError *>(&error))
        problem = text("an argument is missing: %1", "не хватает аргумента: %1");
    else if (dynamic_cast<const CLI::ValidationError *>(&error)
             || dynamic_cast<const CLI::ConversionError *>(&error))
        problem = text("this value is not allowed: %1", "недопустимое значение: %1");
    return problem.arg(detail) + QLatin1Char('\n')
        + text("See garagectl --help.", "Справка: garagectl --help.");
}

} // namespace

ExitCode runCommandLine(int argc, const char *const *argv)
{
    chooseLanguage(argc, argv);
    CLI::App program(utf8Text("Reads the garage database: what is due, what is coming, and why.",
                              "Читает базу гаража: что пора делать, что приближается и почему."),
                     "garagectl");
    program.formatter(std::make_shared<HelpFormatter>());
    program.set_help_flag("-h,--help", utf8Text("Print this help and exit", "Показать эту справку и выйти"));
    program.set_version_flag("--version", "garagectl " + QCoreApplication::applicationVersion().toStdString(),
                             utf8Text("Print the version and exit", "Показать версию и выйти"));
    std::string databasePath;
    std::string language;
    program
        .add_option("--database", databasePath,
                    utf8Text("The database file; without it, the one that the module uses",
                             "Файл базы; если не указан, тот же, что у модуля"))
        ->option_text(utf8Text("FILE", "ФАЙЛ"));
    program
        .add_option("--lang", language,
                    utf8Text("Language of texts for people: ru or en", "Язык текстов для людей: ru или en"))
        ->option_text("ru|en")
        ->check(CLI::IsMember({russian, english}));
    program.require_subcommand(1);

    program.fallthrough(); // options of the program may follow the command
    const std::vector<std::unique_ptr<Command>> commands = makeCommands();
    std::vector<CLI::App *> parsers;
    for (const auto &command : commands)
        parsers.push_back(command->addTo(program));

    try {
        program.parse(argc, argv);
    } catch (const CLI::Success &request) { // help or version
        program.exit(request);
        return ExitCode::Ok;
    } catch (const CLI::ParseError &error) {
        Terminal::report(usageMessage(error));
        return ExitCode::BadUsage;
    }

    try {
        for (std::size_t i = 0; i < commands.size(); ++i) {
            if (parsers[i]->parsed()) {
                const QString path = QString::fromStdString(databasePath);
                return commands[i]->run(path.isEmpty() ? garageDatabasePath() : path);
            }
        }
    } catch (const Failure &failure) {
        Terminal::report(failure.message);
        return failure.code;
    }
    return ExitCode::BadUsage;
}
