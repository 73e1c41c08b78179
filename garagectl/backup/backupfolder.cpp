#include "garagectl/backup/backupfolder.h"

#include "garagectl/exitcode.h"
#include "garagectl/wording.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

namespace {

const QString timeFormat = QStringLiteral("yyyyMMdd-hhmmss");

QString nameAt(const QDateTime &time)
{
    return QLatin1String("ruvalo-") + QLocale::c().toString(time, timeFormat) + QLatin1String(".sqlite");
}

/// The files that bear such a name, sorted by it. A link or a folder is not of this program's making.
QStringList filesNamed(const QString &folder, const QString &pattern)
{
    static const auto filters = QDir::Files | QDir::Hidden | QDir::NoSymLinks;
    const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern));
    return QDir(folder).entryList(filters, QDir::Name).filter(expression);
}

} // namespace

BackupFolder::BackupFolder(const QString &path) : m_path(QFileInfo(path).absoluteFilePath())
{
    if (!QFileInfo(m_path).isDir())
        throw Failure {ExitCode::NotWritten, text("there is no folder %1", "папки %1 нет").arg(path)};
}

QString BackupFolder::filePath(const QString &name) const
{
    return QDir(m_path).filePath(name);
}

QString BackupFolder::freeName(QDateTime time) const
{
    while (QFileInfo::exists(filePath(nameAt(time))))
        time = time.addSecs(1);
    return nameAt(time);
}

QStringList BackupFolder::names() const
{
    return filesNamed(m_path, QStringLiteral("ruvalo-[0-9]{8}-[0-9]{6}\\.sqlite"));
}

QStringList BackupFolder::thin(int keep, const QString &newest) const
{
    QStringList others = names();
    others.removeAll(newest); // not the last one if the clock was set back
    QStringList removed;
    while (others.size() > keep - 1) {
        const QString name = others.takeFirst();
        if (QFile::remove(filePath(name)))
            removed.append(name);
    }
    return removed;
}

void BackupFolder::removeLeftovers() const
{
    constexpr int secondsPerDay = 24 * 3600;
    const QStringList leftovers =
        filesNamed(m_path, QStringLiteral("\\.ruvalo-[0-9]{8}-[0-9]{6}\\.sqlite\\.[0-9]+\\.part"));
    for (const QString &name : leftovers) {
        const QDateTime modified = QFileInfo(filePath(name)).lastModified();
        if (modified.secsTo(QDateTime::currentDateTime()) > secondsPerDay)
            QFile::remove(filePath(name));
    }
}
