#include "hostcheck/garagerole.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

const QLatin1String moduleName("garage_plugin");
constexpr int reloadDuration = 400; // milliseconds

/// 0 if the host deleted the widget.
QJsonValue address(const QWidget *widget)
{
    return qlonglong(reinterpret_cast<quintptr>(widget));
}

bool hasRecords(const QJsonObject &data)
{
    return !QJsonDocument::fromJson(data.value(QLatin1String("data")).toString().toUtf8()).array().isEmpty();
}

} // namespace

GarageRole::GarageRole(QWidget *window, QWidget *page, QString caption)
    : m_window(window), m_page(page), m_caption(std::move(caption))
{
    m_reload.setSingleShot(true);
    m_reload.setInterval(reloadDuration);
    connect(&m_reload, &QTimer::timeout, this, &GarageRole::reportNothingDue);
}

void GarageRole::handle(const QString &event, const QJsonObject &data)
{
    const QString request = data.value(QLatin1String("msg")).toString();
    const bool isRemoteControl = event == QLatin1String("remote_control_data");
    const bool isRecords = event == QLatin1String("remote_service_data")
        || (isRemoteControl && request == QLatin1String("service_operation_done"));
    if (event == QLatin1String("load_complete")) {
        emit message(QStringLiteral("read_cars_list"), {});
        emit message(QStringLiteral("update_remote_service"), {});
    } else if (event == QLatin1String("clicked")) {
        if (data.value(QLatin1String("key")).toString() == QLatin1String("show_garage"))
            insertTab();
    } else if (event == QLatin1String("send_settings_dialogs")) {
        sendSettingsPage();
    } else if (event == QLatin1String("cars_list_changed")) {
        readCars(data);
        if (m_window && m_window->isVisible() && !data.value(QLatin1String("noStatsUpdate")).toBool())
            reload();
    } else if (isRemoteControl && request == QLatin1String("switchCarAvailability")) {
        switchAvailability(data);
    } else if (event == QLatin1String("run_saved_to_db") || (isRecords && hasRecords(data))) {
        reload();
    }
}

void GarageRole::insertTab()
{
    emit message(QStringLiteral("insert_tab"),
                 {{QStringLiteral("tabWidget"), address(m_window)},
                  {QStringLiteral("tabCaption"), m_caption},
                  {QStringLiteral("index"), 0},
                  {QStringLiteral("moduleName"), moduleName}});
}

void GarageRole::closeTab()
{
    emit message(QStringLiteral("close_tab"),
                 {{QStringLiteral("tabWidget"), address(m_window)},
                  {QStringLiteral("moduleName"), moduleName},
                  {QStringLiteral("onlyHide"), true}});
}

void GarageRole::sendSettingsPage()
{
    emit message(QStringLiteral("settings_dialog"),
                 {{QStringLiteral("moduleName"), moduleName},
                  {QStringLiteral("settingsCaption"), m_caption},
                  {QStringLiteral("settingsPagePtr"), address(m_page)}});
}

void GarageRole::readCars(const QJsonObject &data)
{
    m_availability.clear();
    for (const QJsonValue car : data.value(QLatin1String("cars")).toArray())
        m_availability.insert(car[QLatin1String("id")].toInt(-1),
                              car[QLatin1String("available_for_runs")].toBool(true));
}

void GarageRole::switchAvailability(const QJsonObject &request)
{
    const int carId = request.value(QLatin1String("data"))[QLatin1String("carId")].toVariant().toInt();
    const bool isKnown = m_availability.contains(carId);
    const bool isAvailable = isKnown && !m_availability.value(carId);
    if (isKnown)
        emit message(QStringLiteral("update_cars"),
                     {{QStringLiteral("carsIdsList"), QJsonArray {carId}},
                      {QStringLiteral("command"), QStringLiteral("set_availability")},
                      {QStringLiteral("available"), int(isAvailable)}});
    if (request.value(QLatin1String("skipAnswer")).toBool())
        return;
    emit message(QStringLiteral("remote_control_answer"),
                 {{QStringLiteral("req_answ"),
                   QJsonObject {{QStringLiteral("status"), QStringLiteral("ok")},
                                {QStringLiteral("carId"), carId},
                                {QStringLiteral("carAvailable"), isAvailable},
                                {QStringLiteral("sinkId"), -1}}},
                  {QStringLiteral("sinkId"), -1}});
}

void GarageRole::reportNothingDue()
{
    QJsonArray status;
    for (auto car = m_availability.constBegin(); car != m_availability.constEnd(); ++car)
        status.append(
            QJsonObject {{QStringLiteral("carId"), car.key()}, {QStringLiteral("opsStatus"), QJsonObject()}});
    emit message(QStringLiteral("update_pending_service"),
                 {{QStringLiteral("servicePendingList"), QJsonArray()},
                  {QStringLiteral("maintainanceStatus"), status}});
}
