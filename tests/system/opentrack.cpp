#include "opentrack.h"

#include "support/testdatabase.h"
#include "support/userinput.h"

#include <QAction>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QEventLoop>
#include <QHeaderView>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include <algorithm>
#include <ctime>

namespace {

constexpr int patience = 300000; // milliseconds
constexpr int second = 1000;
constexpr int minute = 60 * second;
constexpr int hour = 60 * minute;
constexpr int kartsPerRun = 10;
constexpr int lapsPerRun = 12;
constexpr int runsPerHalf = 50;
constexpr int runSlot = 390 * second;
constexpr int shortestLap = 29500;
constexpr int longestLap = 32000;
constexpr int otherWorks = 6; // a day, of no operation
constexpr int mostInRepair = 4; // karts
constexpr int mostShown = 1000; // rows of the service log
constexpr int rowsToDelete = 300; // the mechanic deletes none of the older ones

qint64 localMoment(const QDate &date, int atHour)
{
    return QDateTime(date, QTime(atHour, 0)).toMSecsSinceEpoch();
}

int columnOf(const QAbstractItemModel &model, const QString &title)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        if (model.headerData(column, Qt::Horizontal).toString() == title)
            return column;
    }
    qFatal("No column %s", qPrintable(title));
}

/// The cells of a column.
QStringList columnTexts(const QAbstractItemModel &model, const QString &title)
{
    QStringList texts;
    const int column = columnOf(model, title);
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, column).data().toString());
    return texts;
}

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

void enterComment(QDialog &dialog, int comment)
{
    enterText(child<QPlainTextEdit>(dialog, "teComments"), TrackLedger::commentText(comment));
}

} // namespace

OpenTrack::OpenTrack(TrackLedger &ledger, QRandomGenerator &random, const QDate &date)
    : m_ledger(ledger)
    , m_random(random)
    , m_documents(DataFolder::userDocuments())
    , m_host(m_documents, 1)
    , m_recorder(std::make_unique<LapRecorder>(m_documents.databasePath()))
    , m_morning(localMoment(date, 9))
    , m_now(m_morning)
{
    if (!m_host.plugin().load(GARAGE_PLUGIN) || !m_host.remote().prepare())
        qFatal("The host does not start");
    connect(&m_host.plugin(), &PluginHost::received, this, &OpenTrack::handleMessage);
    connect(&m_host.plugin(), &PluginHost::sent, this, [this](const HostMessage &message) {
        if (message.data.value("data").isString())
            m_lastBatch = message;
    });
    connect(m_recorder.get(), &LapRecorder::runSaved, this, [this](int run) { m_savedRun = run; });
    setUpWindow();
    m_host.fleet().sendStartSequence();
    settle();
}

/// The host ends like one whose user closes it at once: what is queued is not awaited.
OpenTrack::~OpenTrack() = default;

void OpenTrack::setUpWindow()
{
    m_host.plugin().send("clicked", {{"key", "show_garage"}});
    m_host.plugin().send("send_settings_dialogs");
    if (!m_window || !m_page)
        qFatal("The plug-in has no window");
    // Each of them ends with a reload, and each reload with one message.
    for (const char *request : {SIGNAL(reloadGarageStats()), SIGNAL(deleteOperation(int, int)),
                                SIGNAL(updateServiceTable(QJsonArray, QJsonArray))})
        connect(m_window, request, this, SLOT(countReload()));
    m_window->resize(800, 500);
}

void OpenTrack::showWindow()
{
    m_window->show();
    m_page->show();
    settle();
}

void OpenTrack::handleMessage(const HostMessage &message)
{
    if (message.event == "insert_tab") {
        m_window = message.widget(QLatin1String("tabWidget"));
    } else if (message.event == "settings_dialog") {
        m_page = message.widget(QLatin1String("settingsPagePtr"));
    } else if (message.event == "update_pending_service") {
        ++m_reloadsTold;
        m_lastStatistics = message;
    }
}

