#include "host/remote/remoteside.h"

#include "host/database/hostconnection.h"
#include "host/database/timestamp.h"
#include "host/fleet/personstore.h"
#include "host/plugin/pluginhost.h"

#include <QDateTime>
#include <QHash>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>

namespace {

constexpr int minuteLength = 16; // "yyyy-MM-ddThh:mm"
constexpr int firstResendDelay = 30000; // milliseconds; each attempt doubles it
constexpr int longestResendDelay = 16 * 60000;
constexpr int shortLockWait = 5; // milliseconds; a page asks again
constexpr int mostPerMessage = 100; // records; more would hold up the GUI thread
constexpr int switchTime = 5000; // until a switch without an effect is forgotten, milliseconds

QString nowText()
{
    return TimestampFormatter().format(QDateTime::currentMSecsSinceEpoch());
}

/// The plug-in writes minutes only, with a blank or a "T" and with or without the zone.
QString fullTime(QString text)
{
    text.replace(QLatin1Char(' '), QLatin1Char('T'));
    text.remove(QLatin1Char('Z'));
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    if (!time.isValid())
        return nowText();
    return TimestampFormatter().format(QDateTime(time.date(), time.time(), Qt::UTC).toMSecsSinceEpoch());
}

/// The figures of each car by operation id.
QHash<int, QJsonObject> drivenByCar(const QJsonArray &statuses)
{
    QHash<int, QJsonObject> cars;
    for (const QJsonValue value : statuses) {
        const QJsonObject status = value.toObject();
        cars.insert(status.value(QLatin1String("carId")).toInt(-1),
                    status.value(QLatin1String("opsStatus")).toObject());
    }
    return cars;
}

std::optional<DrivenSince> drivenSince(const QJsonObject &operations, int opId)
{
    const QJsonValue value = operations.value(QString::number(opId));
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject figures = value.toObject();
    return DrivenSince {figures.value(QLatin1String("tt")).toInt(),
                        figures.value(QLatin1String("tr")).toInt(),
                        figures.value(QLatin1String("tl")).toInt()};
}

QVector<int> idsOf(const QVector<RemoteRecord> &records)
{
    QVector<int> ids;
    for (const RemoteRecord &record : records)
        ids.append(record.id);
    return ids;
}

} // namespace

RemoteSide::RemoteSide(const QString &recordsPath, HostConnection &track, PluginHost &plugin, QObject *parent)
    : QObject(parent), m_store(recordsPath), m_track(track), m_plugin(plugin)
{
    // Queued: the plug-in must return from its signal before it gets an answer.
    connect(&plugin, &PluginHost::received, this, &RemoteSide::handleMessage, Qt::QueuedConnection);
    m_resendTimer.setParent(this);
    m_resendTimer.setObjectName(QStringLiteral("resendTimer"));
    m_resendTimer.setSingleShot(true);
    m_resendTimer.setInterval(firstResendDelay);
    connect(&m_resendTimer, &QTimer::timeout, this, &RemoteSide::sendAgain);
}

Result RemoteSide::prepare()
{
    return m_store.prepare(m_track.value(QStringLiteral("SELECT max(remote_id) FROM maintainance")).toInt());
}

QString RemoteSide::storedText(const PendingService &work)
{
    const QVariant comment = m_track.value(
        QStringLiteral("SELECT comment FROM maintainance WHERE id=? AND operation_state=0"), {work.localId});
    if (comment.isValid())
        return comment.toString();
    return work.opId < 0 ? work.opName : QString(); // the due list names a complaint by its text
}

std::optional<QVector<RecordedWork>> RemoteSide::recordWorks(const QVector<DoneWork> &works,
                                                             const HostPerson &by)
{
    const LockWait trackWait(m_track, shortLockWait);
    const LockWait storeWait(m_store.connection(), shortLockWait);
    auto results = store(works, by);
    if (results)
        sendWhenArchived();
    return results;
}

