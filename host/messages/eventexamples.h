#pragma once

#include <QString>
#include <QVector>

/// An event that the plug-in subscribes to, with example data for the send form.
struct EventExample
{
    QString event;
    QString data; // indented JSON
};

QVector<EventExample> eventExamples();
