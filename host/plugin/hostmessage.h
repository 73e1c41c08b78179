#pragma once

#include <QJsonObject>
#include <QMetaType>
#include <QString>

#include <optional>

class QWidget;

/// One message between host and plug-in, in either direction.
struct HostMessage
{
    QString module;
    QString event;
    QJsonObject data;

    /// {"module":…,"event":…,"data":{…}} on one line, UTF-8, without a line end.
    QByteArray toJsonLine() const;
    /// The same of a payload that is text already.
    static QByteArray toJsonLine(const QString &module, const QString &event, const QByteArray &payload);
    /// The widget whose address the data hold under the key; null if that is not a number.
    QWidget *widget(QLatin1String key) const;
    /// Nothing if the line is not a JSON object with a non-empty "event"; other keys may be missing.
    static std::optional<HostMessage> fromJsonLine(const QByteArray &line);
};

Q_DECLARE_METATYPE(HostMessage)
