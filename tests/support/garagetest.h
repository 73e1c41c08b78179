#pragma once

#include "support/testdatabase.h"
#include "support/testhome.h"
#include "support/testprogram.h"

#include <QObject>
#include <QStringList>
#include <QtTest>

#include <memory>

/// Base of the tests: each test function starts in an empty home of its own and fails if Qt warned of
/// anything meanwhile.
class GarageTest : public QObject
{
    Q_OBJECT
protected:
    TestHome &home() { return *m_home; }
    /// Makes the database file with the host's schema and opens it.
    std::unique_ptr<TestDatabase> createDatabase() const;

    /// Qt's warnings since init(), which a test calls that causes some on purpose; clears them.
    static QStringList takeWarnings();
    /// What was written with qDebug since init().
    static QStringList takeDebugLines();

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<TestHome> m_home;
};

/// Base of the tests that all work on a database file: each test function starts with the host's empty one.
class DatabaseTest : public GarageTest
{
    Q_OBJECT
protected:
    std::unique_ptr<TestDatabase> database;

protected slots:
    void init();
    void cleanup();
};
