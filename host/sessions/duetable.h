#pragma once

#include <QJsonObject>
#include <QStringList>

class HostConnection;

/// Writes the data of "update_pending_service" for people: what is due, on which kart, and why.
class DueTable final
{
public:
    /// The connection is asked for the limits.
    explicit DueTable(HostConnection &connection) : m_connection(connection) { }

    /// Heading, aligned rows and a closing count, a line each.
    QStringList lines(const QJsonObject &pendingService) const;

private:
    QStringList row(const QJsonObject &due, const QJsonObject &driven) const;
    QString limitText(const QString &model, int operation) const;

    HostConnection &m_connection;
};
