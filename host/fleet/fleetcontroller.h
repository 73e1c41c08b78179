#pragma once

#include "host/fleet/carstore.h"
#include "host/fleet/personstore.h"
#include "host/plugin/hostmessage.h"

#include <QObject>

class PluginHost;

/// Announces the host's cars and people to the plug-in, and handles "read_cars_list" and "update_cars".
class FleetController final : public QObject
{
    Q_OBJECT
public:
    FleetController(HostConnection &connection, PluginHost &plugin, QObject *parent = nullptr);

    CarStore &cars() { return m_cars; }
    PersonStore &people() { return m_people; }
    /// Sends the messages that a host sends after loading its plug-ins.
    void sendStartSequence();
    void announceCars(bool withStatistics = true);
    void announcePeople();

signals:
    /// The list has been read and sent to the plug-in.
    void carsAnnounced();
    void peopleAnnounced();

private:
    void handleMessage(const HostMessage &message);

    CarStore m_cars;
    PersonStore m_people;
    PluginHost &m_plugin;
};
