#pragma once

#include <QString>

/// Where this run of the host keeps its files. Unless told otherwise that is a folder of the host's own, so
/// that a demonstration never touches the user's documents.
class HostHome final
{
public:
    /// A home of the host's own; an empty path means the default one. Call before the application is made.
    static HostHome ownFolder(const QString &path);
    /// The user's real documents.
    static HostHome userDocuments();

    /// Points this process's documents location into the home. Call before the application is made: Qt and
    /// the plug-in ask the environment.
    void enter() const;

    QString path() const { return m_path; }
    bool isUserDocuments() const { return m_path.isEmpty(); }
    /// The folder of the database; valid after enter().
    QString databaseFolder() const;
    /// The database file that host and plug-in share; valid after enter().
    QString databasePath() const;
    /// The file of the remote side's own records.
    QString remoteRecordsPath() const;
    /// Removes both files, and what a program that was killed left beside them. Never the user's own.
    void removeDatabases() const;
    /// Where screenshots go if nobody says otherwise.
    QString screenshotsPath() const;

private:
    explicit HostHome(const QString &path);

    QString m_path; // empty: the user's own
};
