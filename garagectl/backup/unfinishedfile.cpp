#include "garagectl/backup/unfinishedfile.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> endingSignals {SIGINT, SIGTERM, SIGHUP};

/// What SQLite may have made of the file and beside it.
constexpr std::array<const char *, 2> suffixes {"", "-journal"};

// For the signal handler, which may not allocate. Set while the handler is not installed.
std::array<QByteArray, suffixes.size()> pathsToRemove;

void removeAndEnd(int signal)
{
    for (const QByteArray &path : pathsToRemove)
        unlink(path.constData());
    std::signal(signal, SIG_DFL);
    raise(signal);
}

void handleSignals(void (*handler)(int))
{
    for (const int signal : endingSignals)
        std::signal(signal, handler);
}

bool writeToDisk(const QString &path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool isWritten = fsync(descriptor) == 0;
    close(descriptor);
    return isWritten;
}

/// A link fails where the name is taken, a rename would replace the file. Not every file system has links.
bool renameWithoutReplacing(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (link(source.constData(), target.constData()) == 0)
        return unlink(source.constData()) == 0;
    return !QFileInfo::exists(to) && std::rename(source.constData(), target.constData()) == 0;
}

} // namespace

UnfinishedFile::UnfinishedFile(const QString &path) : m_path(path)
{
    for (std::size_t i = 0; i < suffixes.size(); ++i)
        pathsToRemove.at(i) = QFile::encodeName(path) + suffixes.at(i);
    handleSignals(removeAndEnd);
}

UnfinishedFile::~UnfinishedFile()
{
    remove();
    handleSignals(SIG_DFL);
}

void UnfinishedFile::remove() const
{
    for (const char *suffix : suffixes)
        QFile::remove(m_path + QLatin1String(suffix));
}

bool UnfinishedFile::finish(const QString &finalPath, const QString &permissionsOf)
{
    return QFile::setPermissions(m_path, QFile::permissions(permissionsOf)) && writeToDisk(m_path)
        && renameWithoutReplacing(m_path, finalPath) && writeToDisk(QFileInfo(finalPath).path());
}