void OpenTrack::settle()
{
    const auto isSettled = [this] {
        return m_reloadsTold == m_reloadsAsked && m_host.remote().store().count(RemoteRecord::Sent) == 0
            && m_host.remote().store().count(RemoteRecord::Waiting) == 0;
    };
    // Between two checks the controllers handle the messages queued for them, which may cause others.
    for (int checks = 0; checks < 2; ++checks) {
        if (!QTest::qWaitFor(isSettled, patience))
            note("settling", QString::number(m_reloadsTold), QString::number(m_reloadsAsked));
        QCoreApplication::processEvents();
    }
    const QJsonObject &data = m_lastStatistics.data;
    compare("status", data["maintainanceStatus"].toArray(), m_ledger.statuses());
    compare("due", data["servicePendingList"].toArray(), m_ledger.pending());
}

void OpenTrack::note(const QString &what, const QString &found, const QString &expected)
{
    const QString moment = TrackLedger::shownTime(m_now);
    m_findings.append(QString("%1 %2: %3 instead of %4").arg(moment, what, found, expected));
}

void OpenTrack::compare(const char *what, const QStringList &found, const QStringList &expected)
{
    if (found.size() != expected.size())
        note(QString("number of ") + what, QString::number(found.size()), QString::number(expected.size()));
    for (int i = 0; i < std::min(found.size(), expected.size()); ++i) {
        if (found.at(i) != expected.at(i)) {
            note(what, found.at(i), expected.at(i));
            return;
        }
    }
}

