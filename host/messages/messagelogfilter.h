#pragma once

#include <QSortFilterProxyModel>

class MessageLogModel;

/// Filters the message log by event name and by text anywhere in the message.
class MessageLogFilter final : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit MessageLogFilter(MessageLogModel &log, QObject *parent = nullptr);

    /// An empty name or text matches every message.
    void setEvent(const QString &event);
    void setText(const QString &text);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    const MessageLogModel &m_log;
    QString m_event;
    QString m_text;
};
