#include "host/app/demohost.h"

#include "host/database/datafolder.h"

DemoHost::DemoHost(const DataFolder &folder, quint32 seed)
    : m_connection(folder.databasePath())
    , m_messageLog(m_plugin)
    , m_fleet(m_connection, m_plugin)
    , m_track(folder.databasePath(), m_fleet, m_plugin, seed)
    , m_remote(folder.remoteRecordsPath(), m_connection, m_plugin)
    , m_web(m_remote, m_fleet, folder.databasePath())
{
}
