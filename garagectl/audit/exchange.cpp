#include "garagectl/audit/exchange.h"

#include "garagectl/wording.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

QString textOf(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toString();
}

int idOf(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toInt(noId);
}

/// The remote id of a record, or of an entry of "idList", as the module stores it.
qint64 remoteIdOf(const QJsonValue &id)
{
    return RemoteServiceRecord::fromJson({{QStringLiteral("id"), id}}, {}).remoteId;
}

/// True if the message brings service records.
bool isBatch(const MessageLog::Message &message)
{
    return message.event == QLatin1String("remote_service_data")
        || (message.event == QLatin1String("remote_control_data")
            && textOf(message.data, "msg") == QLatin1String("service_operation_done"));
}

Exchange::Batch batchOf(const MessageLog::Message &message)
{
    Exchange::Batch batch;
    batch.message = message;
    const QByteArray records = textOf(message.data, "data").toUtf8();
    for (const QJsonValue &record : QJsonDocument::fromJson(records).array())
        batch.records.append({message.line, RemoteServiceRecord::fromJson(record.toObject(), {})});
    return batch;
}

bool hasIds(const Exchange::Batch &batch, const QVector<qint64> &ids)
{
    return std::equal(
        batch.records.cbegin(), batch.records.cend(), ids.cbegin(), ids.cend(),
        [](const Exchange::Record &record, qint64 id) { return record.content.remoteId == id; });
}

void addArchived(Exchange &exchange, const MessageLog::Message &message)
{
    QVector<qint64> ids;
    for (const QJsonValue &id : message.data.value(QLatin1String("idList")).toArray())
        ids.append(remoteIdOf(id));
    const auto batch = std::find_if(
        exchange.batches.begin(), exchange.batches.end(),
        [&ids](const Exchange::Batch &candidate) { return !candidate.isArchived && hasIds(candidate, ids); });
    if (batch != exchange.batches.end()) {
        batch->isArchived = true;
        return;
    }
    for (const qint64 id : ids)
        exchange.archivedWithoutBatch.append({message.line, id});
}

void addAnnouncement(Exchange &exchange, const MessageLog::Message &message)
{
    const QJsonObject &data = message.data;
    const Exchange::Announcement announcement {message.line, idOf(data, "carId"), idOf(data, "opId"),
                                               textOf(data, "opTime"), idOf(data, "localId")};
    if (announcement.localId == noId)
        exchange.recorded.append(announcement);
    else
        exchange.completed.append(announcement);
}

/// The events of which one answers the message; empty: it needs no answer.
QStringList answersTo(const MessageLog::Message &message)
{
    const QString &event = message.event;
    if (event == QLatin1String("load_complete"))
        return {QStringLiteral("read_cars_list")};
    if (event == QLatin1String("read_cars_list") || event == QLatin1String("update_cars"))
        return {QStringLiteral("cars_list_changed")};
    if (event == QLatin1String("send_settings_dialogs"))
        return {QStringLiteral("settings_dialog")};
    if (event == QLatin1String("run_saved_to_db"))
        return {QStringLiteral("update_pending_service")};
    if (event == QLatin1String("clicked") && textOf(message.data, "key") == QLatin1String("show_garage"))
        return {QStringLiteral("insert_tab")};
    const bool isSwitch = event == QLatin1String("remote_control_data")
        && textOf(message.data, "msg") == QLatin1String("switchCarAvailability");
    if (isSwitch && !message.data.value(QLatin1String("skipAnswer")).toBool())
        return {QStringLiteral("remote_control_answer")};
    return {};
}

} // namespace

QVector<Exchange::Record> Exchange::archivedRecords() const
{
    QVector<Record> records;
    for (const Batch &batch : batches) {
        if (batch.isArchived)
            records += batch.records;
    }
    return records;
}

Exchange Exchange::from(const MessageLog &log)
{
    Exchange exchange;
    for (const MessageLog::Message &message : log.messages) {
        if (isBatch(message)) {
            const Batch batch = batchOf(message);
            if (!batch.records.isEmpty())
                exchange.batches.append(batch);
        } else if (message.event == QLatin1String("remote_service_move_to_archive")) {
            addArchived(exchange, message);
        } else if (message.event == QLatin1String("remote_service_delete")) {
            exchange.deletions.append(
                {message.line, idOf(message.data, "remoteId"), idOf(message.data, "localId")});
        } else if (message.event == QLatin1String("add_remote_service")) {
            addAnnouncement(exchange, message);
        }
    }
    return exchange;
}

QStringList unansweredRequests(const MessageLog &log)
{
    QStringList unanswered;
    QMap<QString, int> lastIndex;
    for (int i = int(log.messages.size() - 1); i >= 0; --i) {
        const MessageLog::Message &message = log.messages.at(i);
        for (const QString &answer : answersTo(message)) {
            if (lastIndex.value(answer, -1) < i && !log.endsSoonAfter(message))
                unanswered.prepend(text("line %1: %2 without %3", "строка %1: %2 без %3")
                                       .arg(QString::number(message.line), message.event, answer));
        }
        if (!lastIndex.contains(message.event))
            lastIndex.insert(message.event, i);
    }
    return unanswered;
}