std::optional<QVector<RecordedWork>> RemoteSide::store(const QVector<DoneWork> &works, const HostPerson &by)
{
    const std::optional<KnownThings> known = readKnownThings();
    if (!known)
        return std::nullopt;
    QVector<RecordedWork> results(works.size());
    const Result stored = m_store.transact([&] {
        for (int index = 0; index < works.size(); ++index) {
            if (!store(works.at(index), by, *known, results[index]))
                return false;
        }
        return true;
    });
    if (!stored) {
        if (m_errorText.isEmpty())
            m_errorText = stored.errorText();
        return std::nullopt;
    }
    emit recordsChanged();
    return results;
}

std::optional<RemoteSide::KnownThings> RemoteSide::readKnownThings()
{
    m_errorText.clear();
    KnownThings known;
    QSqlQuery cars = m_track.query(QStringLiteral("SELECT id FROM cars"));
    while (cars.next())
        known.cars.insert(cars.value(0).toInt());
    if (!cars.isActive()) {
        fail(m_track);
        return std::nullopt;
    }
    QSqlQuery names = m_track.query(QStringLiteral("SELECT id,operation_name FROM service_operations"));
    while (names.next())
        known.operations.insert(names.value(0).toInt(), names.value(1).toString());
    if (!names.isActive()) {
        fail(m_track);
        return std::nullopt;
    }
    return known;
}

bool RemoteSide::store(const DoneWork &work, const HostPerson &by, const KnownThings &known,
                       RecordedWork &result)
{
    if (!work.requestKey.isEmpty()) {
        if (const std::optional<RemoteRecord> stored = m_store.withKey(work.requestKey)) {
            result = {RecordedWork::Stored, stored->id, stored->state};
            return true;
        }
    }
    const bool isComplaint = work.opId < 0;
    if (!known.cars.contains(work.carId)) {
        result.outcome = RecordedWork::UnknownCar;
        return true;
    }
    if (!isComplaint && !known.operations.contains(work.opId)) {
        result.outcome = RecordedWork::UnknownOperation;
        return true;
    }
    const std::optional<OpenRecord> open = openRecord(work);
    if (!open)
        return fail(m_track);
    const QString now = nowText();
    RemoteRecord record;
    record.carId = work.carId;
    record.opId = isComplaint ? -1 : work.opId;
    record.opName = isComplaint ? open->text : known.operations.value(work.opId);
    record.doneTime = work.doneTime.isEmpty() || work.doneTime > now ? now : work.doneTime;
    record.operatorId = by.id;
    record.operatorName = QStringList {by.lastName, by.firstName}.join(QLatin1Char(' ')).trimmed();
    record.serviceCode = by.serviceCode;
    record.comment = work.comment;
    record.requestKey = work.requestKey;
    // Completing a record that is done already, or is about to be, would change it instead of adding one.
    record.localId = open->exists && !m_store.isTaken(work.localId) ? work.localId : -1;
    result.id = m_store.add(record);
    return result.id >= 0;
}

bool RemoteSide::fail(const HostConnection &connection)
{
    m_errorText = connection.errorText();
    return false;
}

bool RemoteSide::complete(const PendingService &work, const HostPerson &by, const QString &comment,
                          Channel channel)
{
    const auto recorded = store({{work.carId, work.opId, work.localId, QString(), comment, QString()}}, by);
    if (!recorded) {
        emit logged(tr("Not recorded: %1").arg(m_errorText));
        return false;
    }
    if (recorded->first().outcome != RecordedWork::Stored) {
        emit logged(tr("Not recorded: the kart or the operation does not exist any more"));
        return false;
    }
    if (m_sendsAtOnce)
        sendWaiting(channel);
    return true;
}

void RemoteSide::sendWaiting(Channel channel)
{
    send(m_store.inState(RemoteRecord::Waiting), channel);
}

