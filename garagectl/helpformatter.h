#pragma once

#include <CLI/CLI.hpp>

/// The help in the current language, in columns that are aligned with Cyrillic letters, too.
class HelpFormatter final : public CLI::Formatter
{
public:
    HelpFormatter();

    std::string make_usage(const CLI::App *app, std::string name) const override;
    std::string make_group(std::string group, bool isPositional,
                           std::vector<const CLI::Option *> options) const override;
    std::string make_subcommands(const CLI::App *app, CLI::AppFormatMode mode) const override;
    std::string make_option(const CLI::Option *option, bool isPositional) const override;
    std::string make_subcommand(const CLI::App *command) const override;
};
