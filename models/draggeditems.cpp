#include "models/draggeditems.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

std::optional<QJsonArray> DraggedItems::fromPayload(const QByteArray &payload)
{
    const QJsonDocument document = QJsonDocument::fromJson(payload);
    if (!document.isObject())
        return std::nullopt;
    return document.object().value(QLatin1String("srcList")).toArray();
}

QString DraggedItems::label(const QJsonArray &items)
{
    if (items.size() == 1)
        return items.first().toObject().value(QLatin1String("name")).toString();
    return items.isEmpty() ? QString() : QStringLiteral("x %1").arg(items.size());
}

QColor DraggedItems::fill(const QJsonArray &items)
{
    if (items.size() != 1)
        return Qt::white;
    return items.first().toObject().value(QLatin1String("color")).toVariant().value<QColor>();
}
