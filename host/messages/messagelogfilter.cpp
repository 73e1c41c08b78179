#include "host/messages/messagelogfilter.h"

#include "host/messages/messagelogmodel.h"

MessageLogFilter::MessageLogFilter(MessageLogModel &log, QObject *parent)
    : QSortFilterProxyModel(parent), m_log(log)
{
    setSourceModel(&log);
}

void MessageLogFilter::setEvent(const QString &event)
{
    m_event = event;
    invalidateFilter();
}

void MessageLogFilter::setText(const QString &text)
{
    m_text = text;
    invalidateFilter();
}

bool MessageLogFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (sourceParent.isValid())
        return false;
    const MessageLogModel::Entry &entry = m_log.entry(sourceRow);
    if (!m_event.isEmpty() && entry.event != m_event)
        return false;
    return m_text.isEmpty() || QString::fromUtf8(entry.toJsonLine()).contains(m_text, Qt::CaseInsensitive);
}
