#pragma once

#include "host/plugin/hostmessage.h"
#include "host/result.h"

#include <QAbstractTableModel>
#include <QDateTime>
#include <QVector>

class PluginHost;

/// The messages between host and plug-in, oldest first. Removes the oldest tenth at 20,000 messages or 8 MiB
/// of payload.
class MessageLogModel final : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { TimeColumn, DirectionColumn, ModuleColumn, EventColumn, SizeColumn, ColumnCount };

    struct Entry
    {
        QDateTime time;
        bool toPlugin;
        QString module;
        QString event;
        QByteArray payload; // compact JSON; a QJsonObject needs a multiple of the memory

        QJsonObject data() const;
        /// As HostMessage::toJsonLine().
        QByteArray toJsonLine() const;
        /// With "time" and "direction" ("toPlugin" or "fromPlugin") added.
        QByteArray toStampedJsonLine() const;
    };

    explicit MessageLogModel(PluginHost &plugin, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const Entry &entry(int row) const { return m_entries.at(row); }
    void clear();
    /// Writes every entry, one line each.
    Result save(const QString &fileName) const;

private:
    void append(bool toPlugin, const HostMessage &message);
    void dropOldest();

    QVector<Entry> m_entries;
    qint64 m_bytes = 0; ///< of all payloads
};
