#include "support/protocolcatalogue.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

const QString schemaSuffix = QStringLiteral(".schema.json");
const QLatin1String emitted("emitted");
const QLatin1String understood("understood");

QDir folder()
{
    return QDir(QStringLiteral(GARAGE_PROTOCOL_FOLDER));
}

QJsonObject readJson(const QString &fileName)
{
    QFile file(folder().filePath(fileName));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(file.fileName()));
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        qFatal("Not a JSON object: %s", qPrintable(file.fileName()));
    return document.object();
}

QJsonObject schemaOf(const QString &event)
{
    return readJson(event + schemaSuffix);
}

QJsonArray entries(QLatin1String direction)
{
    static const QJsonObject catalogue = readJson(QStringLiteral("events.json"));
    return catalogue.value(direction).toArray();
}

QString eventOf(const QJsonObject &entry)
{
    return entry.value(QLatin1String("event")).toString();
}

QJsonObject entryOf(QLatin1String direction, const QString &event)
{
    for (const QJsonValue &entry : entries(direction)) {
        if (eventOf(entry.toObject()) == event)
            return entry.toObject();
    }
    return {};
}

QStringList toStrings(const QJsonArray &array)
{
    QStringList strings;
    for (const QJsonValue &value : array)
        strings.append(value.toString());
    return strings;
}

void collectKeys(const QJsonValue &schema, QStringList &keys)
{
    const QJsonArray alternatives = schema.toArray();
    for (const QJsonValue &alternative : alternatives)
        collectKeys(alternative, keys);
    const QJsonObject object = schema.toObject();
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        if (it.key() == QLatin1String("properties"))
            keys += it->toObject().keys();
        if (it.key() != QLatin1String("examples"))
            collectKeys(*it, keys);
    }
}

} // namespace

QStringList ProtocolCatalogue::understoodEvents()
{
    QStringList events;
    for (const QJsonValue &entry : entries(understood))
        events.append(eventOf(entry.toObject()));
    return events;
}

QStringList ProtocolCatalogue::subscribedEvents()
{
    QStringList events;
    for (const QJsonValue &entry : entries(understood)) {
        if (entry.toObject().value(QLatin1String("subscribed")).toBool())
            events.append(eventOf(entry.toObject()));
    }
    return events;
}

QStringList ProtocolCatalogue::emittedEvents()
{
    QStringList events;
    for (const QJsonValue &entry : entries(emitted))
        events.append(eventOf(entry.toObject()));
    return events;
}

QString ProtocolCatalogue::senderOf(const QString &emittedEvent)
{
    return entryOf(emitted, emittedEvent).value(QLatin1String("module")).toString();
}

QStringList ProtocolCatalogue::directAnswersTo(const QString &understoodEvent)
{
    return toStrings(entryOf(understood, understoodEvent).value(QLatin1String("answers")).toArray());
}

QStringList ProtocolCatalogue::eventsWithSchema()
{
    QStringList events = folder().entryList({QLatin1Char('*') + schemaSuffix}, QDir::Files);
    events.replaceInStrings(schemaSuffix, QString());
    events.sort();
    return events;
}

QStringList ProtocolCatalogue::keysOf(const QString &event)
{
    QStringList keys;
    collectKeys(schemaOf(event), keys);
    keys.removeDuplicates();
    keys.sort();
    return keys;
}

QJsonObject ProtocolCatalogue::exampleOf(const QString &event)
{
    return schemaOf(event).value(QLatin1String("examples")).toArray().first().toObject();
}
