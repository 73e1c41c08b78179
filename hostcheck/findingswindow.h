#pragma once

#include <QLabel>
#include <QPointer>
#include <QTableWidget>

class Findings;

/// The tab: the findings so far. The list is empty as long as the host does everything as the guide says.
class FindingsWindow final : public QWidget
{
    Q_OBJECT
public:
    explicit FindingsWindow(const Findings &findings);

signals:
    /// The user wants to see again how the host closes and shows the tab.
    void tabCheckRequested();

private:
    void update();
    void addRow(int row);
    void showDetails(int row);

    const Findings &m_findings;
    const QPointer<QLabel> m_summary; ///< the host can have deleted any of these
    const QPointer<QTableWidget> m_table;
    const QPointer<QLabel> m_details; ///< of the current finding
};
