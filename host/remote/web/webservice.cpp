#include "host/remote/web/webservice.h"

#include "host/database/timestamp.h"
#include "host/fleet/fleetcontroller.h"
#include "host/remote/web/webbridge.h"
#include "host/remote/web/webfeed.h"

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QUuid>

#include <algorithm>

/// The linker drops a static library's resources unless they are referenced by name.
static void initWebResources()
{
    Q_INIT_RESOURCE(web);
}

namespace {

constexpr int publicationPause = 250; // milliseconds
constexpr int minute = 60000;
constexpr int shownRecords = 200;
constexpr int shortLockWait = 5; // milliseconds

WebServer::Files readFiles()
{
    initWebResources();
    const std::pair<const char *, const char *> types[] = {{"/index.html", "text/html; charset=utf-8"},
                                                           {"/page.css", "text/css; charset=utf-8"},
                                                           {"/page.js", "text/javascript; charset=utf-8"}};
    WebServer::Files files;
    for (const auto &[path, type] : types) {
        QFile file(QLatin1String(":/host/web") + QLatin1String(path));
        file.open(QIODevice::ReadOnly);
        files[path] = {type, file.readAll().toStdString()};
    }
    return files;
}

QString startOfToday()
{
    return TimestampFormatter().format(QDate::currentDate().startOfDay().toMSecsSinceEpoch());
}

std::string nameOf(const HostPerson &person)
{
    return QStringList {person.lastName, person.firstName}.join(QLatin1Char(' ')).trimmed().toStdString();
}

std::string stateName(RemoteRecord::State state)
{
    switch (state) {
    case RemoteRecord::Waiting:
        return "waiting";
    case RemoteRecord::Sent:
        return "sent";
    case RemoteRecord::Deleted:
        return "deleted";
    case RemoteRecord::Kept:
    case RemoteRecord::Archived:
        break;
    }
    return "archived";
}

std::string errorName(RecordedWork::Outcome outcome)
{
    switch (outcome) {
    case RecordedWork::UnknownCar:
        return "unknown_car";
    case RecordedWork::UnknownOperation:
        return "unknown_op";
    case RecordedWork::Stored:
        break;
    }
    return {};
}

using LimitKey = QPair<QString, int>; // model, operation

} // namespace

WebService::WebService(RemoteSide &remote, FleetController &fleet, const QString &trackPath,
                       const WebLimits &limits, QObject *parent)
    : QObject(parent)
    , m_remote(remote)
    , m_fleet(fleet)
    , m_track(trackPath)
    , m_limits(limits)
    , m_sessions(m_limits)
{
    m_track.setBusyTimeout(shortLockWait);
    m_publicationTimer.setSingleShot(true);
    m_minuteTimer.setInterval(minute);
    connect(&m_publicationTimer, &QTimer::timeout, this, &WebService::publish);
    const auto readAgain = [this] {
        m_isDueComplete = false;
        schedulePublication();
    };
    connect(&m_minuteTimer, &QTimer::timeout, this, readAgain);
    connect(&m_remote, &RemoteSide::pendingChanged, this, readAgain);
    connect(&m_remote, &RemoteSide::recordsChanged, this, &WebService::schedulePublication);
    connect(&m_fleet, &FleetController::carsAnnounced, this, &WebService::schedulePublication);
    connect(&m_fleet, &FleetController::peopleAnnounced, this, &WebService::publishPeople);
}

WebService::~WebService()
{
    stop();
}

Result WebService::start(const WebAccess &access)
{
    stop();
    m_access = access;
    m_feed = std::make_unique<WebFeed>(QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString());
    m_bridge = std::make_unique<WebBridge>();
    publishPeople();
    publish();
    auto server =
        std::make_unique<WebServer>(access, m_limits, readFiles(), *m_feed, m_sessions, makeActions());
    if (const std::string error = server->start(); !error.empty()) {
        stop();
        return Result::error(
            tr("no web server at %1: %2")
                .arg(QString::fromStdString(access.endpoint.text()), QString::fromLocal8Bit(error.c_str())));
    }
    m_server = std::move(server);
    m_minuteTimer.start();
    emit runningChanged();
    return Result::success();
}

void WebService::stop()
{
    const bool wasRunning = isRunning();
    // Its requests wait for the bridge, its streams for the feed.
    if (m_bridge)
        m_bridge->close();
    m_server.reset();
    m_bridge.reset();
    m_feed.reset();
    m_publicationTimer.stop();
    m_minuteTimer.stop();
    if (wasRunning)
        emit runningChanged();
}

QString WebService::url() const
{
    if (!m_server)
        return {};
    if (!m_access.publicUrl.empty())
        return QString::fromStdString(m_access.publicUrl);
    const std::string scheme = m_access.hasCertificate() ? "https://" : "http://";
    return QString::fromStdString(scheme + m_server->endpoint().text() + '/');
}

