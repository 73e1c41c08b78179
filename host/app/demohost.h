#pragma once

#include "host/database/hostconnection.h"
#include "host/fleet/fleetcontroller.h"
#include "host/messages/messagelogmodel.h"
#include "host/plugin/pluginhost.h"
#include "host/remote/remoteside.h"
#include "host/remote/web/webservice.h"
#include "host/track/track.h"

class DataFolder;

/// Owns one plug-in and the controllers around it. Members are destroyed in reverse order: the plug-in after
/// every object that sends messages to it.
class DemoHost final
{
    Q_DISABLE_COPY(DemoHost)
public:
    DemoHost(const DataFolder &folder, quint32 seed);

    HostConnection &connection() { return m_connection; }
    PluginHost &plugin() { return m_plugin; }
    MessageLogModel &messageLog() { return m_messageLog; }
    FleetController &fleet() { return m_fleet; }
    Track &track() { return m_track; }
    RemoteSide &remote() { return m_remote; }
    WebService &web() { return m_web; }

private:
    HostConnection m_connection;
    PluginHost m_plugin;
    MessageLogModel m_messageLog;
    FleetController m_fleet;
    Track m_track;
    RemoteSide m_remote;
    WebService m_web;
};
