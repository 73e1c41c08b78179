#include "host/plugin/hostmessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

namespace {
const QLatin1String moduleKey("module");
const QLatin1String eventKey("event");
const QLatin1String dataKey("data");
} // namespace

QByteArray HostMessage::toJsonLine() const
{
    return toJsonLine(module, event, QJsonDocument(data).toJson(QJsonDocument::Compact));
}

QByteArray HostMessage::toJsonLine(const QString &module, const QString &event, const QByteArray &payload)
{
    // Concatenated by hand: QJsonObject sorts its keys, and "module" is to come before "data".
    const auto quoted = [](const QString &text) {
        const QByteArray list = QJsonDocument(QJsonArray {text}).toJson(QJsonDocument::Compact);
        return list.mid(1, list.size() - 2);
    };
    return "{\"module\":" + quoted(module) + ",\"event\":" + quoted(event) + ",\"data\":" + payload + '}';
}

std::optional<HostMessage> HostMessage::fromJsonLine(const QByteArray &line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    const QString event = object.value(eventKey).toString();
    if (event.isEmpty())
        return std::nullopt;
    return HostMessage {object.value(moduleKey).toString(), event, object.value(dataKey).toObject()};
}

QWidget *HostMessage::widget(QLatin1String key) const
{
    const QJsonValue address = data.value(key);
    return address.isDouble() ? reinterpret_cast<QWidget *>(address.toVariant().toLongLong()) : nullptr;
}
