#include "hostcheck/findingswindow.h"

#include "hostcheck/findings.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

enum Column { SeverityColumn, IdColumn, SeenColumn, ColumnCount };

QString summaryOf(const Findings &findings)
{
    const int count = int(findings.all().size());
    const QString total =
        count == 0 ? QStringLiteral("No findings so far.") : QStringLiteral("Findings: %1.").arg(count);
    return findings.reportPath().isEmpty()
        ? total + QStringLiteral(" Set HOSTCHECK_REPORT to a file name for a report in JSON lines.")
        : total + QStringLiteral(" Report: %1").arg(findings.reportPath());
}

} // namespace

FindingsWindow::FindingsWindow(const Findings &findings)
    : m_findings(findings)
    , m_summary(new QLabel)
    , m_table(new QTableWidget(0, ColumnCount))
    , m_details(new QLabel)
{
    setObjectName(QStringLiteral("hostcheckWindow"));
    m_summary->setObjectName(QStringLiteral("summaryLabel"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_details->setObjectName(QStringLiteral("detailsLabel"));
    m_details->setTextFormat(Qt::PlainText);
    m_details->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_details->setWordWrap(true);
    m_table->setObjectName(QStringLiteral("findingsTable"));
    m_table->setHorizontalHeaderLabels(
        {QStringLiteral("Severity"), QStringLiteral("Id"), QStringLiteral("What was seen")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->verticalHeader()->setVisible(false);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(SeenColumn, QHeaderView::Stretch);
    connect(m_table, &QTableWidget::currentCellChanged, this, &FindingsWindow::showDetails);

    auto *button = new QPushButton(QStringLiteral("Close and show this tab"));
    button->setObjectName(QStringLiteral("checkTabButton"));
    button->setToolTip(QStringLiteral("Sends close_tab, then insert_tab, and checks that the host follows."));
    connect(button, &QPushButton::clicked, this, &FindingsWindow::tabCheckRequested);
    auto *top = new QHBoxLayout;
    top->addWidget(m_summary, 1);
    top->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_details);
    // Queued: a finding may be made while the host is moving or deleting these widgets.
    connect(&findings, &Findings::added, this, &FindingsWindow::update, Qt::QueuedConnection);
    update();
}

void FindingsWindow::update()
{
    if (!m_summary || !m_table)
        return;
    m_summary->setText(summaryOf(m_findings));
    while (m_table->rowCount() < m_findings.all().size())
        addRow(m_table->rowCount());
    if (m_table->currentRow() < 0 && m_table->rowCount() > 0)
        m_table->selectRow(0);
}

void FindingsWindow::addRow(int row)
{
    const Finding &finding = m_findings.all().at(row);
    const QStringList texts {severityName(finding.kind->severity), finding.kind->id, finding.seen};
    m_table->insertRow(row);
    for (int column = 0; column < ColumnCount; ++column)
        m_table->setItem(row, column, new QTableWidgetItem(texts.at(column)));
}

void FindingsWindow::showDetails(int row)
{
    if (!m_details || row < 0)
        return;
    const Finding &finding = m_findings.all().at(row);
    m_details->setText(QStringLiteral("%1  %2\nWhat it breaks: %3\nGuide: docs/%4")
                           .arg(finding.time.toString(QStringLiteral("hh:mm:ss")), finding.seen,
                                finding.kind->breaks, finding.kind->guide));
}
