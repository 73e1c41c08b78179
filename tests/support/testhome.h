#pragma once

#include <QString>
#include <QTemporaryDir>

/// A temporary home folder: while the object exists, the user's documents are inside it.
class TestHome final
{
    Q_DISABLE_COPY(TestHome)
public:
    TestHome();
    ~TestHome();

    QString path() const { return m_directory.path(); }
    /// Where the module looks for the database.
    QString databasePath() const;
    /// Makes the folder of the database.
    void createDatabaseFolder() const;
    /// Writes a file with that content in place of the database; false if that fails.
    bool writeDatabaseFile(const QByteArray &content) const;

private:
    QTemporaryDir m_directory;
    const QByteArray m_previousHome;
    const QByteArray m_previousConfigHome;
};