void OpenTrack::compare(const char *what, const QJsonArray &found, const QJsonArray &expected)
{
    if (found == expected)
        return;
    const auto texts = [](const QJsonArray &array) {
        QStringList lines;
        for (const QJsonValue &value : array)
            lines.append(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
        return lines;
    };
    compare(what, texts(found), texts(expected));
}

void OpenTrack::drive(Half half)
{
    m_now = std::max(m_now, m_morning + hour + (half == Afternoon ? 6 * hour : 0));
    for (int run = 0; run < runsPerHalf; ++run) {
        recordRun(m_now);
        m_now += runSlot;
        m_host.plugin().send("run_closed");
    }
}

void OpenTrack::announceRuns()
{
    m_host.plugin().send("run_saved_to_db");
    settle();
}

std::vector<int> OpenTrack::availableKarts() const
{
    std::vector<int> karts;
    for (int id = 1; id <= m_ledger.kartCount(); ++id) {
        if (m_ledger.kart(id).isAvailable)
            karts.push_back(id);
    }
    return karts;
}

std::vector<int> OpenTrack::chooseKarts()
{
    std::vector<int> karts = availableKarts();
    std::shuffle(karts.begin(), karts.end(), m_random);
    karts.resize(std::min(karts.size(), size_t(kartsPerRun)));
    return karts;
}

void OpenTrack::recordRun(qint64 start)
{
    const int run = m_ledger.startRun();
    QVector<RecordedLap> laps;
    for (const int kart : chooseKarts()) {
        qint64 finished = start;
        for (int lap = 0; lap < lapsPerRun; ++lap) {
            const int milliseconds = m_random.bounded(shortestLap, longestLap);
            finished += milliseconds;
            laps.append({kart, run, finished, milliseconds});
            m_ledger.addLap(kart, run, finished, milliseconds);
        }
    }
    m_recorder->record(laps, {run});
    if (m_savedRun != run)
        note("saved run", QString::number(m_savedRun), QString::number(run));
}

void OpenTrack::enter(QDialog &dialog, TrackLedger::Record &record)
{
    record.time = nextMinute();
    record.comment = m_ledger.newComment();
    child<QDateTimeEdit>(dialog, "deOperationDateTime")
        ->setDateTime(QDateTime::fromMSecsSinceEpoch(record.time));
    auto *people = child<QComboBox>(dialog, "cbPersonal");
    people->setCurrentIndex(below(people->count()));
    record.personId = people->currentData().toInt();
    enterComment(dialog, record.comment);
    press(dialog, QDialogButtonBox::Ok);
}

void OpenTrack::recordService()
{
    const std::vector<Work> due = dueWorks();
    TrackLedger::Record record;
    record.carId = due.empty() ? anyKart() : due[size_t(below(int(due.size())))].carId;
    record.opId = anyOperation();
    const QModelIndex cell = maintenanceCell(record.carId, m_ledger.operations().value(record.opId));
    QTreeView *table = viewInFront(*m_window, "tvMaintainanceTable");
    click(table, cell);
    onNextDialog([&](QDialog &dialog) { enter(dialog, record); });
    QTest::keyClick(table, Qt::Key_Return);
    m_ledger.addRecord(record);
    settle();
}

void OpenTrack::complain()
{
    openRecord(TrackLedger::complaint);
}

void OpenTrack::requestWork()
{
    openRecord(anyOperation());
}

/// In the dialog that the host asks for. The open complaint of the kart is amended instead.
void OpenTrack::openRecord(int opId)
{
    TrackLedger::Record entered;
    entered.carId = anyKart();
    entered.isOpen = true;
    const int known = m_ledger.latest(entered.carId, TrackLedger::complaint);
    const bool isAmended = known != TrackLedger::none && m_ledger.record(known).isOpen;
    entered.opId = isAmended ? TrackLedger::complaint : opId;
    onNextDialog([&](QDialog &dialog) {
        auto *operations = child<QComboBox>(dialog, "cbOperation");
        operations->setCurrentIndex(operations->findData(entered.opId));
        enter(dialog, entered);
    });
    m_host.plugin().send("car_complain", {{"carId", entered.carId}});
    if (isAmended)
        m_ledger.record(known) = entered;
    else
        m_ledger.addRecord(entered);
    settle();
}

/// Of an operation that the dialog offers.
bool OpenTrack::isOpenWork(const TrackLedger::Record &record) const
{
    return record.isOpen
        && (record.opId == TrackLedger::complaint || m_ledger.operations().contains(record.opId));
}

/// The latest open record of the log. The remote side returns it.
void OpenTrack::markDone()
{
    const std::vector<int> journal = m_ledger.journal();
    const auto open = std::find_if(journal.begin(), journal.end(),
                                   [this](int id) { return isOpenWork(m_ledger.record(id)); });
    if (open == journal.end() || open - journal.begin() >= mostShown)
        return;
    TrackLedger::Record record = m_ledger.record(*open);
    click(viewInFront(*m_window, "tvServiceLog"), logCell(*open));
    onNextDialog([&](QDialog &dialog) { enter(dialog, record); });
    child<QAction>(*m_window, "actionDoneOperation")->trigger();
    record.isOpen = false;
    m_ledger.record(*open) = record;
    settle();
}

void OpenTrack::deleteRecord()
{
    const std::vector<int> journal = m_ledger.journal();
    const int id = journal[size_t(below(std::min(rowsToDelete, int(journal.size()))))];
    click(viewInFront(*m_window, "tvServiceLog"), logCell(id));
    onNextDialog(QDialogButtonBox::Yes);
    child<QAction>(*m_window, "actionDeleteMaintainanceItem")->trigger();
    m_ledger.removeRecord(id);
    settle();
}

void OpenTrack::changeLimits()
{
    const QStringList models = m_ledger.models();
    const QString &model = models.at(below(int(models.size())));
    const int opId = anyOperation();
    TrackLedger::Limits limits = m_ledger.limits(model, opId);
    // A fifth more or less; hours are entered with one decimal.
    const int percent = below(2) == 0 ? 80 : 120;
    limits = {limits.seconds * percent / 100 / 360 * 360, limits.runs * percent / 100,
              limits.laps * percent / 100};
    enterLimits(model, opId, limits);
    announceRuns();
}

void OpenTrack::enterLimits(const QString &model, int opId, const TrackLedger::Limits &limits)
{
    QTreeView *schedule = viewInFront(*m_page, "tvServiceReglament");
    const int row = int(columnTexts(*schedule->model(), "Модель").indexOf(model));
    const int column = columnOf(*schedule->model(), m_ledger.operations().value(opId));
    onNextDialog([&](QDialog &dialog) {
        enterText(child<QLineEdit>(dialog, "leTime"), QString::number(limits.seconds / 3600.0, 'f', 1));
        enterText(child<QLineEdit>(dialog, "leRunsCount"), QString::number(limits.runs));
        enterText(child<QLineEdit>(dialog, "leLapsCount"), QString::number(limits.laps));
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick(schedule, schedule->model()->index(row, column));
    m_ledger.setLimits(model, opId, limits);
}

void OpenTrack::renameOperation()
{
    QTreeView *operations = operationsInFront();
    const int row = below(int(m_ledger.operations().size()));
    const int id = m_ledger.operations().keys().at(row);
    const QString name = m_ledger.operations().value(id).section(' ', 0, 1)
        + QString(" %1").arg(QDateTime::fromMSecsSinceEpoch(m_now).toString("dd.MM"));
    doubleClick(operations, operations->model()->index(row, 1));
    enterIntoEditor(*operations, name);
    m_ledger.renameOperation(id, name);
    announceRuns();
}

void OpenTrack::replaceOperation()
{
    QTreeView *operations = operationsInFront();
    const int oldId = m_ledger.operations().firstKey();
    click(operations, operations->model()->index(0, 1));
    onNextDialog(QDialogButtonBox::Yes);
    child<QAction>(*m_page, "actionRemoveOperation")->trigger();
    m_ledger.removeOperation(oldId);

    const QString name = "Проверка датчика";
    operationsInFront(); // the question was
    child<QAction>(*m_page, "actionAddOperation")->trigger();
    enterIntoEditor(*operations, name);
    const int newId = m_ledger.addOperation(name);
    for (const QString &model : m_ledger.models())
        enterLimits(model, newId, m_ledger.limits(model, oldId));
    announceRuns();
}

/// In the active window, as for a user.
QTreeView *OpenTrack::operationsInFront()
{
    m_page->activateWindow();
    if (!QTest::qWaitForWindowActive(m_page))
        note("page", "not active", "active");
    return viewInFront(*m_page, "tvServiceOperations");
}

std::vector<OpenTrack::Work> OpenTrack::dueWorks() const
{
    std::vector<Work> works;
    for (const QJsonValue &value : m_ledger.pending()) {
        const int opId = value["opId"].toInt();
        if (opId == TrackLedger::complaint || m_ledger.operations().contains(opId))
            works.push_back({value["carId"].toInt(), opId, value["localId"].toInt()});
    }
    return works;
}

void OpenTrack::tickOffUnrecorded()
{
    std::vector<Work> works;
    for (const int opId : m_ledger.operations().keys()) {
        for (int car = 1; car <= m_ledger.kartCount(); ++car) {
            if (m_ledger.latest(car, opId) == TrackLedger::none)
                works.push_back({car, opId, TrackLedger::none});
        }
    }
    if (works.empty())
        return;
    tickOff(works);
    settle();
}

void OpenTrack::tickOffDue()
{
    std::vector<Work> works = dueWorks();
    std::shuffle(works.begin(), works.end(), m_random);
    works.resize(works.size() * 3 / 4);
    for (int count = 0; count < otherWorks; ++count) {
        const int kart = anyKart();
        const auto isListed = [kart](const Work &work) {
            return work.carId == kart && work.opId == TrackLedger::complaint;
        };
        if (std::none_of(works.begin(), works.end(), isListed))
            works.push_back({kart, TrackLedger::complaint, TrackLedger::none});
    }
    tickOff(works);
    settle();
}

void OpenTrack::tickOffLate()
{
    std::vector<Work> works = dueWorks();
    works.resize(works.size() / 2);
    tickOff(works);
}

/// By one person, over the service or a remote control.
void OpenTrack::tickOff(const std::vector<Work> &works)
{
    const QVector<HostPerson> &people = m_host.fleet().people().list();
    const HostPerson &by = people.at(below(int(people.size())));
    QVector<DoneWork> done;
    std::vector<int> ids;
    for (const Work &work : works) {
        ids.push_back(storeWork(work, by.id));
        const TrackLedger::Record &record = m_ledger.record(ids.back());
        done.append({work.carId, work.opId, work.localId, TrackLedger::fileTime(record.time),
                     TrackLedger::commentText(record.comment), QString()});
    }
    m_lastBatch = HostMessage();
    const bool isService = below(2) == 0;
    m_host.remote().setSendsAtOnce(isService);
    const auto recorded = m_host.remote().recordWorks(done, by);
    if (!recorded) {
        note("records of the remote side", m_host.remote().errorText(), "none");
        return;
    }
    // A record that completes an open one does not get the remote id.
    for (size_t i = 0; i < works.size(); ++i) {
        if (ids[i] != works[i].localId)
            m_ledger.record(ids[i]).remoteId = recorded->at(int(i)).id;
    }
    if (!isService)
        m_host.remote().sendWaiting(RemoteSide::Channel::RemoteControl);
    m_host.remote().setSendsAtOnce(true);
}

/// Completes an open record; other work is a new one. Returns its id.
int OpenTrack::storeWork(const Work &work, int personId)
{
    TrackLedger::Record record;
    record.carId = work.carId;
    record.opId = work.opId;
    record.time = recentMoment();
    record.personId = personId;
    record.comment = m_ledger.newComment();
    if (work.localId == TrackLedger::none || !m_ledger.record(work.localId).isOpen)
        return m_ledger.addRecord(record);
    m_ledger.record(work.localId) = record;
    return work.localId;
}

void OpenTrack::repeatBatch()
{
    if (m_lastBatch.event.isEmpty())
        return;
    m_host.plugin().send(m_lastBatch);
    settle();
}

void OpenTrack::switchKart()
{
    const std::vector<int> available = availableKarts();
    const bool isRepaired = int(available.size()) < m_ledger.kartCount() - mostInRepair;
    int id = anyKart();
    while (isRepaired && m_ledger.kart(id).isAvailable)
        id = anyKart();
    const bool wasAvailable = m_ledger.kart(id).isAvailable;
    m_ledger.switchKart(id);
    m_host.remote().switchAvailability(id);
    const auto isSwitched = [&] { return m_host.fleet().cars().list().at(id - 1).available != wasAvailable; };
    if (!QTest::qWaitFor(isSwitched, patience))
        note("availability", "unchanged", "switched");
}

void OpenTrack::compareWindow()
{
    const QAbstractItemModel &table = *viewInFront(*m_window, "tvMaintainanceTable")->model();
    QStringList titles;
    for (int column = 0; column < table.columnCount(); ++column)
        titles.append(table.headerData(column, Qt::Horizontal).toString());
    compare("titles", titles, m_ledger.maintenanceTitles());
    QStringList rows;
    for (const QString &row : rowTexts(table))
        rows.append(row.section('|', 1)); // the row number depends on the order
    compare("maintenance", sorted(rows), sorted(m_ledger.maintenanceRows()));

    auto *state = child<QComboBox>(*m_window, "cbFilterServiceState");
    state->setCurrentIndex(1);
    compare("needing service", sorted(columnTexts(table, "Номер")), sorted(m_ledger.numbersToService()));
    press(child<QPushButton>(*m_window, "pushButton"));

    const QAbstractItemModel &log = *viewInFront(*m_window, "tvServiceLog")->model();
    compare("log", rowTexts(log), m_ledger.logRows(mostShown));
    const auto numbers = [this](const char *name) {
        return sorted(columnTexts(*viewInFront(*m_window, name)->model(), "Номер"));
    };
    compare("available", numbers("tvAvailableCars"), sorted(m_ledger.numbersAvailable()));
    compare("all karts", numbers("tvAllCars"), sorted(m_ledger.numbers()));
}

void OpenTrack::compareFile()
{
    const TestDatabase file(m_documents.databasePath(), false);
    compare("record",
            file.rows("SELECT id,car_id,operation_id,operation_time,person_id,ifnull(person_name,''),comment,"
                      "operation_state,ifnull(remote_id,-1) FROM maintainance ORDER BY id"),
            m_ledger.recordRows());
    compare("laps",
            file.rows("SELECT car_id,count(*),sum(sum_sectors),count(DISTINCT run_id) FROM laps "
                      "GROUP BY car_id ORDER BY car_id"),
            m_ledger.lapRows());
    compare("limit",
            sorted(file.rows("SELECT model,operation_id,time_limit,runs_limit,laps_limit "
                             "FROM service_reglament")),
            m_ledger.limitRows());
    compare("operation", file.rows("SELECT operation_name FROM service_operations ORDER BY id"),
            m_ledger.operations().values());
}

void OpenTrack::compareRemoteSide()
{
    const ArchiveFindings findings = m_host.remote().checkArchive();
    if (!findings.isGood())
        note("archive", QString("%1 missing").arg(findings.missing.size()), "0 missing");
    QStringList stored;
    for (const RemoteRecord &record : m_host.remote().store().inState(RemoteRecord::Archived))
        stored.append(QString::number(record.id));
    QStringList expected;
    for (int id = 1; id <= m_ledger.lastRecord(); ++id) {
        if (m_ledger.record(id).exists && m_ledger.record(id).remoteId != TrackLedger::none)
            expected.append(QString::number(m_ledger.record(id).remoteId));
    }
    // The others completed a record of the track.
    for (const QString &id : qAsConst(expected)) {
        if (!stored.contains(id))
            note("archived record", "none", id);
    }
}

OpenTrack::ReloadTime OpenTrack::timeReload()
{
    QEventLoop loop;
    // The log is filled last.
    const QAbstractItemModel *log = child<QTreeView>(*m_window, "tvServiceLog")->model();
    connect(log, &QAbstractItemModel::layoutChanged, &loop, &QEventLoop::quit);
    QTimer::singleShot(patience, &loop, [&loop] { loop.exit(1); });
    QElapsedTimer clock;
    clock.start();
    const std::clock_t computed = std::clock();
    m_host.plugin().send("run_saved_to_db");
    if (loop.exec() != 0)
        note("reload", "none", "one");
    const double computing = double(std::clock() - computed) * 1000 / CLOCKS_PER_SEC;
    return {double(clock.nsecsElapsed()) / 1e6, computing};
}

QModelIndex OpenTrack::maintenanceCell(int carId, const QString &title)
{
    const QAbstractItemModel &table = *viewInFront(*m_window, "tvMaintainanceTable")->model();
    const int row = int(columnTexts(table, "Номер").indexOf(m_ledger.kart(carId).number));
    return table.index(row, columnOf(table, title));
}

QModelIndex OpenTrack::logCell(int recordId)
{
    const QAbstractItemModel &log = *viewInFront(*m_window, "tvServiceLog")->model();
    const QString comment = TrackLedger::commentText(m_ledger.record(recordId).comment);
    const int row = int(columnTexts(log, "Комментарий").indexOf(comment));
    if (row < 0)
        note("row of the log", "none", comment);
    return log.index(row, 1);
}

/// The dialog has no seconds.
qint64 OpenTrack::nextMinute()
{
    do
        m_now = (m_now / minute + 1) * minute;
    while (m_ledger.isUsed(m_now));
    return m_now;
}

/// Within the latest hours, often while karts were driving. No two records have the same.
qint64 OpenTrack::recentMoment()
{
    qint64 moment = m_now;
    do
        moment = m_now - below(3 * hour);
    while (m_ledger.isUsed(moment));
    return moment;
}
