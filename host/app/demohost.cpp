#include "host/app/demohost.h"

#include "host/database/datafolder.h"

DemoHost::DemoHost(const DataFolder &home, quint32 seed)
    : m_connection(home.databasePath())
    , m_messageLog(m_plugin)
    , m_fleet(m_connection, m_plugin)
    , m_track(home.databasePath(), m_fleet, m_plugin, seed)
    , m_remote(home.remoteRecordsPath(), m_connection, m_plugin)
{
}
