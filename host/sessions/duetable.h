#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QStringList>

class HostConnection;

/// Formats the data of "update_pending_service" as a table: the operation due, the kart, the limit exceeded.
class DueTable final
{
    Q_DECLARE_TR_FUNCTIONS(DueTable)
public:
    /// Reads the limits through the connection.
    explicit DueTable(HostConnection &connection) : m_connection(connection) { }

    /// Heading, aligned rows and the total, one line each.
    QStringList lines(const QJsonObject &pendingService) const;

private:
    QStringList row(const QJsonObject &due, const QJsonObject &driven) const;
    QString limitText(const QString &model, int operation) const;

    HostConnection &m_connection;
};
