#include "garagectl/helpformatter.h"

#include "garagectl/output/textwidth.h"
#include "garagectl/wording.h"

#include <QString>

#include <algorithm>

namespace {

constexpr int nameCells = 34;

std::string line(const std::string &name, const std::string &description)
{
    const QString shownName = QLatin1String("  ") + QString::fromStdString(name);
    const int blanks = std::max(2, nameCells - TextWidth::width(shownName));
    const QString whole = shownName + QString(blanks, QLatin1Char(' ')) + QString::fromStdString(description);
    return whole.toStdString() + '\n';
}

} // namespace

HelpFormatter::HelpFormatter()
{
    label("Positionals", utf8Text("Arguments", "Аргументы"));
}

std::string HelpFormatter::make_usage(const CLI::App *app, std::string name) const
{
    std::string usage = utf8Text("Usage: ", "Вызов: ") + name;
    for (const CLI::Option *option : app->get_options()) {
        if (option->get_positional())
            usage += ' ' + option->get_option_text();
    }
    if (!app->get_subcommands({}).empty())
        usage += utf8Text(" COMMAND", " КОМАНДА");
    return usage + utf8Text(" [OPTIONS]\n", " [КЛЮЧИ]\n");
}

std::string HelpFormatter::make_group(std::string group, bool isPositional,
                                      std::vector<const CLI::Option *> options) const
{
    // The parser's name for the group of all other options.
    const std::string title = group == "Options" ? utf8Text("Options", "Ключи") : group;
    std::string output = '\n' + title + ":\n";
    for (const CLI::Option *option : options)
        output += make_option(option, isPositional);
    return output;
}

std::string HelpFormatter::make_subcommands(const CLI::App *app, CLI::AppFormatMode) const
{
    const std::vector<const CLI::App *> commands = app->get_subcommands({});
    if (commands.empty())
        return {};
    std::string output = '\n' + utf8Text("Commands", "Команды") + ":\n";
    for (const CLI::App *command : commands)
        output += make_subcommand(command);
    return output
        + utf8Text("\ngaragectl COMMAND --help lists the options of a command.\n",
                   "\ngaragectl КОМАНДА --help — ключи команды.\n");
}

std::string HelpFormatter::make_option(const CLI::Option *option, bool isPositional) const
{
    if (isPositional)
        return line(option->get_option_text(), option->get_description());
    const std::string value = option->get_option_text();
    return line(option->get_name(false, true) + (value.empty() ? "" : ' ' + value),
                option->get_description());
}

std::string HelpFormatter::make_subcommand(const CLI::App *command) const
{
    return line(command->get_name(), command->get_description());
}
