#include "garagectl/fleet/rowfilter.h"

#include "garagectl/wording.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

template<typename Matches> bool acceptsAny(const std::vector<std::string> &wanted, Matches matches)
{
    return wanted.empty()
        || std::any_of(wanted.cbegin(), wanted.cend(), [&matches](const std::string &value) {
               return matches(QString::fromStdString(value));
           });
}

} // namespace

void RowFilter::addTo(CLI::App &command)
{
    const auto addOption = [&command](const char *name, std::vector<std::string> &values, const QString &help,
                                      const QString &value) {
        command.add_option(name, values, help.toStdString())
            ->option_text(value.toStdString())
            ->allow_extra_args(false);
    };
    addOption("--car", cars, text("Only the kart with this number", "Только карт с этим номером"),
              text("NUMBER", "НОМЕР"));
    addOption("--model", models, text("Only karts of this model", "Только карты этой модели"),
              text("MODEL", "МОДЕЛЬ"));
    addOption("--operation", operations,
              text("Only this operation, by name or id", "Только эта операция: имя или код"),
              text("OPERATION", "ОПЕРАЦИЯ"));
}

bool RowFilter::acceptsCar(const QString &number, const QString &model) const
{
    return acceptsAny(cars, [&number](const QString &value) { return value == number; })
        && acceptsAny(models, [&model](const QString &value) { return value == model; });
}

bool RowFilter::accepts(const QString &carNumber, const QString &carModel, int opId,
                        const QString &opName) const
{
    return acceptsCar(carNumber, carModel) && acceptsAny(operations, [&](const QString &value) {
               return value.compare(opName, Qt::CaseInsensitive) == 0 || value == QString::number(opId);
           });
}
