#pragma once

#include "host/fleet/fleet.h"
#include "host/plugin/hostmessage.h"

#include <QObject>

class PluginHost;

/// The host's desk for cars and people: announces them, answers "read_cars_list" and carries out
/// "update_cars".
class FleetDesk final : public QObject
{
    Q_OBJECT
public:
    FleetDesk(HostConnection &connection, PluginHost &plugin, QObject *parent = nullptr);

    Fleet &fleet() { return m_fleet; }
    /// What a host says when it has loaded its plug-ins.
    void playStart();
    void announceCars(bool withStatistics = true);
    void announcePeople();

signals:
    void carsAnnounced();
    void peopleAnnounced();

private:
    void take(const HostMessage &message);

    Fleet m_fleet;
    PluginHost &m_plugin;
};
