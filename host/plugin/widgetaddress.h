#pragma once

class QJsonValue;
class QWidget;

/// The widget whose address a message carries as a number; null if there is none.
QWidget *widgetAt(const QJsonValue &address);
