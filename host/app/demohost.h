#pragma once

#include "host/database/hostconnection.h"
#include "host/fleet/fleetcontroller.h"
#include "host/messages/messagelogmodel.h"
#include "host/plugin/pluginhost.h"
#include "host/remote/remoteside.h"
#include "host/track/track.h"

class HostHome;

/// The rooms of the demonstration around one plug-in. Destroyed in reverse order, the plug-in after all that
/// talks to it.
class DemoHost final
{
    Q_DISABLE_COPY(DemoHost)
public:
    DemoHost(const HostHome &home, quint32 seed);

    HostConnection &connection() { return m_connection; }
    PluginHost &plugin() { return m_plugin; }
    JournalModel &journal() { return m_journal; }
    FleetDesk &fleet() { return m_fleet; }
    Track &track() { return m_track; }
    RemoteSide &remote() { return m_remote; }

private:
    HostConnection m_connection;
    PluginHost m_plugin;
    JournalModel m_journal;
    FleetDesk m_fleet;
    Track m_track;
    RemoteSide m_remote;
};
