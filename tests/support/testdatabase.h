#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <initializer_list>

/// The test's own connection to a garage database, as the host or any other program has one. A statement
/// that fails ends the test program unless it is tried with tryExec.
class TestDatabase final
{
    Q_DISABLE_COPY(TestDatabase)
public:
    /// Opens the file, or creates it with the host's schema if `createSchema`.
    explicit TestDatabase(const QString &path, bool createSchema = true);
    ~TestDatabase();

    /// Runs one statement with the values bound to its "?" placeholders and returns the query.
    QSqlQuery exec(const QString &statement, std::initializer_list<QVariant> values = {}) const;
    bool tryExec(const QString &statement) const;
    /// First column of the first row; invalid if there is none.
    QVariant value(const QString &statement, std::initializer_list<QVariant> values = {}) const;
    /// All rows as texts, columns joined by "|", NULL as "NULL".
    QStringList rows(const QString &statement) const;

    int addCar(int id, const QString &num, const QString &model) const;
    int addOperation(int id, const QString &name) const;
    void addLimit(const QString &model, int opId, int seconds, int runs, int laps) const;
    /// `time` is stored as given; returns the local id.
    int addRecord(int carId, int opId, const QString &time, int state, const QString &comment = {}) const;
    void addLap(int carId, int runId, const QString &timestamp, int milliseconds) const;

    /// The host's schema, one statement each.
    static QStringList schema();

private:
    const QString m_connectionName;
    QSqlDatabase m_database;
};