void RemoteSide::send(const QVector<RemoteRecord> &records, Channel channel)
{
    if (records.isEmpty())
        return;
    QJsonArray array;
    for (const RemoteRecord &record : records)
        array.append(record.toJson());
    QJsonObject data {
        {QStringLiteral("data"), QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact))}};
    const QVector<int> ids = idsOf(records);
    // A record that is not marked would be sent again while it is on its way.
    if (const Result marked = m_store.setState(ids, RemoteRecord::Sent); !marked) {
        logFailure(marked);
        return;
    }
    for (const int id : ids)
        m_underWay.insert(id);
    if (!m_resendTimer.isActive())
        m_resendTimer.start();
    emit logged(tr("Records sent: %1").arg(records.size()));
    if (channel == Channel::Service) {
        m_plugin.send(QStringLiteral("remote_service_data"), data);
    } else {
        data.insert(QStringLiteral("msg"), QStringLiteral("service_operation_done"));
        data.insert(QStringLiteral("sinkId"), ++m_lastSinkId);
        m_plugin.send(QStringLiteral("remote_control_data"), data);
    }
    emit recordsChanged();
}

void RemoteSide::sendWhenArchived()
{
    if (m_sendsAtOnce && m_underWay.isEmpty())
        send(m_store.inState(RemoteRecord::Waiting, mostPerMessage), Channel::Service);
}

/// The track archives nothing of a message that it could not store.
void RemoteSide::sendAgain()
{
    m_resendTimer.setInterval(std::min(2 * m_resendTimer.interval(), longestResendDelay));
    m_underWay.clear(); // some of it may be deleted by now
    const QVector<RemoteRecord> sent = m_store.inState(RemoteRecord::Sent);
    if (sent.isEmpty())
        sendWhenArchived();
    else
        send(sent, Channel::Service);
}

void RemoteSide::switchAvailability(int carId)
{
    m_plugin.send(QStringLiteral("remote_control_data"),
                  {{QStringLiteral("msg"), QStringLiteral("switchCarAvailability")},
                   {QStringLiteral("data"), QJsonObject {{QStringLiteral("carId"), carId}}},
                   {QStringLiteral("sinkId"), ++m_lastSinkId}});
}

std::optional<bool> RemoteSide::requestAvailability(int carId, bool available)
{
    const LockWait wait(m_track, shortLockWait);
    m_errorText.clear();
    QSqlQuery car = m_track.query(
        QStringLiteral(
            "SELECT ifnull(available,1) FROM cars LEFT JOIN host_cars ON car_id=cars.id WHERE cars.id=?"),
        {carId});
    if (!car.isActive()) {
        fail(m_track);
        return std::nullopt;
    }
    if (!car.next())
        return false;
    const bool isAvailable = car.value(0).toBool();
    const auto wanted = m_wanted.constFind(carId);
    // The message only switches: sent again before it has had its effect, it would undo it.
    const bool isSwitching = wanted != m_wanted.cend() && wanted->available != isAvailable
        && !wanted->since.hasExpired(switchTime);
    if (available == (isSwitching ? wanted->available : isAvailable))
        return true;
    WantedAvailability want {available, QElapsedTimer()};
    want.since.start();
    m_wanted.insert(carId, want);
    switchAvailability(carId);
    return true;
}

ArchiveFindings RemoteSide::checkArchive()
{
    QSet<int> remoteIds;
    QSet<int> doneIds;
    QSqlQuery rows =
        m_track.query(QStringLiteral("SELECT id,ifnull(remote_id,-1),operation_state FROM maintainance"));
    if (!rows.isActive()) {
        ArchiveFindings unknown;
        unknown.errorText = m_track.errorText();
        return unknown;
    }
    while (rows.next()) {
        remoteIds.insert(rows.value(1).toInt());
        if (rows.value(2).toInt() != 0)
            doneIds.insert(rows.value(0).toInt());
    }
    ArchiveFindings findings;
    for (const RemoteRecord &record : m_store.inState(RemoteRecord::Archived)) {
        ++findings.archived;
        if (!remoteIds.contains(record.id) && !doneIds.contains(record.localId))
            findings.missing.append(record.id);
    }
    for (const RemoteRecord &record : m_store.inState(RemoteRecord::Deleted)) {
        if (remoteIds.contains(record.id))
            findings.notDeleted.append(record.id);
    }
    return findings;
}

