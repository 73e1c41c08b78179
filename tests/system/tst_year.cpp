#include "opentrack.h"
#include "support/garagetest.h"
#include "support/resources.h"
#include "support/userinput.h"

#include "host/database/hostdatabase.h"
#include "host/fleet/personstore.h"
#include "host/sample/samplecatalogue.h"

#include <QFileInfo>

#include <malloc.h>

#include <algorithm>

namespace {

constexpr int defaultDays = 4;
constexpr int openingDays = 250; // of a year
constexpr int daysOfYear = 365;
constexpr int month = 21; // opening days
constexpr int karts = 60;
constexpr int operations = 12;
constexpr int people = 4;
constexpr int leisure = 3; // how much longer limits are than those of the sample data
constexpr int timedReloads = 5;
constexpr qint64 kibibyte = 1024;
constexpr qint64 mebibyte = 1024 * kibibyte;

/// GARAGE_YEAR_DAYS makes it longer than the suite's share.
int days()
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue("GARAGE_YEAR_DAYS", &isNumber);
    return isNumber ? number : defaultDays;
}

/// Opening days are spread over a year that ends yesterday.
QDate dateOf(int day)
{
    const int opening = std::max(days(), openingDays);
    return QDate::currentDate().addDays(-1 - (days() - 1 - day) * daysOfYear / opening);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The largest values of the days from `begin` to before `end`.
Resources largest(const std::vector<Resources> &days, size_t begin, size_t end)
{
    Resources most {0, 0, 0, 0};
    for (size_t day = begin; day < end; ++day) {
        most.heapBytes = std::max(most.heapBytes, days[day].heapBytes);
        most.residentBytes = std::max(most.residentBytes, days[day].residentBytes);
        most.threads = std::max(most.threads, days[day].threads);
        most.handles = std::max(most.handles, days[day].handles);
    }
    return most;
}

} // namespace

/// A year at a track: all sides act, the host is started anew each day, and an independent ledger knows what
/// must be shown, stored and announced.
class TestYear final : public GarageTest
{
    Q_OBJECT
private slots:
    void theBooksOfAYearAgreeWithTheLedger();

private:
    void openTrack();
    void addKarts(HostConnection &connection);
    void addPeople(HostConnection &connection);
    void addOperations(HostConnection &connection);
    void live(OpenTrack &track, int day);
    void actInTurn(OpenTrack &track);
    void actRarely(OpenTrack &track);
    void endMonth(OpenTrack &track, int day);
    void checkFlatness() const;

    QRandomGenerator m_random {2026};
    TrackLedger m_ledger {days()};
    std::vector<Resources> m_evenings; // after the host has ended
    int m_turn = 0; // of the actions in the window
};

void TestYear::openTrack()
{
    const DataFolder documents = DataFolder::userDocuments();
    QVERIFY(HostDatabase::prepare(documents));
    HostConnection connection(documents.databasePath());
    addKarts(connection);
    addPeople(connection);
    addOperations(connection);
}

void TestYear::addKarts(HostConnection &connection)
{
    const QVector<SampleCatalogue::Model> models = SampleCatalogue::models();
    for (int id = 1; id <= karts; ++id) {
        const TrackLedger::Kart kart {QString::number(id), models.at(id % models.size()).name, true};
        QVERIFY(
            connection.exec("INSERT INTO cars (id,num,name) VALUES (?,?,?)", {id, kart.number, kart.model}));
        m_ledger.addKart(kart);
    }
}

void TestYear::addPeople(HostConnection &connection)
{
    PersonStore store(connection);
    for (const SampleCatalogue::Person &person : SampleCatalogue::people().mid(0, people)) {
        const QString code = QString("К%1").arg(m_ledger.personCount());
        QVERIFY(store.store({-1, person.lastName, person.firstName, person.midName, code}));
        m_ledger.addPerson(person.lastName + ' ' + person.firstName + ' ' + person.midName);
    }
}

void TestYear::addOperations(HostConnection &connection)
{
    for (const SampleCatalogue::Operation &operation : SampleCatalogue::operations(operations)) {
        QVERIFY(
            connection.exec("INSERT INTO service_operations (operation_name) VALUES (?)", {operation.name}));
        const int id = m_ledger.addOperation(operation.name);
        const TrackLedger::Limits limits {leisure * operation.timeLimit, leisure * operation.runsLimit,
                                          leisure * operation.lapsLimit};
        for (const QString &model : m_ledger.models()) {
            QVERIFY(connection.exec("INSERT INTO service_reglament VALUES (?,?,?,?,?)",
                                    {model, id, limits.seconds, limits.runs, limits.laps}));
            m_ledger.setLimits(model, id, limits);
        }
    }
}

