#pragma once

#include <QJsonArray>

class QSqlDatabase;

/// A reload as one would first write it in Qt: columns by name, the driver's cache of rows, a search through
/// all cars for each record.
namespace PlainQt {

struct Reload
{
    QJsonArray pending;
    QJsonArray statuses;
};

Reload reload(const QSqlDatabase &database);

} // namespace PlainQt
