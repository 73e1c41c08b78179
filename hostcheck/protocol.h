#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

/// The catalogue of docs/protocol/events.json.
namespace Protocol {

/// Events that the module understands, in the order of subscribedEvents() with load_complete at the end.
const QStringList &understoodEvents();
const QStringList &subscribedEvents();
const QStringList &emittedEvents();
/// The module name with which the garage module sends the event.
QString senderOf(const QString &event);
/// Text of the schema of the event's data; empty for an event that is not in the catalogue.
QByteArray schemaOf(const QString &event);

} // namespace Protocol
