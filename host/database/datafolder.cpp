#include "host/database/datafolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

void setPath(const char *variable, const QString &path)
{
    qputenv(variable, QFile::encodeName(path));
}

/// X11 clients look for the authority file in the home folder unless XAUTHORITY names it.
void keepDisplayAuthority()
{
    const QString authority = QDir::homePath() + QLatin1String("/.Xauthority");
    if (qEnvironmentVariableIsEmpty("XAUTHORITY") && QFile::exists(authority))
        setPath("XAUTHORITY", authority);
}

/// Qt warns if the variable is unset, as it is without a desktop session.
void setRuntimeFolder(const QString &path)
{
    if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR") || !QDir().mkpath(path))
        return;
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    setPath("XDG_RUNTIME_DIR", path);
}

QString defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QLatin1String("/garage-host");
}

} // namespace

DataFolder::DataFolder(const QString &path) : m_path(path)
{
}

DataFolder DataFolder::own(const QString &path)
{
    return DataFolder(QDir(path.isEmpty() ? defaultPath() : path).absolutePath());
}

DataFolder DataFolder::userDocuments()
{
    return DataFolder(QString());
}

void DataFolder::applyToEnvironment() const
{
    if (isUserDocuments())
        return;
    keepDisplayAuthority();
    setPath("HOME", m_path);
    setPath("XDG_CONFIG_HOME", m_path + QLatin1String("/.config"));
    setPath("XDG_DATA_HOME", m_path + QLatin1String("/.local/share"));
    setRuntimeFolder(m_path + QLatin1String("/.runtime"));
}

QString DataFolder::databaseFolder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QLatin1String("/Ruvalo-QT/DB");
}

QString DataFolder::databasePath() const
{
    return databaseFolder() + QLatin1String("/ruvalo.sqlite");
}

QString DataFolder::remoteRecordsPath() const
{
    return databaseFolder() + QLatin1String("/garage-host-remote.sqlite");
}

QString DataFolder::logPath() const
{
    return (isUserDocuments() ? defaultPath() : m_path) + QLatin1String("/garage-host.log");
}

QString DataFolder::screenshotsPath() const
{
    return (isUserDocuments() ? QDir::currentPath() : m_path) + QLatin1String("/screenshots");
}

void DataFolder::removeDatabases() const
{
    if (isUserDocuments())
        return;
    for (const QString &file : {databasePath(), remoteRecordsPath()}) {
        for (const char *suffix : {"", "-journal", "-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
    }
}
