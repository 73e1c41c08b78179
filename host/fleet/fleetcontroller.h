#pragma once

#include "host/fleet/fleet.h"
#include "host/plugin/hostmessage.h"

#include <QObject>

class PluginHost;

/// Announces the host's cars and people to the plug-in, and handles "read_cars_list" and "update_cars".
class FleetController final : public QObject
{
    Q_OBJECT
public:
    FleetController(HostConnection &connection, PluginHost &plugin, QObject *parent = nullptr);

    Fleet &fleet() { return m_fleet; }
    /// Sends the messages that a host sends after loading its plug-ins.
    void sendStartSequence();
    void announceCars(bool withStatistics = true);
    void announcePeople();

signals:
    void carsAnnounced();
    void peopleAnnounced();

private:
    void handleMessage(const HostMessage &message);

    Fleet m_fleet;
    PluginHost &m_plugin;
};
