#pragma once

#include <QPointer>
#include <QTableWidget>

/// The settings page: how often each event of the module came from the host.
class MessagesPage final : public QWidget
{
    Q_OBJECT
public:
    MessagesPage();

    void setCount(const QString &event, int count);

private:
    const QPointer<QTableWidget> m_table; ///< null if the host deleted it
};
