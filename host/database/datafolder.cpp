#include "host/database/datafolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

void setPath(const char *variable, const QString &path)
{
    qputenv(variable, QFile::encodeName(path));
}

/// Programs find the display's authority file through the home folder unless they are told where it is.
void keepDisplayAuthority()
{
    const QString authority = QDir::homePath() + QLatin1String("/.Xauthority");
    if (qEnvironmentVariableIsEmpty("XAUTHORITY") && QFile::exists(authority))
        setPath("XAUTHORITY", authority);
}

} // namespace

HostHome::HostHome(const QString &path) : m_path(path)
{
}

HostHome HostHome::ownFolder(const QString &path)
{
    const QString chosen = path.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
            + QLatin1String("/garage-host")
        : path;
    return HostHome(QDir(chosen).absolutePath());
}

HostHome HostHome::userDocuments()
{
    return HostHome(QString());
}

void HostHome::enter() const
{
    if (isUserDocuments())
        return;
    keepDisplayAuthority();
    setPath("HOME", m_path);
    setPath("XDG_CONFIG_HOME", m_path + QLatin1String("/.config"));
    setPath("XDG_DATA_HOME", m_path + QLatin1String("/.local/share"));
}

QString HostHome::databaseFolder() const
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QLatin1String("/Ruvalo-QT/DB");
}

QString HostHome::databasePath() const
{
    return databaseFolder() + QLatin1String("/ruvalo.sqlite");
}

QString HostHome::remoteRecordsPath() const
{
    return databaseFolder() + QLatin1String("/garage-host-remote.sqlite");
}

QString HostHome::screenshotsPath() const
{
    return (isUserDocuments() ? QDir::currentPath() : m_path) + QLatin1String("/screenshots");
}

void HostHome::removeDatabases() const
{
    if (isUserDocuments())
        return;
    for (const QString &file : {databasePath(), remoteRecordsPath()}) {
        QFile::remove(file);
        QFile::remove(file + QLatin1String("-journal"));
    }
}
