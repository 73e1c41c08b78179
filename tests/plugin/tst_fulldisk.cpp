#include "support/garageatwork.h"
#include "support/garagetest.h"
#include "support/promises.h"

#include <QFile>

namespace {

constexpr int defaultCycles = 6;
constexpr int actionsOnFullDisk = 8;
constexpr int actionsWithRoom = 8;

int fromEnvironment(const char *name, int usual)
{
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : usual;
}

/// The disk that on-small-disk.sh has mounted.
class SmallDisk final
{
public:
    static bool isMounted() { return !path().isEmpty(); }

    /// Leaves room for that many pages.
    void fill(int freePages)
    {
        QFile filler(path() + "/filler");
        const QByteArray page(4096, 'x');
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("%s", qPrintable(filler.errorString()));
        while (filler.write(page) == page.size()) { }
        filler.resize(qMax<qint64>(0, filler.size() - freePages * page.size()));
        m_fillers.append(filler.fileName());
    }
    /// No file can be created, though there is room in those that exist.
    void useUpFiles()
    {
        for (int i = 0;; ++i) {
            QFile filler(path() + QString("/filler%1").arg(i));
            if (!filler.open(QIODevice::WriteOnly))
                return;
            m_fillers.append(filler.fileName());
        }
    }
    void empty()
    {
        for (const QString &filler : qAsConst(m_fillers))
            QFile::remove(filler);
        m_fillers.clear();
    }
    bool isFull() const { return !m_fillers.isEmpty(); }

private:
    static QString path() { return qEnvironmentVariable("GARAGE_SMALL_DISK"); }

    QStringList m_fillers;
};

} // namespace

/// The finished library on a disk that is full from time to time: what it says to be archived is stored, the
/// file stays intact, and everything goes on when there is room again.
class TestFullDisk : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void everythingGoesOnWhenThereIsRoomAgain_data();
    void everythingGoesOnWhenThereIsRoomAgain();

private:
    void runCycle(GarageAtWork &garage, bool usesUpFiles);
    void takeNote(const QByteArray &note);
    bool isTrue(const QByteArray &note) const;
    void check(const GarageAtWork &garage);
    Promises::Stored stored() const;

    QRandomGenerator m_random;
    SmallDisk m_disk;
    std::unique_ptr<TestDatabase> m_database;
    QVector<QByteArray> m_notes;
    QHash<QByteArray, int> m_announced; ///< by verb
    QHash<QByteArray, int> m_notStored; ///< of the announced ones
    int m_refused = 0; ///< remote records that were not archived on the full disk
};

void TestFullDisk::init()
{
    GarageTest::init();
    if (!SmallDisk::isMounted())
        QSKIP("A disk of its own cannot be mounted here (unshare --map-root-user --mount).");
    m_notes.clear();
    m_announced.clear();
    m_notStored.clear();
    m_refused = 0;
}

void TestFullDisk::cleanup()
{
    m_disk.empty();
    m_database.reset();
    GarageTest::cleanup();
}

void TestFullDisk::everythingGoesOnWhenThereIsRoomAgain_data()
{
    QTest::addColumn<QString>("journal");
    QTest::addColumn<bool>("usesUpFiles");
    QTest::newRow("rollback journal") << "DELETE" << false;
    QTest::newRow("rollback journal, which cannot be created") << "DELETE" << true;
    QTest::newRow("write-ahead log") << "WAL" << false;
}

void TestFullDisk::everythingGoesOnWhenThereIsRoomAgain()
{
    QFETCH(QString, journal);
    QFETCH(bool, usesUpFiles);
    const auto seed = quint32(fromEnvironment("GARAGE_DISK_SEED", 1));
    const int seconds = fromEnvironment("GARAGE_DISK_SECONDS", 0);
    m_random.seed(seed);
    m_database = createDatabase();
    m_database->exec("PRAGMA journal_mode=" + journal);
    GarageAtWork::prepare(*m_database);
    GarageAtWork garage(*m_database, seed, [this](const QByteArray &note) { takeNote(note); });

    QElapsedTimer timer;
    timer.start();
    int cycles = 0;
    for (; cycles < defaultCycles || timer.elapsed() < seconds * 1000; ++cycles) {
        runCycle(garage, usesUpFiles);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QString("cycle %1").arg(cycles)));
    }
    garage.end();
    for (const char *verb : {"archived", "service", "deleted", "operations", "laps"})
        qInfo("%d cycles: %d times \"%s\", %d times of something not stored", cycles, m_announced.value(verb),
              verb, m_notStored.value(verb));
    qInfo("%d records of the remote side were refused and sent again", m_refused);
    QVERIFY(m_refused > 0);
    for (const char *verb : {"archived", "operations", "laps"})
        QCOMPARE(m_notStored.value(verb), 0);
}

void TestFullDisk::runCycle(GarageAtWork &garage, bool usesUpFiles)
{
    if (usesUpFiles)
        m_disk.useUpFiles();
    else
        m_disk.fill(int(m_random.bounded(4u)));
    for (int i = 0; i < actionsOnFullDisk; ++i)
        garage.act();
    QVERIFY(garage.settle());
    check(garage);
    m_refused += garage.unarchived();

    m_disk.empty();
    garage.sendUnarchived();
    QVERIFY(garage.settle());
    QCOMPARE(garage.unarchived(), 0);
    const int announced = garage.announcements();
    for (int i = 0; i < actionsWithRoom || garage.announcements() == announced; ++i)
        garage.act();
    QVERIFY(garage.settle());
    check(garage);
}

/// The module announces services and deletions also if their write has failed.
void TestFullDisk::takeNote(const QByteArray &note)
{
    const QByteArray verb = note.split(' ').first();
    ++m_announced[verb];
    if (isTrue(note)) {
        m_notes.append(note);
        return;
    }
    ++m_notStored[verb];
    QVERIFY2(m_disk.isFull(), note.constData());
}

bool TestFullDisk::isTrue(const QByteArray &note) const
{
    QList<QByteArray> words = note.split(' ');
    const QByteArray verb = words.takeFirst();
    if (verb == "service")
        return stored().comments.contains(words.first());
    if (verb == "deleted")
        return !stored().comments.contains(words.first());
    if (verb == "operations")
        return stored().operations == words.join(' ');
    return true;
}

void TestFullDisk::check(const GarageAtWork &garage)
{
    const Promises::Stored now = stored();
    Promises promises(m_notes);
    for (int i = 0; i < m_notes.size(); ++i)
        promises.advance();
    QCOMPARE(promises.faults(now), QStringList());
    QVERIFY2(promises.broken(now).isEmpty(),
             qPrintable(promises.broken(now).join(", ") + "; stored: " + now.operations));
    QCOMPARE(promises.missingRuns(now), 0);
    QSet<QByteArray> shown = garage.shownComments();
    for (const QByteArray &comment : now.comments) {
        if (!comment.startsWith("complaint"))
            QVERIFY2(shown.remove(comment), comment.constData());
    }
    shown.remove({}); // complaints
    QCOMPARE(shown, QSet<QByteArray>());
}

Promises::Stored TestFullDisk::stored() const
{
    return Promises::stored([this](const char *statement) {
        QList<QByteArray> rows;
        for (const QString &row : m_database->rows(statement))
            rows.append(row.toUtf8());
        return rows;
    });
}

GARAGE_TEST(TestFullDisk)
#include "tst_fulldisk.moc"