void RemoteSide::handleMessage(const HostMessage &message)
{
    static const QHash<QString, void (RemoteSide::*)(const QJsonObject &)> handlers = {
        {QStringLiteral("add_remote_service"), &RemoteSide::handleRecord},
        {QStringLiteral("remote_service_delete"), &RemoteSide::handleDeletion},
        {QStringLiteral("remote_service_move_to_archive"), &RemoteSide::handleArchive},
        {QStringLiteral("update_pending_service"), &RemoteSide::handlePending},
        {QStringLiteral("service_ops_changed"), &RemoteSide::handleOperations},
        {QStringLiteral("remote_control_answer"), &RemoteSide::handleAnswer},
    };
    if (message.event == QLatin1String("update_remote_service"))
        answerRequest();
    else if (const auto handler = handlers.value(message.event))
        (this->*handler)(message.data);
}

void RemoteSide::answerRequest()
{
    QVector<RemoteRecord> records = m_store.inState(RemoteRecord::Waiting);
    // What an earlier run of the program has sent, and does not know to be archived.
    if (m_underWay.isEmpty())
        records += m_store.inState(RemoteRecord::Sent);
    if (records.isEmpty())
        m_plugin.send(QStringLiteral("remote_service_data"),
                      {{QStringLiteral("data"), QStringLiteral("[]")}});
    else
        send(records, Channel::Service);
}

void RemoteSide::handleRecord(const QJsonObject &data)
{
    const bool isDoneHere = data.value(QLatin1String("updateFromLocal")).toBool();
    RemoteRecord record;
    record.carId = data.value(QLatin1String("carId")).toInt(-1);
    record.opId = data.value(QLatin1String("opId")).toInt(-1);
    record.opName = data.value(QLatin1String("opName")).toString();
    record.comment = data.value(QLatin1String("comment")).toString();
    record.localId = data.value(QLatin1String("localId")).toInt(-1);
    record.doneTime = fullTime(
        data.value(isDoneHere ? QLatin1String("opDoneDateTime") : QLatin1String("opTime")).toString());
    record.operatorId = data.value(isDoneHere ? QLatin1String("operatorId") : QLatin1String("pId")).toInt(-1);
    record.operatorName =
        data.value(isDoneHere ? QLatin1String("operatorName") : QLatin1String("pName")).toString();
    // The module stores a record marked done in its window only when the remote side sends it back.
    record.state = isDoneHere ? RemoteRecord::Waiting : RemoteRecord::Kept;
    // A record made at the track comes without its id, which a later deletion names.
    if (record.localId < 0)
        record.localId = localIdOf(record.carId, record.opId, record.doneTime.left(minuteLength));
    const int id = m_store.add(record);
    if (id < 0) {
        logFailure(Result::error(m_store.connection().errorText()));
        return;
    }
    emit logged(tr("Record %1 received: %2").arg(id).arg(record.opName.simplified()));
    emit recordsChanged();
    if (isDoneHere && m_sendsAtOnce)
        sendWaiting();
}

void RemoteSide::handleDeletion(const QJsonObject &data)
{
    const int localId = data.value(QLatin1String("localId")).toInt(-1);
    logFailure(m_store.markDeleted(data.value(QLatin1String("remoteId")).toInt(-1), localId));
    emit logged(tr("Record %1 deleted at the track").arg(localId));
    emit recordsChanged();
}

