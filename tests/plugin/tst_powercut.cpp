#include "support/garageatwork.h"
#include "support/garagetest.h"
#include "support/powercut.h"
#include "support/promises.h"

#include <sqlite3.h>

#include <string_view>

namespace {

constexpr int defaultActions = 32;
constexpr int defaultSeed = 3; // its actions lead to every kind of announcement
constexpr int randomParts = 20;
constexpr char databaseName[] = "ruvalo.sqlite";

int fromEnvironment(const char *name, int usual)
{
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : usual;
}

/// Empty: as the module sets it itself.
QByteArray synchronous;

int keepSynchronous(void *, int action, const char *pragma, const char *value, const char *, const char *)
{
    const bool isSet = action == SQLITE_PRAGMA && qstricmp(pragma, "synchronous") == 0 && value;
    return isSet ? SQLITE_DENY : SQLITE_OK;
}

/// For each new connection of this process. Frequent checkpoints: a short log would never need one.
int prepareConnection(sqlite3 *connection, char **, const void *)
{
    sqlite3_exec(connection, "PRAGMA wal_autocheckpoint=12", nullptr, nullptr, nullptr);
    if (synchronous.isEmpty())
        return SQLITE_OK;
    const QByteArray statement = "PRAGMA synchronous=" + synchronous;
    sqlite3_exec(connection, statement.constData(), nullptr, nullptr, nullptr);
    return sqlite3_set_authorizer(connection, keepSynchronous, nullptr);
}

const auto prepareEachConnection = reinterpret_cast<void (*)()>(prepareConnection);

void write(const PowerCut::Folder &folder, const QTemporaryDir &target)
{
    for (auto file = folder.cbegin(); file != folder.cend(); ++file) {
        QFile copy(target.filePath(QFileInfo(QFile::decodeName(file.key())).fileName()));
        if (!copy.open(QIODevice::WriteOnly) || copy.write(file.value()) != file.value().size())
            qFatal("%s", qPrintable(copy.errorString()));
    }
}

/// Opens a folder with SQLite as after a restart.
class Reader final
{
public:
    Reader() : m_folder(QDir("/dev/shm").exists() ? "/dev/shm/powercut-XXXXXX" : QString()) { }

    Promises::Stored read(const PowerCut::Folder &folder)
    {
        clear();
        write(folder, m_folder);
        const QByteArray path = QFile::encodeName(m_folder.filePath(databaseName));
        sqlite3_open_v2(path.constData(), &m_connection, SQLITE_OPEN_READWRITE, "unix");
        sqlite3_exec(m_connection, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
        const Promises::Stored stored =
            Promises::stored([this](const char *statement) { return select(statement); });
        sqlite3_close(m_connection);
        return stored;
    }

private:
    void clear() const
    {
        QDir folder(m_folder.path());
        for (const QString &name : folder.entryList(QDir::Files))
            folder.remove(name);
    }

    QList<QByteArray> select(const char *statement) const
    {
        const auto append = [](void *rows, int, char **columns, char **) {
            static_cast<QList<QByteArray> *>(rows)->append(columns[0]);
            return 0;
        };
        QList<QByteArray> rows;
        char *message = nullptr;
        if (sqlite3_exec(m_connection, statement, append, &rows, &message) != SQLITE_OK)
            rows.append(message);
        sqlite3_free(message);
        return rows;
    }

    QTemporaryDir m_folder;
    sqlite3 *m_connection = nullptr;
};

size_t hashOf(const PowerCut::Folder &folder)
{
    size_t hash = 0;
    const auto add = [&hash](const QByteArray &bytes) {
        hash = hash * 31 + std::hash<std::string_view> {}({bytes.constData(), size_t(bytes.size())});
    };
    for (auto file = folder.cbegin(); file != folder.cend(); ++file) {
        add(file.key());
        add(file.value());
    }
    return hash;
}

} // namespace

/// What the library has announced is on the disk, not only in the system's memory: its files are recorded
/// while it works, and cut at every point.
class TestPowerCut : public GarageTest
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();

