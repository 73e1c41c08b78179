#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// The folder that holds the backups: ruvalo-YYYYMMDD-HHMMSS.sqlite, by local time.
class BackupFolder final
{
public:
    /// Throws Failure (NotWritten) if it is no folder.
    explicit BackupFolder(const QString &path);

    QString filePath(const QString &name) const;
    /// The name of a backup made at that time, or in the first second after it that is not taken.
    QString freeName(QDateTime time) const;
    /// The names of all backups, oldest first. Other files do not count, whatever they hold.
    QStringList names() const;

    /// Deletes the oldest backups, so that this number is left, of which the given one always is one. Returns
    /// the names of those deleted.
    QStringList thin(int keep, const QString &newest) const;
    /// Deletes what interrupted backups have left, if it is older than a day.
    void removeLeftovers() const;

private:
    const QString m_path;
};
