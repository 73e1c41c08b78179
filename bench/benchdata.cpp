#include "bench/benchdata.h"

#include "bench/plainsqlite.h"
#include "data/garagedatabase.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPair>
#include <QVector>

#include <random>

namespace {

constexpr int carModels = 6;
constexpr int people = 25;
constexpr int lapMs = 36000;
constexpr int lapsPerRun = 12;
constexpr qint64 secondsPerDay = 24 * 3600;
constexpr qint64 seasonSeconds = 365 * secondsPerDay;

class Generator final
{
public:
    explicit Generator(PlainSqlite &database, const BenchShape &shape) : m_database(database), m_shape(shape)
    {
    }

    /// Takes the laps from a file that has the same ones, if there is one: it is faster.
    void fill(const QByteArray &lapsFile)
    {
        const bool hasLaps = !lapsFile.isEmpty();
        if (hasLaps)
            m_database.exec(QByteArray("ATTACH '" + lapsFile + "' AS made").constData());
        m_database.exec("BEGIN");
        addNames();
        addLimits();
        addRecords();
        if (hasLaps)
            m_database.exec("INSERT INTO laps SELECT * FROM made.laps");
        else
            addLaps();
        m_database.exec("COMMIT");
    }

private:
    int below(int bound) { return below(bound, m_random); }
    static int below(int bound, std::mt19937 &random) { return int(random() % quint32(bound)); }

    static QByteArray utc(qint64 secondOfSeason, const char *format)
    {
        const QDateTime start(QDate(2025, 11, 21), QTime(0, 0), Qt::UTC);
        return start.addSecs(secondOfSeason).toString(QLatin1String(format)).toLatin1();
    }

    static void bind(sqlite3_stmt *statement, int place, const QByteArray &text)
    {
        sqlite3_bind_text(statement, place, text.constData(), int(text.size()), SQLITE_TRANSIENT);
    }

    static QByteArray modelOf(int car) { return "Модель " + QByteArray::number(car % carModels); }

    void addNames()
    {
        const auto cars = m_database.prepare("INSERT INTO cars VALUES (?,?,?)");
        for (int car = 1; car <= m_shape.cars; ++car) {
            sqlite3_bind_int(cars.get(), 1, car);
            bind(cars.get(), 2, QByteArray::number(car));
            bind(cars.get(), 3, modelOf(car));
            m_database.write(cars.get());
        }
        const auto operations = m_database.prepare("INSERT INTO service_operations VALUES (?,?)");
        for (int operation = 1; operation <= m_shape.operations; ++operation) {
            sqlite3_bind_int(operations.get(), 1, operation);
            bind(operations.get(), 2, "Операция " + QByteArray::number(operation));
            m_database.write(operations.get());
        }
        const auto persons = m_database.prepare("INSERT INTO personal VALUES (?,?,'Иван','Петрович')");
        for (int person = 1; person <= people; ++person) {
            sqlite3_bind_int(persons.get(), 1, person);
            bind(persons.get(), 2, "Механик" + QByteArray::number(person));
            m_database.write(persons.get());
        }
    }

    void addLimits()
    {
        const auto limits = m_database.prepare("INSERT INTO service_reglament VALUES (?,?,?,?,?)");
        for (int model = 0; model < carModels; ++model) {
            for (int operation = 1; operation <= m_shape.operations; ++operation) {
                bind(limits.get(), 1, modelOf(model));
                sqlite3_bind_int(limits.get(), 2, operation);
                sqlite3_bind_int(limits.get(), 3, below(200) * 3600);
                sqlite3_bind_int(limits.get(), 4, below(500));
                sqlite3_bind_int(limits.get(), 5, below(2000));
                m_database.write(limits.get());
            }
        }
    }

    QByteArray shortComment()
    {
        return below(5) == 0 ? "Замечание " + QByteArray::number(below(1000)) : QByteArray();
    }

    QByteArray longComment()
    {
        static constexpr const char *words[] = {"масло", "заменено",  "цепь", "натянута", "стук",
                                                "слева", "проверить", "на",   "ходу",     "Rotax"};
        QByteArrayList lines;
        for (int line = below(m_shape.commentLines); line >= 0; --line) {
            QByteArrayList text;
            for (int word = below(9); word >= 0; --word)
                text.append(words[below(10)]);
            lines.append(text.join(' '));
        }
        return lines.join('\n');
    }

    void makeNewestCommentHuge()
    {
        const auto huge = m_database.prepare("UPDATE maintainance SET comment=? WHERE id=(SELECT id FROM "
                                             "maintainance ORDER BY operation_time DESC LIMIT 1)");
        const QByteArray text = "Стук слева на ходу. ";
        bind(huge.get(), 1, text.repeated(m_shape.hugeComment / int(text.size())));
        m_database.write(huge.get());
    }

