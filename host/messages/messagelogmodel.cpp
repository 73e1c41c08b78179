#include "host/messages/messagelogmodel.h"

#include "host/plugin/pluginhost.h"

#include <QJsonDocument>
#include <QLocale>
#include <QSaveFile>

namespace {

constexpr int mostEntries = 20000;
constexpr qint64 mostBytes = 8 << 20;

} // namespace

QJsonObject MessageLogModel::Entry::data() const
{
    return QJsonDocument::fromJson(payload).object();
}

QByteArray MessageLogModel::Entry::toJsonLine() const
{
    return HostMessage::toJsonLine(module, event, payload);
}

QByteArray MessageLogModel::Entry::toStampedJsonLine() const
{
    const QByteArray head = "{\"time\":\"" + time.toUTC().toString(Qt::ISODateWithMs).toLatin1()
        + "\",\"direction\":\"" + (toPlugin ? "toPlugin" : "fromPlugin") + "\",";
    return head + toJsonLine().mid(1);
}

MessageLogModel::MessageLogModel(PluginHost &plugin, QObject *parent) : QAbstractTableModel(parent)
{
    connect(&plugin, &PluginHost::sent, this, [this](const HostMessage &message) { append(true, message); });
    connect(&plugin, &PluginHost::received, this,
            [this](const HostMessage &message) { append(false, message); });
}

int MessageLogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

int MessageLogModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MessageLogModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::TextAlignmentRole && index.column() == SizeColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    const Entry &shown = m_entries.at(index.row());
    switch (index.column()) {
    case TimeColumn:
        return shown.time.toString(QStringLiteral("hh:mm:ss.zzz"));
    case DirectionColumn:
        return shown.toPlugin ? tr("→ plug-in") : tr("← host");
    case ModuleColumn:
        return shown.module;
    case EventColumn:
        return shown.event;
    default:
        return QLocale().toString(shown.payload.size());
    }
}

QVariant MessageLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    return QStringList {tr("Time"), tr("Direction"), tr("Module"), tr("Event"), tr("Bytes")}.at(section);
}

void MessageLogModel::clear()
{
    beginResetModel();
    m_entries.clear();
    m_bytes = 0;
    endResetModel();
}

Result MessageLogModel::save(const QString &fileName) const
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return Result::error(file.errorString());
    for (const Entry &saved : m_entries)
        file.write(saved.toStampedJsonLine() + '\n');
    return file.commit() ? Result::success() : Result::error(file.errorString());
}

void MessageLogModel::append(bool toPlugin, const HostMessage &message)
{
    if (m_entries.size() >= mostEntries || m_bytes >= mostBytes)
        dropOldest();
    beginInsertRows({}, int(m_entries.size()), int(m_entries.size()));
    m_entries.append({QDateTime::currentDateTime(), toPlugin, message.module, message.event,
                      QJsonDocument(message.data).toJson(QJsonDocument::Compact)});
    m_bytes += m_entries.last().payload.size();
    endInsertRows();
}

void MessageLogModel::dropOldest()
{
    // A tenth at once: removing single entries would move the whole vector for each message.
    const int count = int((m_entries.size() + 9) / 10);
    beginRemoveRows({}, 0, count - 1);
    for (int row = 0; row < count; ++row)
        m_bytes -= m_entries.at(row).payload.size();
    m_entries.remove(0, count);
    endRemoveRows();
}
