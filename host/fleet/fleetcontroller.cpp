#include "host/fleet/fleetcontroller.h"

#include "host/plugin/pluginhost.h"

FleetController::FleetController(HostConnection &connection, PluginHost &plugin, QObject *parent)
    : QObject(parent), m_cars(connection), m_people(connection), m_plugin(plugin), m_writes(connection)
{
    connect(&m_writes, &RetriedWrites::delayed, this, [this](const QString &reason) {
        emit writeNoticeChanged(tr("Not saved yet, tried again and again: %1").arg(reason));
    });
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

void FleetController::addCar(const QString &model)
{
    write([=] { return m_cars.add(model); },
          [this] {
              announceCars();
              emit carAdded();
          });
}

void FleetController::storeCar(const HostCar &car)
{
    write([=] { return m_cars.store(car); }, [this] { announceCars(); });
}

void FleetController::removeCar(int id)
{
    write([=] { return m_cars.remove(id); }, [this] { announceCars(); });
}

void FleetController::setAvailable(const QVector<int> &carIds, bool available)
{
    write([=] { return m_cars.setAvailable(carIds, available); }, [this] { announceCars(false); });
}

void FleetController::storePerson(const HostPerson &person)
{
    write([=] { return m_people.store(person); }, [this] { announcePeople(); });
}

void FleetController::removePerson(int id)
{
    write([=] { return m_people.remove(id); }, [this] { announcePeople(); });
}

void FleetController::write(const RetriedWrites::Write &write, const std::function<void()> &announce)
{
    m_writes.add(write, [this, announce](const Result &result) {
        emit writeNoticeChanged(result ? QString() : tr("Not saved: %1").arg(result.errorText()));
        if (result) {
            announce();
            return;
        }
        // The panels and the plug-in go back to what is stored.
        announceCars(false);
        announcePeople();
    });
}

void FleetController::handleMessage(const HostMessage &message)
{
    if (message.event == QLatin1String("read_cars_list"))
        announceCars();
    else if (message.event == QLatin1String("update_cars"))
        write([=] { return m_cars.applyUpdate(message.data); }, [this] { announceCars(false); });
}
