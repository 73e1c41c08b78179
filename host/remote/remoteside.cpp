#include "host/remote/remoteside.h"

#include "host/database/hostconnection.h"
#include "host/database/timestamp.h"
#include "host/fleet/personstore.h"
#include "host/plugin/pluginhost.h"

#include <QDateTime>
#include <QHash>
#include <QJsonDocument>
#include <QSet>

namespace {

constexpr int minuteLength = 16; // "yyyy-MM-ddThh:mm"

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

bool RemoteSide::complete(const PendingService &work, const HostPerson &by, const QString &comment,
                          Channel channel)
{
    const std::optional<bool> isOpen = isOpenAtTrack(work.localId);
    if (!isOpen) {
        emit logged(tr("Not recorded, the track's database cannot be read: %1").arg(m_track.errorText()));
        return false;
    }
    RemoteRecord record;
    record.carId = work.carId;
    record.opId = work.opId;
    record.opName = work.opName;
    record.doneTime = nowText();
    record.operatorId = by.id;
    record.operatorName = QStringList {by.lastName, by.firstName}.join(QLatin1Char(' ')).trimmed();
    record.serviceCode = by.serviceCode;
    record.comment = comment;
    // The due list names the last record also where that is done and only overrun; closing that
    // record would change it instead of adding one.
    record.localId = *isOpen ? work.localId : -1;
    m_store.add(record);
    emit recordsChanged();
    if (m_sendsAtOnce)
        sendWaiting(channel);
    return true;
}

void RemoteSide::sendWaiting(Channel channel)
{
    const QVector<RemoteRecord> waiting = m_store.inState(RemoteRecord::Waiting);
    if (waiting.isEmpty())
        return;
    QJsonArray array;
    for (const RemoteRecord &record : waiting)
        array.append(record.toJson());
    QJsonObject data {
        {QStringLiteral("data"), QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact))}};
    logFailure(m_store.setState(idsOf(waiting), RemoteRecord::Sent));
    emit logged(tr("Records sent: %1").arg(waiting.size()));
    if (channel == Channel::Service) {
        m_plugin.send(QStringLiteral("remote_service_data"), data);
    } else {
        data.insert(QStringLiteral("msg"), QStringLiteral("service_operation_done"));
        data.insert(QStringLiteral("sinkId"), ++m_lastSinkId);
        m_plugin.send(QStringLiteral("remote_control_data"), data);
    }
    emit recordsChanged();
}

void RemoteSide::switchAvailability(int carId)
{
    m_plugin.send(QStringLiteral("remote_control_data"),
                  {{QStringLiteral("msg"), QStringLiteral("switchCarAvailability")},
                   {QStringLiteral("data"), QJsonObject {{QStringLiteral("carId"), carId}}},
                   {QStringLiteral("sinkId"), ++m_lastSinkId}});
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
    if (m_store.inState(RemoteRecord::Waiting).isEmpty())
        m_plugin.send(QStringLiteral("remote_service_data"),
                      {{QStringLiteral("data"), QStringLiteral("[]")}});
    else
        sendWaiting();
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
    logFailure(m_store.setState(ids, RemoteRecord::Archived));
    emit logged(tr("Archived: %1").arg(ids.size()));
    emit recordsChanged();
}

void RemoteSide::handlePending(const QJsonObject &data)
{
    m_pending.clear();
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

std::optional<bool> RemoteSide::isOpenAtTrack(int localId)
{
    const QVariant isOpen = m_track.value(
        QStringLiteral("SELECT EXISTS (SELECT 1 FROM maintainance WHERE id=? AND operation_state=0)"),
        {localId});
    return isOpen.isValid() ? std::make_optional(isOpen.toBool()) : std::nullopt;
}
