#pragma once

#include <QJsonArray>

class QSqlDatabase;

/// A reload as a first version in Qt would be written: columns by name, the driver's cache of rows, a search
/// through all cars for each record.
namespace PlainQt {

struct Reload
{
    QJsonArray pending;
    QJsonArray statuses;
};

Reload reload(const QSqlDatabase &database);

} // namespace PlainQt
