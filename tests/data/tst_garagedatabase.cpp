#include "data/garagedatabase.h"
#include "data/immediatetransaction.h"
#include "support/databaselock.h"
#include "support/garagetest.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

/// A connection follows what becomes of its file.
class TestGarageDatabase : public GarageTest
{
    Q_OBJECT
private slots:
    void aFileThatBecomesWritableIsOpenedAnew();
    void anotherFileIsCounted();
    void aBusyDatabaseIsNotWaitedForWithoutWaiting();
    void everyWriteIsSyncedWithItsFolder();
    void aTransactionThatIsNotCommittedStoresNothing();
};

namespace {

const QString connection = "tst_garagedatabase";
const QString addOperation = "INSERT INTO service_operations (operation_name) VALUES ('x')";
const QString countOperations = "SELECT count(*) FROM service_operations";

/// Permissions mean nothing to the superuser: acts as an ordinary user for as long as it lives.
class OrdinaryUser final
{
    Q_DISABLE_COPY(OrdinaryUser)
public:
    OrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        m_isChanged = m_user == 0 && ::seteuid(nobody) == 0;
    }
    ~OrdinaryUser() { change(m_user); }

    /// Runs something as the user that the test was started by.
    template<typename Action> void asOwner(Action action) const
    {
        const uid_t acting = ::geteuid();
        change(m_user);
        action();
        change(acting);
    }

private:
    void change(uid_t user) const
    {
        if (m_isChanged && ::seteuid(user) != 0)
            qFatal("The user cannot be changed");
    }

    const uid_t m_user = ::geteuid();
    bool m_isChanged = false;
};

} // namespace

void TestGarageDatabase::aFileThatBecomesWritableIsOpenedAnew()
{
    const auto database = createDatabase();
    const QString path = home().databasePath();
    for (QString folder = QFileInfo(path).path(); folder.startsWith(home().path());
         folder = QFileInfo(folder).path())
        ::chmod(qPrintable(folder), 0777);
    ::chmod(qPrintable(path), 0444);

    const OrdinaryUser user;
    GarageDatabase garage(connection);
    QVERIFY(garage.isOpen());
    const int file = garage.fileCount();
    QVERIFY(!writeStatement(garage, addOperation, {}).isValid());
    QVERIFY(garage.run(countOperations).isActive());

    user.asOwner([&path] { ::chmod(qPrintable(path), 0666); });
    QVERIFY(writeStatement(garage, addOperation, {}).isValid());
    QCOMPARE(garage.fileCount(), file); // what was read before is still true
    QCOMPARE(database->value(countOperations).toInt(), 1);
}

void TestGarageDatabase::anotherFileIsCounted()
{
    const auto database = createDatabase();
    const QString path = home().databasePath();
    const TestDatabase replacement(path + ".other");
    GarageDatabase garage(connection);
    const int file = garage.fileCount();
    garage.ensureOpen();
    QCOMPARE(garage.fileCount(), file);

    QCOMPARE(std::rename(qPrintable(path + ".other"), qPrintable(path)), 0);
    garage.ensureOpen();
    QVERIFY(garage.fileCount() > file);
}

void TestGarageDatabase::aBusyDatabaseIsNotWaitedForWithoutWaiting()
{
    const auto database = createDatabase();
    GarageDatabase garage(connection);
    database->exec("BEGIN EXCLUSIVE");
    QElapsedTimer timer;
    timer.start();
    {
        const GarageDatabase::NoWaiting noWaiting(garage);
        const QSqlQuery query = garage.run(countOperations);
        QVERIFY(!query.isActive());
        QVERIFY(isBusy(query.lastError()));
        QVERIFY(timer.elapsed() < 4000);
    }
    database->exec("COMMIT");
    QVERIFY(garage.run(countOperations).isActive());
}

void TestGarageDatabase::everyWriteIsSyncedWithItsFolder()
{
    const auto database = createDatabase();
    const QString path = home().databasePath();
    constexpr int extra = 3;
    const auto level = [](const GarageDatabase &garage) {
        QSqlQuery query = garage.run("PRAGMA synchronous");
        return query.next() ? query.value(0).toInt() : -1;
    };
    GarageDatabase garage(connection);
    {
        const DatabaseLock lock(path, DatabaseLock::Exclusive, 60); // the first write waits
        QVERIFY(writeStatement(garage, addOperation, {}).isValid());
    }
    QCOMPARE(level(garage), extra);

    {
        const TestDatabase replacement(path + ".other");
    }
    QCOMPARE(std::rename(qPrintable(path + ".other"), qPrintable(path)), 0);
    QVERIFY(writeStatement(garage, addOperation, {}).isValid());
    QCOMPARE(level(garage), extra);
}

void TestGarageDatabase::aTransactionThatIsNotCommittedStoresNothing()
{
    const auto database = createDatabase();
    GarageDatabase garage(connection);
    {
        ImmediateTransaction transaction(garage);
        QSqlQuery query = transaction.prepare(addOperation);
        QVERIFY(transaction.exec(query, {}));
    }
    QCOMPARE(database->value(countOperations).toInt(), 0);
    QVERIFY(writeStatement(garage, addOperation, {}).isValid());
    QCOMPARE(database->value(countOperations).toInt(), 1);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestGarageDatabase)
#include "tst_garagedatabase.moc"
