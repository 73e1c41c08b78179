#include "hostcheck/messagespage.h"

#include "hostcheck/protocol.h"

#include <QHeaderView>
#include <QLabel>
#include <QVBoxLayout>

namespace {
enum Column { EventColumn, CountColumn, ColumnCount };
} // namespace

MessagesPage::MessagesPage() : m_table(new QTableWidget(0, ColumnCount))
{
    setObjectName(QStringLiteral("hostcheckPage"));
    m_table->setObjectName(QStringLiteral("messagesTable"));
    m_table->setHorizontalHeaderLabels({QStringLiteral("Event"), QStringLiteral("Came")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->setVisible(false);
    m_table->horizontalHeader()->setSectionResizeMode(EventColumn, QHeaderView::Stretch);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Messages of the host so far:")));
    layout->addWidget(m_table, 1);
    for (const QString &event : Protocol::understoodEvents())
        setCount(event, 0);
}

void MessagesPage::setCount(const QString &event, int count)
{
    if (!m_table)
        return;
    const QList<QTableWidgetItem *> found = m_table->findItems(event, Qt::MatchExactly);
    const int row = found.isEmpty() ? m_table->rowCount() : found.constFirst()->row();
    if (found.isEmpty()) {
        m_table->insertRow(row);
        m_table->setItem(row, EventColumn, new QTableWidgetItem(event));
    }
    m_table->setItem(row, CountColumn, new QTableWidgetItem(QString::number(count)));
}
