#include "data/servicerecordstore.h"

#include <QVector>

#include <cmath>

namespace {

const QString insertServiceDone = QStringLiteral(
    "INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,person_name,comment) "
    "VALUES (:carId,:opId,:opTime,:pId,:pName,:comment)");

const QString insertComplaint =
    QStringLiteral("INSERT INTO maintainance "
                   "(car_id,operation_id,operation_time,person_id,person_name,comment,operation_state) "
                   "VALUES (:carId,:opId,:opTime,:pId,:pName,:comment,0)");

const QString updateComplaint = QStringLiteral(
    "UPDATE maintainance SET operation_time=:opTime,person_id=:pId,person_name=:pName,comment=:comment "
    "WHERE id=:locId");

const QString deleteRecord = QStringLiteral("DELETE FROM maintainance WHERE id=:id");

const QString updateRemote = QStringLiteral(
    "UPDATE maintainance SET car_id=:car_id,operation_id=:operation_id,operation_time=:operation_time,"
    "person_id=:person_id,person_name=:person_name,comment=:comment,operation_state=1 "
    "WHERE remote_id=:remote_id OR id=:localId");

const QString insertRemote = QStringLiteral(
    "INSERT INTO maintainance (remote_id,car_id,operation_id,operation_time,person_id,person_name,comment) "
    "VALUES (:remote_id,:car_id,:operation_id,:operation_time,:person_id,:person_name,:comment)");

int addRecord(GarageDatabase &database, const QString &statement, const ServiceRecord &record)
{
    const QVariant id = writeStatement(database, statement,
                                       {{QLatin1String(":carId"), record.carId},
                                        {QLatin1String(":opId"), record.opId},
                                        {QLatin1String(":opTime"), record.opTime.toUTC()},
                                        {QLatin1String(":pId"), record.personId},
                                        {QLatin1String(":pName"), record.personName},
                                        {QLatin1String(":comment"), record.comment}});
    return id.isValid() ? id.toInt() : noId;
}

/// A 64-bit integer, where QJsonValue::toInt() reads 32 bits; -1 if the value is none.
qint64 wideInteger(const QJsonValue &value)
{
    const QVariant number = value.isDouble() ? value.toVariant() : QVariant();
    if (number.type() == QVariant::LongLong)
        return number.toLongLong();
    constexpr double beyond = 9223372036854775808.0; // 2^63
    const double real = number.isValid() ? number.toDouble() : noId;
    return real >= -beyond && real < beyond && std::trunc(real) == real ? qint64(real) : noId;
}

} // namespace

RemoteServiceRecord RemoteServiceRecord::fromJson(const QJsonObject &json, const QJsonArray &personal)
{
    const auto integer = [](const QJsonObject &object, QLatin1String key) {
        return object.value(key).toInt(noId);
    };
    const auto text = [](const QJsonObject &object, QLatin1String key) {
        return object.value(key).toString();
    };

    RemoteServiceRecord record;
    record.remoteId = wideInteger(json.value(QLatin1String("id")));
    record.carId = integer(json, QLatin1String("carId"));
    record.opId = integer(json, QLatin1String("opId"));
    record.opTime = text(json, QLatin1String("opDoneDateTime"));
    record.personId = integer(json, QLatin1String("operatorId"));
    record.personName = text(json, QLatin1String("operatorName"));
    record.comment = text(json, QLatin1String("comment"));
    record.localId = integer(json, QLatin1String("localId"));

    // Compared as JSON values, so that an entry without a code never matches, not even an empty one.
    const QJsonValue serviceCode(text(json, QLatin1String("serviceCode")));
    for (const QJsonValue &value : personal) {
        const QJsonObject person = value.toObject();
        if (person.value(QLatin1String("serviceCode")) != serviceCode)
            continue;
        record.personName = text(person, QLatin1String("lastName")) + QLatin1Char(' ')
            + text(person, QLatin1String("firstName")) + QLatin1Char(' ')
            + text(person, QLatin1String("midName"));
        record.personId = integer(person, QLatin1String("id"));
    }
    return record;
}

void ServiceRecordStore::addServiceDone(GarageDatabase &database, const ServiceRecord &record)
{
    addRecord(database, insertServiceDone, record);
}

int ServiceRecordStore::addComplaint(GarageDatabase &database, const ServiceRecord &record)
{
    return addRecord(database, insertComplaint, record);
}

void ServiceRecordStore::amendComplaint(GarageDatabase &database, int localId, const ServiceRecord &record)
{
    writeStatement(database, updateComplaint,
                   {{QLatin1String(":locId"), localId},
                    {QLatin1String(":opTime"), record.opTime.toUTC()},
                    {QLatin1String(":pId"), record.personId},
                    {QLatin1String(":pName"), record.personName},
                    {QLatin1String(":comment"), record.comment}});
}

bool ServiceRecordStore::remove(GarageDatabase &database, int localId,
                                ImmediateTransaction::RetryPredicate mayRetry)
{
    ImmediateTransaction transaction(database, std::move(mayRetry));
    QSqlQuery query = transaction.prepare(deleteRecord);
    transaction.exec(query, {{QLatin1String(":id"), localId}});
    return transaction.commit();
}

bool ServiceRecordStore::storeRemote(GarageDatabase &database, const QVector<RemoteServiceRecord> &records,
                                     ImmediateTransaction::RetryPredicate mayRetry)
{
    ImmediateTransaction transaction(database, std::move(mayRetry));
    QSqlQuery update = transaction.prepare(updateRemote);
    QSqlQuery insert = transaction.prepare(insertRemote);
    for (const RemoteServiceRecord &record : records) {
        const bool updated = transaction.exec(update,
                                              {{QLatin1String(":remote_id"), record.remoteId},
                                               {QLatin1String(":car_id"), record.carId},
                                               {QLatin1String(":operation_id"), record.opId},
                                               {QLatin1String(":operation_time"), record.opTime},
                                               {QLatin1String(":person_id"), record.personId},
                                               {QLatin1String(":person_name"), record.personName},
                                               {QLatin1String(":comment"), record.comment},
                                               {QLatin1String(":localId"), record.localId}});
        // After a failed update it is unknown whether the record exists, so nothing is inserted.
        if (!updated || update.numRowsAffected() != 0)
            continue;
        transaction.exec(insert,
                         {{QLatin1String(":remote_id"), record.remoteId},
                          {QLatin1String(":car_id"), record.carId},
                          {QLatin1String(":operation_id"), record.opId},
                          {QLatin1String(":operation_time"), record.opTime},
                          {QLatin1String(":person_id"), record.personId},
                          {QLatin1String(":person_name"), record.personName},
                          {QLatin1String(":comment"), record.comment}});
    }
    return transaction.commit();
}

QString ServiceRecordStore::remoteUpdateStatement()
{
    return updateRemote;
}