    void announcedRecordsSurviveAPowerCut_data();
    void announcedRecordsSurviveAPowerCut();

private:
    RecordedFiles::History historyOf(const QString &journal, const QByteArray &hostLevel, quint32 seed);
    void cutEverywhere(const RecordedFiles::History &history, quint32 seed);
    void check(const PowerCut::Folder &folder, const Promises &promises, const QString &place);
    QString keep(const PowerCut::Folder &folder) const;
    static QVector<QByteArray> notesOf(const RecordedFiles::History &history);

    QHash<size_t, Promises::Stored> m_stored; ///< by folder
    struct Figures
    {
        int announcements = 0;
        int operations = 0;
        QSet<QByteArray> verbs; ///< of the notes
        int outcomes = 0;
        int folders = 0; ///< different outcomes
        int damaged = 0;
        int lossy = 0; ///< outcomes that contradict an announcement
        int mostLost = 0; ///< announcements in one of them
        int withoutRuns = 0; ///< outcomes that lack runs of the host
        int mostRunsLost = 0;
        bool keepsDamage = true;
        QString firstDamage;
        QString firstLoss;
    };
    Figures m_figures;
};

void TestPowerCut::initTestCase()
{
    RecordedFiles::install();
    QCOMPARE(sqlite3_auto_extension(prepareEachConnection), SQLITE_OK);
}

void TestPowerCut::cleanup()
{
    m_stored.clear();
    GarageTest::cleanup();
}

void TestPowerCut::announcedRecordsSurviveAPowerCut_data()
{
    QTest::addColumn<QString>("journal");
    QTest::addColumn<QByteArray>("level"); // of all connections; empty: the module's is its own
    QTest::addColumn<QByteArray>("hostLevel");
    QTest::addColumn<int>("lost"); // announcements that one cut may undo
    QTest::addColumn<int>("lostRuns"); // that the host stored
    QTest::addColumn<bool>("damages");
    constexpr int any = 1000000;
    const auto add = [](const char *name, const char *journal, const char *level, const char *hostLevel,
                        int lost, int lostRuns, bool damages = false) {
        QTest::newRow(name) << QString(journal) << QByteArray(level) << QByteArray(hostLevel) << lost
                            << lostRuns << damages;
    };
    add("rollback journal, host with EXTRA", "DELETE", "", "EXTRA", 0, 0);
    add("rollback journal, host with FULL", "DELETE", "", "FULL", 0, 1);
    add("rollback journal, all with FULL", "DELETE", "FULL", "FULL", 1, 1);
    add("rollback journal, all with NORMAL", "DELETE", "NORMAL", "NORMAL", 1, 1, true);
    add("write-ahead log, host with FULL", "WAL", "", "FULL", 0, 0);
    add("write-ahead log, host with NORMAL", "WAL", "", "NORMAL", 0, any);
    add("write-ahead log, all with FULL", "WAL", "FULL", "FULL", 0, 0);
    add("write-ahead log, all with NORMAL", "WAL", "NORMAL", "NORMAL", any, any);
}

void TestPowerCut::announcedRecordsSurviveAPowerCut()
{
    QFETCH(QString, journal);
    QFETCH(QByteArray, level);
    QFETCH(QByteArray, hostLevel);
    QFETCH(int, lost);
    QFETCH(int, lostRuns);
    QFETCH(bool, damages);
    synchronous = level;
    m_figures = {};
    m_figures.keepsDamage = !damages;
    const int firstSeed = fromEnvironment("GARAGE_POWER_SEED", defaultSeed);
    const int seeds = fromEnvironment("GARAGE_POWER_SEEDS", 1);
    for (int seed = firstSeed; seed < firstSeed + seeds; ++seed)
        cutEverywhere(historyOf(journal, hostLevel, quint32(seed)), quint32(seed));

    qInfo("%d announcements, %d operations on the files, %d outcomes of power cuts, %d of them different",
          m_figures.announcements, m_figures.operations, m_figures.outcomes, m_figures.folders);
    qInfo("%d damaged. %s", m_figures.damaged, qPrintable(m_figures.firstDamage));
    qInfo("%d contradict an announcement, at most %d at once. %s", m_figures.lossy, m_figures.mostLost,
          qPrintable(m_figures.firstLoss));
    qInfo("%d lack runs of the host, at most %d", m_figures.withoutRuns, m_figures.mostRunsLost);
    QCOMPARE(m_figures.verbs,
             QSet<QByteArray>({"archived", "batch", "changing", "deleted", "laps", "operations", "service"}));
    QVERIFY(m_figures.mostLost <= lost);
    QVERIFY(m_figures.mostRunsLost <= lostRuns);
    // What is not promised does happen: the cuts are severe enough to show it.
    QCOMPARE(m_figures.damaged > 0, damages);
    QCOMPARE(m_figures.lossy > 0, lost > 0);
    QCOMPARE(m_figures.withoutRuns > 0, lostRuns > 0);
}

