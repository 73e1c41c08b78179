#pragma once

#include "host/database/retriedwrites.h"
#include "host/fleet/carstore.h"
#include "host/fleet/personstore.h"
#include "host/plugin/hostmessage.h"

#include <QObject>

class PluginHost;

/// Stores and announces the host's cars and people, and handles "read_cars_list" and "update_cars". A write
/// that finds the file locked is repeated until it is stored; each stored change is announced.
class FleetController final : public QObject
{
    Q_OBJECT
public:
    FleetController(HostConnection &connection, PluginHost &plugin, QObject *parent = nullptr);

    const CarStore &cars() const { return m_cars; }
    const PersonStore &people() const { return m_people; }

    void addCar(const QString &model);
    void storeCar(const HostCar &car);
    void removeCar(int id);
    void setAvailable(const QVector<int> &carIds, bool available);
    /// Adds the person if the id is negative.
    void storePerson(const HostPerson &person);
    void removePerson(int id);

    /// Sends the messages that a host sends after loading its plug-ins.
    void sendStartSequence();
    void announceCars(bool withStatistics = true);
    void announcePeople();

signals:
    /// The list has been read and sent to the plug-in.
    void carsAnnounced();
    void peopleAnnounced();
    /// A car has been added and announced.
    void carAdded();
    /// What the user must know of the latest write: that it waits or has failed. Empty once one is stored.
    void writeNoticeChanged(const QString &notice);

private:
    void handleMessage(const HostMessage &message);
    void write(const RetriedWrites::Write &write, const std::function<void()> &announce);

    CarStore m_cars;
    PersonStore m_people;
    PluginHost &m_plugin;
    RetriedWrites m_writes;
};
