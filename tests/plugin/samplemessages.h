#pragma once

#include "support/json.h"

#include <QJsonDocument>

/// Messages of a host that several test classes send.
namespace SampleMessages {

/// Car 1 is available for runs, car 2 is not.
inline QJsonObject carsList()
{
    return json(R"({"cars": [{"id": 1, "num": "10", "name": "Sodi", "available_for_runs": true},
                             {"id": 2, "num": "9", "name": "Sodi", "available_for_runs": false}]})");
}

/// The request of a remote control to toggle a car's availability.
inline QJsonObject toggleRequest(int carId)
{
    QJsonObject request = json(R"({"msg": "switchCarAvailability", "sinkId": "пульт 7"})");
    request.insert("data", QJsonObject {{"carId", carId}});
    return request;
}

/// A service record of car 1 and operation 1.
inline QJsonObject remoteRecord(int id)
{
    return {{"id", id}, {"carId", 1}, {"opId", 1}, {"opDoneDateTime", "2026-03-08T09:30Z"}};
}

/// Records as the text in which messages carry them.
inline QString recordsText(const QJsonArray &records)
{
    return QJsonDocument(records).toJson();
}

} // namespace SampleMessages
