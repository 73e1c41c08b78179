#include "host/fleet/fleetcontroller.h"

#include "host/plugin/pluginhost.h"

FleetController::FleetController(HostConnection &connection, PluginHost &plugin, QObject *parent)
    : QObject(parent), m_cars(connection), m_people(connection), m_plugin(plugin)
{
    // Queued: the plug-in must return from its signal before it gets an answer.
    connect(&plugin, &PluginHost::received, this, &FleetController::handleMessage, Qt::QueuedConnection);
}

void FleetController::sendStartSequence()
{
    m_plugin.send(QStringLiteral("load_complete"));
    announcePeople();
    announceCars();
    m_plugin.send(QStringLiteral("run_saved_to_db"));
}

void FleetController::announceCars(bool withStatistics)
{
    m_cars.refresh();
    QJsonObject data = m_cars.message();
    if (!withStatistics)
        data.insert(QStringLiteral("noStatsUpdate"), true);
    m_plugin.send(QStringLiteral("cars_list_changed"), data);
    emit carsAnnounced();
}

void FleetController::announcePeople()
{
    m_people.refresh();
    m_plugin.send(QStringLiteral("personal_list"), m_people.message());
    emit peopleAnnounced();
}

void FleetController::handleMessage(const HostMessage &message)
{
    if (message.event == QLatin1String("read_cars_list"))
        announceCars();
    else if (message.event == QLatin1String("update_cars") && m_cars.applyUpdate(message.data))
        announceCars(false);
}
