#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

/// The object that a JSON text describes: json(R"({"carId": 3})"). An invalid text ends the program.
QJsonObject json(const QByteArray &text);
/// The array that a JSON text describes.
QJsonArray jsonArray(const QByteArray &text);
