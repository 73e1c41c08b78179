#include "support/testhome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TestHome::TestHome() : m_previousHome(qgetenv("HOME")), m_previousConfigHome(qgetenv("XDG_CONFIG_HOME"))
{
    if (!m_directory.isValid())
        qFatal("No scratch home: %s", qPrintable(m_directory.errorString()));
    qputenv("HOME", m_directory.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", (m_directory.path() + "/.config").toLocal8Bit());
}

TestHome::~TestHome()
{
    qputenv("HOME", m_previousHome);
    qputenv("XDG_CONFIG_HOME", m_previousConfigHome);
}

QString TestHome::databasePath() const
{
    return m_directory.path() + "/Documents/Ruvalo-QT/DB/ruvalo.sqlite";
}

void TestHome::createDatabaseFolder() const
{
    QDir().mkpath(QFileInfo(databasePath()).path());
}

bool TestHome::writeDatabaseFile(const QByteArray &content) const
{
    createDatabaseFolder();
    QFile file(databasePath());
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}
