#pragma once

#include <QString>

/// A file under a temporary name. It is removed again unless it gets its final name, also when the program is
/// interrupted (SIGINT, SIGTERM, SIGHUP). Only one may exist at a time.
class UnfinishedFile final
{
    Q_DISABLE_COPY(UnfinishedFile)
public:
    /// The file need not exist yet.
    explicit UnfinishedFile(const QString &path);
    ~UnfinishedFile();

    QString path() const { return m_path; }
    void remove() const;
    /// Gives the file the permissions of another one, writes it to the disk, and renames it. False if this
    /// failed; a file of that name is never replaced.
    bool finish(const QString &finalPath, const QString &permissionsOf);

private:
    const QString m_path;
};
