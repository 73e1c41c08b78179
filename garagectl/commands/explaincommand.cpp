#include "garagectl/commands/explaincommand.h"

#include "garagectl/database/readonlyfile.h"
#include "garagectl/fleet/explanation.h"
#include "garagectl/output/progress.h"
#include "garagectl/output/textwidth.h"
#include "garagectl/wording.h"

#include <QJsonDocument>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

[[noreturn]] void refuse(const QString &message)
{
    throw Failure {ExitCode::BadUsage, message};
}

const MaintainanceItem &findCar(const QList<MaintainanceItem> &cars, const QString &number,
                                const std::string &model)
{
    const MaintainanceItem *found = nullptr;
    for (const MaintainanceItem &car : cars) {
        if (car.num != number || (!model.empty() && car.model != QString::fromStdString(model)))
            continue;
        if (found) {
            refuse(text("there are several karts with the number %1; choose one with --model",
                        "картов с номером %1 несколько; выберите ключом --model")
                       .arg(number));
        }
        found = &car;
    }
    if (!found)
        refuse(text("there is no kart with the number %1", "карта с номером %1 нет").arg(number));
    return *found;
}

bool meansComplaint(const QString &name)
{
    return name == QLatin1String("complaint") || name == QString::fromUtf8("жалоба")
        || name == QString::number(complaintOperationId);
}

bool isNamed(const DueRow &row, const QString &name)
{
    if (row.opId == complaintOperationId)
        return meansComplaint(name);
    return name == QString::number(row.opId) || row.operation.compare(name, Qt::CaseInsensitive) == 0;
}

/// A row also for an operation that has neither limit nor record.
DueRow findRow(const FleetStatus &fleet, const MaintainanceItem &car, const QString &name)
{
    const QVector<DueRow> rows = dueRows({{car}, fleet.reglament, fleet.operations}, defaultSoonShare);
    const auto row = std::find_if(rows.cbegin(), rows.cend(),
                                  [&name](const DueRow &candidate) { return isNamed(candidate, name); });
    if (row != rows.cend())
        return *row;

    if (meansComplaint(name))
        refuse(text("kart %1 has no open complaint", "у карта %1 нет открытой жалобы").arg(car.num));

    DueRow plain;
    plain.carId = car.carId;
    plain.carNumber = car.num;
    plain.carModel = car.model;
    plain.state = DueState::Never;
    for (auto it = fleet.operations.cbegin(); it != fleet.operations.cend(); ++it) {
        plain.opId = it.key();
        plain.operation = it.value();
        if (isNamed(plain, name))
            return plain;
    }
    refuse(text("there is no operation %1; there are: %2", "операции %1 нет; есть: %2")
               .arg(name,
                    TextWidth::printable(QStringList(fleet.operations.values()).join(QLatin1String(", ")))));
}

} // namespace

CLI::App *ExplainCommand::addTo(CLI::App &program)
{
    CLI::App *command = program.add_subcommand("explain",
                                               text("Explains why an operation of a kart is due or is not",
                                                    "Почему операцию карта пора или не пора делать")
                                                   .toStdString());
    command->add_option("car", m_car, text("Number of the kart", "Номер карта").toStdString())
        ->option_text(text("CAR", "КАРТ").toStdString())
        ->required();
    command
        ->add_option("operation", m_operation,
                     text("Name or id of the operation; complaint for the complaint",
                          "Имя или код операции; жалоба — для жалобы")
                         .toStdString())
        ->option_text(text("OPERATION", "ОПЕРАЦИЯ").toStdString())
        ->required();
    command
        ->add_option("--model", m_model,
                     text("Model of the kart, if several have this number",
                          "Модель карта, если номер есть у нескольких")
                         .toStdString())
        ->option_text(text("MODEL", "МОДЕЛЬ").toStdString());
    m_rowOptions.addTo(*command, {"text", "json"});
    return command;
}

ExitCode ExplainCommand::run(const QString &databasePath)
{
    Derivation derivation;
    {
        const Progress progress(text("reading the laps", "читаются круги"));
        ReadOnlyFile::read(databasePath, [&](const GarageDatabase &database) {
            const FleetStatus fleet = readFleetStatus(database);
            const MaintainanceItem &car = findCar(fleet.cars, QString::fromStdString(m_car), m_model);
            const DueRow row = findRow(fleet, car, QString::fromStdString(m_operation));
            derivation = readDerivation(database, row);
        });
    }
    if (m_rowOptions.format == "json")
        writeBytes(m_rowOptions, QJsonDocument(Explanation::json(derivation)).toJson());
    else
        writeBytes(m_rowOptions, Explanation::sentences(derivation).join(QLatin1Char('\n')).toUtf8() + '\n');
    return ExitCode::Ok;
}