void RemoteSide::handleArchive(const QJsonObject &data)
{
    QVector<int> ids;
    for (const QJsonValue id : data.value(QLatin1String("idList")).toArray())
        ids.append(id.toInt(-1));
    const Result archived = m_store.setState(ids, RemoteRecord::Archived);
    logFailure(archived);
    for (const int id : qAsConst(ids))
        m_underWay.remove(id);
    if (archived && m_underWay.isEmpty()) {
        m_resendTimer.stop();
        m_resendTimer.setInterval(firstResendDelay);
    }
    emit logged(tr("Archived: %1").arg(ids.size()));
    emit recordsChanged();
    sendWhenArchived();
}

void RemoteSide::handlePending(const QJsonObject &data)
{
    m_pending.clear();
    const auto driven = drivenByCar(data.value(QLatin1String("maintainanceStatus")).toArray());
    for (const QJsonValue value : data.value(QLatin1String("servicePendingList")).toArray()) {
        const QJsonObject due = value.toObject();
        PendingService service;
        service.carId = due.value(QLatin1String("carId")).toInt(-1);
        service.carNumber = due.value(QLatin1String("carNum")).toString();
        service.carModel = due.value(QLatin1String("carModel")).toString();
        service.opId = due.value(QLatin1String("opId")).toInt(-1);
        service.opName = due.value(QLatin1String("opName")).toString();
        service.since = due.value(QLatin1String("opDateTime")).toString();
        service.localId = due.value(QLatin1String("localId")).toInt(-1);
        service.driven = drivenSince(driven.value(service.carId), service.opId);
        m_pending.append(service);
    }
    emit pendingChanged();
}

void RemoteSide::handleOperations(const QJsonObject &data)
{
    m_operations.clear();
    for (const QJsonValue value : data.value(QLatin1String("opsList")).toArray()) {
        const QJsonObject operation = value.toObject();
        m_operations.insert(operation.value(QLatin1String("id")).toInt(-1),
                            operation.value(QLatin1String("opName")).toString());
    }
    emit logged(tr("List of operations changed, operations: %1").arg(m_operations.size()));
}

void RemoteSide::handleAnswer(const QJsonObject &data)
{
    const QJsonObject answer = data.value(QLatin1String("req_answ")).toObject();
    const bool available = answer.value(QLatin1String("carAvailable")).toBool();
    QStringList cars;
    for (const QJsonValue id : answer.value(QLatin1String("carsIdsList")).toArray())
        cars.append(carNumber(id.toInt(-1)));
    if (answer.contains(QLatin1String("carId")))
        cars.append(carNumber(answer.value(QLatin1String("carId")).toInt(-1)));
    emit logged(tr("Answer to remote controls: kart %1 %2")
                    .arg(cars.join(QLatin1String(", ")), available ? tr("available") : tr("not available")));
}

void RemoteSide::logFailure(const Result &result)
{
    if (!result)
        emit logged(tr("Records of the remote side not updated: %1").arg(result.errorText()));
}

QString RemoteSide::carNumber(int carId)
{
    const QVariant number = m_track.value(QStringLiteral("SELECT num FROM cars WHERE id=?"), {carId});
    return number.isValid() ? number.toString() : tr("with unknown id %1").arg(carId);
}

int RemoteSide::localIdOf(int carId, int opId, const QString &minute)
{
    const QVariant id = m_track.value(QStringLiteral("SELECT max(id) FROM maintainance WHERE car_id=? AND "
                                                     "operation_id=? AND substr(operation_time,1,?)=?"),
                                      {carId, opId, minuteLength, minute});
    return id.isNull() ? -1 : id.toInt();
}

std::optional<RemoteSide::OpenRecord> RemoteSide::openRecord(const DoneWork &work)
{
    if (work.localId < 0)
        return OpenRecord();
    QSqlQuery found =
        m_track.query(QStringLiteral("SELECT comment FROM maintainance WHERE id=? AND car_id=? AND "
                                     "operation_id=? AND operation_state=0"),
                      {work.localId, work.carId, work.opId});
    if (!found.isActive())
        return std::nullopt;
    if (!found.next())
        return OpenRecord();
    return OpenRecord {true, found.value(0).toString()};
}