    qint64 secondOfRecord(bool isLatest)
    {
        const qint64 recent = qint64(m_shape.serviceDays) * secondsPerDay;
        const qint64 random = qint64(m_random());
        return isLatest ? seasonSeconds - 1 - random % recent : random % (seasonSeconds - recent);
    }

    /// Every operation of every car in turn, so that each pair is recorded if there are records enough.
    void addRecords()
    {
        const auto records = m_database.prepare(
            "INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,comment,operation_state,"
            "remote_id) VALUES (?,?,?,?,?,?,?)");
        for (int record = 0; record < m_shape.records; ++record) {
            const int pairs = m_shape.cars * m_shape.operations;
            const int slot = record % pairs;
            const bool isLatest = m_shape.serviceDays > 0 && record < pairs;
            const bool isOpen = below(50) == 0;
            sqlite3_bind_int(records.get(), 1, 1 + slot / m_shape.operations);
            const bool isComplaint = below(40) == 0 && m_shape.serviceDays == 0;
            sqlite3_bind_int(records.get(), 2, isComplaint ? -1 : 1 + slot % m_shape.operations);
            bind(records.get(), 3,
                 utc(secondOfRecord(isLatest),
                     record % 4 == 0 ? "yyyy-MM-ddThh:mm" : "yyyy-MM-ddThh:mm:ss.zzzZ"));
            sqlite3_bind_int(records.get(), 4, 1 + below(people));
            bind(records.get(), 5, m_shape.commentLines > 0 ? longComment() : shortComment());
            sqlite3_bind_int(records.get(), 6, isOpen ? 0 : 1);
            if (below(3) == 0)
                sqlite3_bind_int(records.get(), 7, record);
            else
                sqlite3_bind_null(records.get(), 7);
            m_database.write(records.get());
        }
        if (m_shape.hugeComment > 0)
            makeNewestCommentHuge();
    }

    void addLaps()
    {
        const auto laps =
            m_database.prepare("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) "
                               "VALUES (?,?,strftime('%Y-%m-%dT%H:%M:%S.000Z',1763683200+?,'unixepoch'),?)");
        for (int lap = 0; lap < m_shape.olderLaps + m_shape.laps; ++lap) {
            const int round = lap / m_shape.cars;
            sqlite3_bind_int(laps.get(), 1, 1 + lap % m_shape.cars);
            sqlite3_bind_int(laps.get(), 2, round / lapsPerRun);
            sqlite3_bind_int64(laps.get(), 3, seasonSeconds * (lap - m_shape.olderLaps) / m_shape.laps);
            sqlite3_bind_int(laps.get(), 4, lapMs + below(9000, m_lapRandom));
            m_database.write(laps.get());
        }
    }

    PlainSqlite &m_database;
    const BenchShape m_shape;
    std::mt19937 m_random {20261121};
    std::mt19937 m_lapRandom {20261121}; ///< so that the laps do not depend on the other tables
};

/// The file of a shape with the same laps that this program has made and that still exists, or empty.
QByteArray fileWithLapsOf(const BenchShape &shape, const QVector<QPair<BenchShape, QString>> &made)
{
    for (const auto &[other, file] : made) {
        const bool isSame =
            other.cars == shape.cars && other.laps == shape.laps && other.olderLaps == shape.olderLaps;
        if (isSame && QFileInfo::exists(file))
            return QFile::encodeName(file);
    }
    return {};
}

} // namespace

BenchHome::BenchHome(const BenchShape &shape)
    : m_path(QDir::tempPath() + QLatin1String("/garage-bench/") + QLatin1String(shape.name))
{
    static QVector<QPair<BenchShape, QString>> made;
    enter();
    const QString file = garageDatabasePath();
    if (QFileInfo::exists(file))
        return;
    QDir().mkpath(QFileInfo(file).path());
    const QString unfinished = file + QLatin1String(".new");
    QFile::remove(unfinished);
    {
        PlainSqlite database(QFile::encodeName(unfinished));
        database.exec("PRAGMA synchronous=OFF");
        QFile schema(QStringLiteral(GARAGE_SCHEMA_FILE));
        if (!schema.open(QIODevice::ReadOnly))
            qFatal("No schema");
        database.exec(schema.readAll().constData());
        Generator(database, shape).fill(fileWithLapsOf(shape, made));
    }
    if (!QFile::rename(unfinished, file))
        qFatal("Cannot make %s", qPrintable(file));
    made.append({shape, file});
}

void BenchHome::enter() const
{
    qputenv("HOME", QFile::encodeName(m_path));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_path));
}

QByteArray BenchHome::databasePath() const
{
    enter();
    return QFile::encodeName(garageDatabasePath());
}
