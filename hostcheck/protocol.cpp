#include "hostcheck/protocol.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

struct Events
{
    QStringList understood;
    QStringList subscribed;
    QStringList emitted;
    QHash<QString, QString> senders;
};

QByteArray contents(const QString &name)
{
    QFile file(QLatin1String(":/hostcheck/protocol/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Events readEvents()
{
    Events read;
    const QJsonObject catalogue = QJsonDocument::fromJson(contents(QStringLiteral("events.json"))).object();
    for (const QJsonValue entry : catalogue.value(QLatin1String("understood")).toArray()) {
        const QString name = entry[QLatin1String("event")].toString();
        read.understood.append(name);
        if (entry[QLatin1String("subscribed")].toBool())
            read.subscribed.append(name);
    }
    for (const QJsonValue entry : catalogue.value(QLatin1String("emitted")).toArray()) {
        const QString name = entry[QLatin1String("event")].toString();
        read.emitted.append(name);
        read.senders.insert(name, entry[QLatin1String("module")].toString());
    }
    return read;
}

const Events &events()
{
    static const Events read = readEvents();
    return read;
}

} // namespace

const QStringList &Protocol::understoodEvents()
{
    return events().understood;
}

const QStringList &Protocol::subscribedEvents()
{
    return events().subscribed;
}

const QStringList &Protocol::emittedEvents()
{
    return events().emitted;
}

QString Protocol::senderOf(const QString &event)
{
    return events().senders.value(event);
}

QByteArray Protocol::schemaOf(const QString &event)
{
    return understoodEvents().contains(event) ? contents(event + QLatin1String(".schema.json"))
                                              : QByteArray();
}
