#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

/// A message log as the demo host saves it: one JSON object per line.
struct MessageLog
{
    struct Message
    {
        int line = 0; ///< from 1
        QDateTime time; ///< invalid: not in the log
        QString event;
        QJsonObject data;
    };

    QVector<Message> messages; ///< in the order of the log
    QStringList malformedLines; ///< "line 3: ..."

    /// True if the log ends so soon after the message that an answer may be missing for that reason.
    bool endsSoonAfter(const Message &message) const;

    /// Adds what the next line of the log says.
    void addLine(int line, const QByteArray &content);

    /// Throws Failure (BadUsage) if the file cannot be read.
    static MessageLog read(const QString &path);
};
