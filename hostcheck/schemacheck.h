#pragma once

#include <QJsonObject>
#include <QStringList>

/// Compares messages with the schemas of docs/protocol.
namespace SchemaCheck {

struct Result
{
    QStringList faults; ///< "place is value: what is wrong"
    QStringList unreadable; ///< places of texts that should contain JSON and do not
};

/// The event must have a schema.
Result check(const QString &event, const QJsonObject &data);

} // namespace SchemaCheck
