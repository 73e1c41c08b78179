// The tab of the cars in work, and the remote requests for a car's availability.

#include "garage/garageform.h"

#include "ui_garageform.h"

#include <algorithm>

namespace {

constexpr int uiSinkId = -1; // answers of the window go to all remote controls

QJsonObject availabilityCommand(const QJsonArray &carIds, bool available)
{
    return {{QStringLiteral("carsIdsList"), carIds},
            {QStringLiteral("command"), QStringLiteral("set_availability")},
            {QStringLiteral("available"), available ? 1 : 0}};
}

} // namespace

void GarageForm::loadCars(const QJsonObject &jsonData)
{
    m_allCarsModel.loadFromJson(jsonData, false);
    m_availableCarsModel.loadFromJson(jsonData, true);
}

void GarageForm::on_pbSetAvailable_clicked()
{
    changeAvailability(m_ui->tvAllCars, m_allCarsModel, true);
}

void GarageForm::on_tvAllCars_doubleClicked(QModelIndex index)
{
    Q_UNUSED(index)
    changeAvailability(m_ui->tvAllCars, m_allCarsModel, true);
}

void GarageForm::on_pbRemoveAvailable_clicked()
{
    changeAvailability(m_ui->tvAvailableCars, m_availableCarsModel, false);
}

void GarageForm::on_tvAvailableCars_doubleClicked(QModelIndex index)
{
    Q_UNUSED(index)
    changeAvailability(m_ui->tvAvailableCars, m_availableCarsModel, false);
}

void GarageForm::changeAvailability(QTreeView *view, const CarsListModel &model, bool available)
{
    QModelIndexList rows = view->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    std::sort(rows.begin(), rows.end());

    const QJsonArray carIds = model.idsOfRows(rows);
    QJsonObject command = availabilityCommand(carIds, available);
    command.insert(QStringLiteral("requestSrc"), QStringLiteral("ui"));
    emit pluginSignal(QStringLiteral("update_cars"), command);
    view->clearSelection();

    // The answer carries the command's own keys as well.
    command.insert(QStringLiteral("req_answ"),
                   QJsonObject {{QStringLiteral("carAvailable"), available},
                                {QStringLiteral("carsIdsList"), carIds},
                                {QStringLiteral("status"), QStringLiteral("ok")}});
    command.insert(QStringLiteral("sinkId"), uiSinkId);
    emit pluginSignal(QStringLiteral("remote_control_answer"), command);
}

QJsonObject GarageForm::remoteControlRequest(QJsonObject answer, const QJsonObject &jsonData)
{
    if (jsonData.value(QLatin1String("msg")).toString() != QLatin1String("switchCarAvailability"))
        return answer;

    bool isNumber = false;
    const int carId = jsonData.value(QLatin1String("data"))
                          .toObject()
                          .value(QLatin1String("carId"))
                          .toVariant()
                          .toInt(&isNumber);
    if (!isNumber || carId == noId)
        return answer;

    const bool wasAvailable = m_availableCarsModel.contains(carId);
    const bool isKnown = wasAvailable || m_allCarsModel.contains(carId);
    const bool isAvailable = isKnown && !wasAvailable;
    if (isKnown)
        emit pluginSignal(QStringLiteral("update_cars"), availabilityCommand({carId}, isAvailable));

    answer.insert(QStringLiteral("status"), QStringLiteral("ok"));
    answer.insert(QStringLiteral("carId"), carId);
    answer.insert(QStringLiteral("carAvailable"), isAvailable);
    answer.insert(QStringLiteral("sinkId"), uiSinkId);
    return answer;
}
