#include "support/garagetest.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QSet>

namespace {

constexpr int batchSize = 5; // of the busyprocess
constexpr int idsPerRound = 1000; // never used up, so that no number means two records

int fromEnvironment(const char *name, int usual)
{
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : usual;
}

/// The output of a process, by the first word of its lines. A line that it could not finish does not count.
class Reports final
{
public:
    void add(const QByteArray &output)
    {
        m_rest += output;
        while (m_rest.contains('\n')) {
            const int end = int(m_rest.indexOf('\n'));
            const QByteArray line = m_rest.left(end);
            m_rest.remove(0, end + 1);
            const QList<QByteArray> words = line.split(' ');
            m_values[words.first()].append(words.last().toInt());
            ++m_lines;
        }
    }
    QVector<int> of(const char *word) const { return m_values.value(word); }
    int lines() const { return m_lines; }

private:
    QByteArray m_rest;
    QMap<QByteArray, QVector<int>> m_values;
    int m_lines = 0;
};

/// A busyprocess that is killed or ended by the test.
class Worker final
{
public:
    explicit Worker(const QStringList &arguments)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(BUSY_PROCESS, arguments);
        if (!m_process.waitForStarted())
            qFatal("%s", qPrintable(m_process.errorString()));
    }
    bool waitForLines(int count)
    {
        while (m_reports.lines() < count) {
            if (!m_process.waitForReadyRead(30000))
                return false;
            m_reports.add(m_process.readAllStandardOutput());
        }
        return true;
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
        m_reports.add(m_process.readAllStandardOutput());
    }
    /// Lets it finish its work; true if it ended with exit code 0.
    bool end()
    {
        m_process.closeWriteChannel();
        const bool isOver = m_process.waitForFinished(60000);
        m_reports.add(m_process.readAllStandardOutput());
        return isOver && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    const Reports &reports() const { return m_reports; }

private:
    QProcess m_process;
    Reports m_reports;
};

} // namespace

/// What the library has announced is in the file: when its process is killed, and when other processes work
/// on the same file.
class TestManyProcesses : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void aKilledProcessLosesNothingThatWasAnnounced_data() { addJournalRows(); }
    void aKilledProcessLosesNothingThatWasAnnounced();
    void processesShareOneFile_data() { addJournalRows(); }
    void processesShareOneFile();

private:
    static void addJournalRows();
    QVector<int> stored(const QString &statement) const;
    QString path() { return home().databasePath(); }

    std::unique_ptr<TestDatabase> m_database;
};

void TestManyProcesses::init()
{
    GarageTest::init();
    m_database = createDatabase();
    for (int id = 1; id <= 3; ++id)
        m_database->addCar(id, QString::number(id), "Вихрь");
    m_database->addOperation(1, "Замена масла");
    m_database->addLimit("Вихрь", 1, 0, 0, 10);
}

void TestManyProcesses::cleanup()
{
    m_database.reset();
    GarageTest::cleanup();
}

QVector<int> TestManyProcesses::stored(const QString &statement) const
{
    QVector<int> values;
    QSqlQuery query = m_database->exec(statement);
    while (query.next())
        values.append(query.value(0).toInt());
    return values;
}

void TestManyProcesses::addJournalRows()
{
    QTest::addColumn<QString>("journal");
    QTest::newRow("rollback journal") << "DELETE";
    QTest::newRow("write-ahead log") << "WAL";
}

