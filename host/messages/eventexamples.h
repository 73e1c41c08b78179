#pragma once

#include <QString>
#include <QVector>

/// A message that the plug-in knows, with data that a person can start from.
struct EventExample
{
    QString event;
    QString data; // indented JSON
};

QVector<EventExample> eventExamples();