RecordedFiles::History TestPowerCut::historyOf(const QString &journal, const QByteArray &hostLevel,
                                               quint32 seed)
{
    QFile::remove(home().databasePath());
    const auto database = createDatabase();
    database->exec("PRAGMA journal_mode=" + journal);
    database->tryExec("PRAGMA synchronous=" + QString::fromLatin1(hostLevel));
    GarageAtWork::prepare(*database);
    database->exec("PRAGMA wal_checkpoint");
    RecordedFiles::start();
    {
        GarageAtWork garage(*database, seed, &RecordedFiles::note);
        const int actions = fromEnvironment("GARAGE_POWER_ACTIONS", defaultActions);
        for (int i = 0; i < actions; ++i)
            garage.act();
        garage.end();
        m_figures.announcements += garage.announcements();
    }
    return RecordedFiles::take();
}

QVector<QByteArray> TestPowerCut::notesOf(const RecordedFiles::History &history)
{
    QVector<QByteArray> notes;
    for (const RecordedFiles::Event &event : history.events) {
        if (event.kind == RecordedFiles::Event::Note)
            notes.append(event.text);
    }
    return notes;
}

void TestPowerCut::cutEverywhere(const RecordedFiles::History &history, quint32 seed)
{
    m_stored.clear();
    m_figures.operations += int(history.events.size());
    PowerCut cut(history);
    const QVector<QByteArray> notes = notesOf(history);
    for (const QByteArray &note : notes)
        m_figures.verbs.insert(note.split(' ').first());
    Promises promises(notes);
    QRandomGenerator random(seed);
    for (int i = 0; i < history.events.size(); ++i) {
        if (history.events.at(i).kind == RecordedFiles::Event::Note)
            promises.advance();
        else
            cut.apply(history.events.at(i));
        const QString place = QString("The first with seed %1 after operation %2: ").arg(seed).arg(i);
        check(cut.withNothingUnsynced(), promises, place);
        if (cut.isCertain())
            continue;
        check(cut.withEverything(), promises, place);
        for (int part = 0; part < randomParts; ++part)
            check(cut.withRandomPart(random), promises, place);
    }
}

void TestPowerCut::check(const PowerCut::Folder &folder, const Promises &promises, const QString &place)
{
    static Reader reader;
    ++m_figures.outcomes;
    const size_t hash = hashOf(folder);
    auto stored = m_stored.constFind(hash);
    if (stored == m_stored.cend()) {
        stored = m_stored.insert(hash, reader.read(folder));
        ++m_figures.folders;
    }
    const QStringList faults = promises.faults(*stored);
    if (!faults.isEmpty()) {
        if (m_figures.damaged++ == 0)
            m_figures.firstDamage = place + faults.join(", ") + keep(folder);
        return;
    }
    const QStringList broken = promises.broken(*stored);
    if (!broken.isEmpty() && m_figures.lossy++ == 0)
        m_figures.firstLoss =
            place + broken.join(", ") + "; operations stored: " + QString::fromUtf8(stored->operations);
    m_figures.mostLost = qMax(m_figures.mostLost, int(broken.size()));
    const int missingRuns = promises.missingRuns(*stored);
    m_figures.withoutRuns += missingRuns > 0;
    m_figures.mostRunsLost = qMax(m_figures.mostRunsLost, missingRuns);
}

/// Saves an outcome that should not be, and says where.
QString TestPowerCut::keep(const PowerCut::Folder &folder) const
{
    if (!m_figures.keepsDamage)
        return {};
    QTemporaryDir kept(QDir::tempPath() + "/damaged-XXXXXX");
    kept.setAutoRemove(false);
    write(folder, kept);
    return ". Kept in " + kept.path();
}

GARAGE_TEST(TestPowerCut)
#include "tst_powercut.moc"