void TestManyProcesses::aKilledProcessLosesNothingThatWasAnnounced()
{
    QFETCH(QString, journal);
    m_database->exec("PRAGMA journal_mode=" + journal);
    const int kills = fromEnvironment("GARAGE_KILLS", 8);
    QRandomGenerator random(20261121);
    int firstId = 1;
    int archived = 0;
    int services = 0;
    int deletions = 0;
    QSet<int> deleted;
    for (int round = 0; round < kills; ++round) {
        QStringList arguments {"module", path(), QString::number(firstId)};
        const bool isDeleting = round % 4 != 3;
        if (isDeleting)
            arguments.append("deleting");
        Worker worker(arguments);
        QVERIFY(worker.waitForLines(1 + int(random.bounded(12u))));
        QThread::usleep(random.bounded(8000u)); // anywhere between two announcements
        worker.kill();
        const Reports &reports = worker.reports();

        QCOMPARE(m_database->rows("PRAGMA integrity_check"), QStringList("ok"));
        for (int id : reports.of("deleted"))
            deleted.insert(id);
        const QVector<int> remoteIds = stored("SELECT remote_id FROM maintainance WHERE remote_id>0");
        const auto fromThisRound =
            std::count_if(remoteIds.cbegin(), remoteIds.cend(), [firstId](int id) { return id >= firstId; });
        if (!isDeleting)
            QCOMPARE(fromThisRound % batchSize, 0); // a batch is stored as a whole or not at all
        // The deletion that was under way may be stored though it was not announced.
        int missing = 0;
        for (int id : reports.of("archived")) {
            QVERIFY2(remoteIds.count(id) <= 1, qPrintable(QString::number(id)));
            missing += !deleted.contains(id) && !remoteIds.contains(id);
        }
        const int underWay = int(reports.of("deleting").size() - reports.of("deleted").size());
        QVERIFY2(missing <= underWay, qPrintable(QString("%1 missing").arg(missing)));
        for (int id : qAsConst(deleted))
            QVERIFY2(!remoteIds.contains(id), qPrintable(QString::number(id)));
        const QVector<int> comments = stored("SELECT comment FROM maintainance WHERE remote_id IS NULL");
        for (int comment : reports.of("service"))
            QVERIFY2(comments.count(comment) == 1, qPrintable(QString::number(comment)));

        archived += int(reports.of("archived").size());
        services += int(reports.of("service").size());
        deletions += int(reports.of("deleted").size());
        firstId += idsPerRound;
        if (round % 20 == 19)
            m_database->exec("DELETE FROM maintainance WHERE remote_id<?", {firstId - 2 * idsPerRound});
    }
    qInfo("%d kills, %s: %d records archived, %d services and %d deletions announced, none missing", kills,
          qPrintable(journal), archived, services, deletions);
    QVERIFY(archived > kills);
    QVERIFY(services > 0);
    QVERIFY(deletions > 0);
}

void TestManyProcesses::processesShareOneFile()
{
    QFETCH(QString, journal);
    m_database->exec("PRAGMA journal_mode=" + journal);
    const QString module = "module";
    Worker first({module, path(), "1"});
    Worker second({module, path(), "1000001"});
    Worker laps({"laps", path()});
    Worker reader({"reader", path()});
    const QVector<Worker *> workers {&first, &second, &laps, &reader};

    QElapsedTimer timer;
    timer.start();
    const int seconds = fromEnvironment("GARAGE_CONTENTION_SECONDS", 3);
    for (int round = 1; timer.elapsed() < seconds * 1000; ++round) {
        for (Worker *worker : workers)
            QVERIFY(worker->waitForLines(round));
    }
    for (Worker *worker : workers)
        QVERIFY(worker->end());

    QVector<int> archived = first.reports().of("archived") + second.reports().of("archived");
    std::sort(archived.begin(), archived.end());
    QCOMPARE(stored("SELECT remote_id FROM maintainance WHERE remote_id>0 ORDER BY remote_id"), archived);
    QVector<int> services = first.reports().of("service") + second.reports().of("service");
    std::sort(services.begin(), services.end());
    QVector<int> comments = stored("SELECT comment FROM maintainance WHERE remote_id IS NULL");
    std::sort(comments.begin(), comments.end());
    QCOMPARE(comments, services);
    const int lapCount = 3 * int(laps.reports().of("laps").size());
    QCOMPARE(m_database->value("SELECT count(*) FROM laps").toInt(), lapCount);
    QCOMPARE(reader.reports().of("torn").size(), 0);
    QVERIFY(reader.reports().of("whole").size() > 0);
    QCOMPARE(m_database->rows("PRAGMA integrity_check"), QStringList("ok"));
    qInfo("%d s, %s: %d remote records, %d services, %d laps, %d looks at whole batches", seconds,
          qPrintable(journal), int(archived.size()), int(services.size()), lapCount,
          int(reader.reports().of("whole").size()));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestManyProcesses)
#include "tst_manyprocesses.moc"
