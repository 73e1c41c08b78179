#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// The published protocol: the catalogue of events (docs/protocol/events.json) and the schemas beside it.
/// A file that cannot be read ends the program.
namespace ProtocolCatalogue {

/// What the module understands, in the catalogue's order; more than it subscribes to.
QStringList understoodEvents();
/// The lists that the module must return, in their order.
QStringList subscribedEvents();
QStringList emittedEvents();

/// The module name under which an emitted event is sent.
QString senderOf(const QString &emittedEvent);
/// The events that are sent before pluginSlot() returns, in their order.
QStringList directAnswersTo(const QString &understoodEvent);

/// The events that have a schema, sorted.
QStringList eventsWithSchema();
/// Every key that the event's schema names, at any depth, sorted.
QStringList keysOf(const QString &event);
/// The first example of the event's schema.
QJsonObject exampleOf(const QString &event);

} // namespace ProtocolCatalogue