/// On most days nobody opens the window.
void TestYear::live(OpenTrack &track, int day)
{
    const bool isMonthEnd = (day + 1) % month == 0 || day + 1 == days();
    const bool isShown = day % 3 == 0 || days() <= defaultDays || isMonthEnd;
    track.tickOffUnrecorded();
    track.drive(OpenTrack::Morning);
    track.tickOffDue();
    track.switchKart();
    if (day % 8 == 1)
        track.repeatBatch();
    if (isShown) {
        track.showWindow();
        actInTurn(track);
        actRarely(track);
    }
    track.drive(OpenTrack::Afternoon);
    track.announceRuns();
    if (isMonthEnd)
        endMonth(track, day);
    if (day % 2 == 0)
        track.tickOffLate();
}

void TestYear::actInTurn(OpenTrack &track)
{
    track.recordService();
    switch (++m_turn % 4) {
    case 0:
        track.requestWork();
        break;
    case 1:
        track.complain();
        break;
    case 2:
        track.markDone();
        break;
    default:
        track.deleteRecord();
        break;
    }
}

/// An operation is replaced late: the removed one keeps its limits, and its laps are counted in each reload.
void TestYear::actRarely(OpenTrack &track)
{
    const int turnToReplace = days() <= defaultDays ? 3 : 75; // of about 90
    if (m_turn % 4 == 1)
        track.changeLimits();
    if (m_turn % 6 == 2)
        track.renameOperation();
    if (m_turn == turnToReplace)
        track.replaceOperation();
}

void TestYear::endMonth(OpenTrack &track, int day)
{
    track.compareWindow();
    track.compareFile();
    track.compareRemoteSide();
    std::vector<double> clock;
    std::vector<double> computing;
    for (int i = 0; i < timedReloads; ++i) {
        const OpenTrack::ReloadTime time = track.timeReload();
        clock.push_back(time.clock);
        computing.push_back(time.computing);
    }
    const Resources open = Resources::now();
    // Of the day before: after its end nothing of the module is left.
    const Resources closed = m_evenings.empty() ? open : m_evenings.back();
    qInfo("year,%d,%s,%d,%d,%.1f,%.1f,%.1f,%lld,%lld,%lld,%lld,%d,%d", day + 1,
          qPrintable(dateOf(day).toString(Qt::ISODate)), m_ledger.lapCount(), m_ledger.recordCount(),
          double(QFileInfo(home().databasePath()).size()) / double(mebibyte), median(clock),
          median(computing), open.heapBytes / kibibyte, open.residentBytes / kibibyte,
          closed.heapBytes / kibibyte, closed.residentBytes / kibibyte, closed.threads, closed.handles);
}

void TestYear::theBooksOfAYearAgreeWithTheLedger()
{
    openTrack();
    qInfo("year,day,date,laps,records,file MiB,reload ms,reload computing ms,heap KiB,resident KiB,"
          "closed heap KiB,closed resident KiB,closed threads,closed handles");
    for (int day = 0; day < days(); ++day) {
        {
            OpenTrack track(m_ledger, m_random, dateOf(day));
            live(track, day);
            QCOMPARE(track.findings().join('\n'), QString());
        }
        QVERIFY(allDialogsAnswered());
        takeDebugLines(); // the base keeps them
        malloc_trim(0); // the C library keeps freed memory, more after a busier day
        m_evenings.push_back(Resources::now());
    }
    checkFlatness();
}

/// The first quarter fills caches.
void TestYear::checkFlatness() const
{
    const size_t count = m_evenings.size();
    const Resources early = largest(m_evenings, count / 4, count / 2);
    const Resources late = largest(m_evenings, count - count / 4, count);
    qInfo("second and last quarter, at most: heap %lld and %lld KiB, resident %lld and %lld KiB, threads %d "
          "and %d, handles %d and %d",
          early.heapBytes / kibibyte, late.heapBytes / kibibyte, early.residentBytes / kibibyte,
          late.residentBytes / kibibyte, early.threads, late.threads, early.handles, late.handles);
    QVERIFY(late.heapBytes <= early.heapBytes + mebibyte);
    QVERIFY(late.residentBytes <= early.residentBytes + 16 * mebibyte);
    QVERIFY(late.threads <= early.threads);
    QVERIFY(late.handles <= early.handles);
}

GARAGE_TEST(TestYear)
#include "tst_year.moc"
