#include "support/json.h"

#include <QJsonDocument>

namespace {

QJsonDocument parse(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("%s at %d in %s", qPrintable(error.errorString()), error.offset, text.constData());
    return document;
}

} // namespace

QJsonObject json(const QByteArray &text)
{
    const QJsonDocument document = parse(text);
    if (!document.isObject())
        qFatal("Not an object: %s", text.constData());
    return document.object();
}

QJsonArray jsonArray(const QByteArray &text)
{
    const QJsonDocument document = parse(text);
    if (!document.isArray())
        qFatal("Not an array: %s", text.constData());
    return document.array();
}
