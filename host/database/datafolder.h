#pragma once

#include <QString>

/// The folder that holds the files of this run. By default it is a folder of the host's own, so that a
/// demonstration never changes the user's documents.
class DataFolder final
{
public:
    /// A folder of the host's own; an empty path selects the default one. Call before the application object
    /// exists.
    static DataFolder own(const QString &path);
    /// The user's real documents.
    static DataFolder userDocuments();

    /// Makes the folder this process's home folder in the environment, from which Qt and the plug-in derive
    /// the documents location. Call before the application object exists.
    void applyToEnvironment() const;

    QString path() const { return m_path; }
    bool isUserDocuments() const { return m_path.isEmpty(); }
    /// The folder of the database; valid after applyToEnvironment().
    QString databaseFolder() const;
    /// The database file that host and plug-in share; valid after applyToEnvironment().
    QString databasePath() const;
    /// The file of the remote side's own records.
    QString remoteRecordsPath() const;
    /// Removes both files and their rollback journals. Does nothing for the user's documents.
    void removeDatabases() const;
    /// The log file of Qt's messages: in the folder, or, for the user's documents, in the default folder.
    QString logPath() const;
    /// The default folder of screenshots.
    QString screenshotsPath() const;

private:
    explicit DataFolder(const QString &path);

    QString m_path; // empty: the user's documents
};
