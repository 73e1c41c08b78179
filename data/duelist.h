#pragma once

#include "data/records.h"

#include <QJsonArray>

/// The content of the loader's message after each reload.
namespace DueList {

/// Per car and in the order of the cars: its open complaint, then every recorded operation that is open or
/// due by the limits of the car's model.
[[nodiscard]] QJsonArray pendingServices(const QList<MaintainanceItem> &cars,
                                         const QList<ModelReglament> &reglament);
/// The figures of each car since the latest record of each operation.
[[nodiscard]] QJsonArray carStatuses(const QList<MaintainanceItem> &cars);

} // namespace DueList
