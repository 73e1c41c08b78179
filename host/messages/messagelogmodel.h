#pragma once

#include "host/plugin/hostmessage.h"

#include <QAbstractTableModel>
#include <QDateTime>
#include <QVector>

class PluginHost;

/// The messages between host and plug-in, the latest at the bottom; the oldest go when they take too much
/// room.
class JournalModel final : public QAbstractTableModel
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
        QByteArray payload; // compact JSON; as objects it would take a multiple of the memory

        QJsonObject data() const;
        /// As HostMessage::toJsonLine().
        QByteArray toJsonLine() const;
        /// With "time" and "direction" ("toPlugin" or "fromPlugin") added.
        QByteArray toStampedJsonLine() const;
    };

    explicit JournalModel(PluginHost &plugin, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const Entry &entry(int row) const { return m_entries.at(row); }
    void clear();
    /// Writes all entries, a line each. An error text, or empty.
    QString save(const QString &fileName) const;

private:
    void append(bool toPlugin, const HostMessage &message);
    void dropOldest();

    QVector<Entry> m_entries;
    qint64 m_bytes = 0; ///< of all payloads
};