WebServer::Actions WebService::makeActions()
{
    WebServer::Actions actions;
    // Called in the server's threads: they use the bridge and what is safe in any thread.
    actions.recordServices = [this, bridge = m_bridge.get(), store = &m_remote.store(),
                              limit = m_limits.callTime](const WebPerson &person,
                                                         const std::vector<WebRequests::Service> &services)
        -> std::optional<std::vector<WebServer::ServiceResult>> {
        const auto work = [this, personId = person.id, services] {
            return recordServices(personId, services);
        };
        const auto results = bridge->ask(work, limit).value_or(std::nullopt);
        // The page forgets what is answered, so it must be on the disk; the GUI thread does not wait for
        // that.
        return results && store->sync() ? results : std::nullopt;
    };
    actions.setAvailable = [this, bridge = m_bridge.get(),
                            limit = m_limits.callTime](int carId, bool available) -> std::optional<bool> {
        const auto work = [this, carId, available] { return m_remote.requestAvailability(carId, available); };
        return bridge->ask(work, limit).value_or(std::nullopt);
    };
    return actions;
}

std::optional<std::vector<WebServer::ServiceResult>>
WebService::recordServices(int personId, const std::vector<WebRequests::Service> &services)
{
    const QVector<HostPerson> people = m_fleet.people().list();
    const auto person = std::find_if(people.begin(), people.end(),
                                     [personId](const HostPerson &one) { return one.id == personId; });
    if (person == people.end())
        return std::nullopt;
    QVector<DoneWork> works;
    for (const WebRequests::Service &service : services) {
        if (service.isValid)
            works.append({service.carId, service.opId, service.localId,
                          QString::fromStdString(service.doneTime), QString::fromStdString(service.comment),
                          QString::fromStdString(service.key)});
    }
    const auto recorded = m_remote.recordWorks(works, *person);
    if (!recorded)
        return std::nullopt;
    std::vector<WebServer::ServiceResult> results;
    int next = 0;
    for (const WebRequests::Service &service : services) {
        if (!service.isValid) {
            results.push_back({service.key, -1, {}, "invalid"});
            continue;
        }
        const RecordedWork &work = recorded->at(next++);
        results.push_back({service.key, work.id, stateName(work.state), errorName(work.outcome)});
    }
    return results;
}

void WebService::publishPeople()
{
    std::vector<WebPerson> people;
    for (const HostPerson &person : m_fleet.people().list())
        people.push_back({person.id, nameOf(person), person.serviceCode.toStdString()});
    m_sessions.setPeople(people);
    if (m_feed)
        m_feed->wake();
}

void WebService::schedulePublication()
{
    if (!m_feed || m_publicationTimer.isActive())
        return;
    const qint64 left = m_sincePublication.isValid() ? publicationPause - m_sincePublication.elapsed() : 0;
    m_publicationTimer.start(int(std::max<qint64>(left, 0)));
}

void WebService::publish()
{
    m_sincePublication.start();
    if (!m_isDueComplete)
        readDueList();
    m_feed->publish(makeState());
}

/// What the message with the due list does not say: the limits, and which of its records are open. If the
/// file is locked, what was read before is shown on, and the next publication tries again.
void WebService::readDueList()
{
    QHash<LimitKey, WebState::Figures> limits;
    QSqlQuery rows = m_track.query(
        QStringLiteral("SELECT model,operation_id,time_limit,runs_limit,laps_limit FROM service_reglament"));
    while (rows.next())
        limits.insert({rows.value(0).toString(), rows.value(1).toInt()},
                      {rows.value(2).toLongLong(), rows.value(3).toLongLong(), rows.value(4).toLongLong()});
    QStringList ids;
    for (const PendingService &work : m_remote.pending())
        ids.append(QString::number(work.localId));
    QHash<int, QString> openTexts;
    QSqlQuery open = m_track.query(
        QStringLiteral("SELECT id,comment FROM maintainance WHERE operation_state=0 AND id IN (%1)")
            .arg(ids.join(QLatin1Char(','))));
    while (open.next())
        openTexts.insert(open.value(0).toInt(), open.value(1).toString());
    m_isDueComplete = rows.isActive() && open.isActive();
    if (!m_isDueComplete) {
        m_publicationTimer.start(publicationPause);
        return;
    }

    m_due.clear();
    for (const PendingService &work : m_remote.pending()) {
        WebState::Due due;
        due.carId = work.carId;
        due.car = work.carNumber.toStdString();
        due.model = work.carModel.toStdString();
        due.opId = work.opId;
        due.op = work.opName.toStdString();
        due.localId = work.localId;
        due.isOpen = openTexts.contains(work.localId);
        due.comment = openTexts.value(work.localId).toStdString();
        if (!work.since.isEmpty())
            due.since = work.since.toStdString() + 'Z';
        if (work.driven)
            due.driven = WebState::Figures {work.driven->seconds, work.driven->runs, work.driven->laps};
        const auto limit = limits.constFind({work.carModel, work.opId});
        if (limit != limits.cend())
            due.limits = *limit;
        m_due.push_back(due);
    }
}

WebState WebService::makeState()
{
    WebState state;
    state.due = m_due;
    QHash<int, QString> numbers;
    for (const HostCar &car : m_fleet.cars().list()) {
        state.karts.push_back({car.id, car.number.toStdString(), car.model.toStdString(), car.available});
        numbers.insert(car.id, car.number);
    }
    for (const RemoteRecord &record : m_remote.store().doneSince(startOfToday(), shownRecords)) {
        state.records.push_back({record.id, record.requestKey.toStdString(), record.carId,
                                 numbers.value(record.carId).toStdString(), record.opId,
                                 record.opName.toStdString(), record.doneTime.toStdString(),
                                 record.operatorName.toStdString(), record.comment.toStdString(),
                                 record.localId, stateName(record.state)});
    }
    return state;
}
