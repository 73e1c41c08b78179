#pragma once

#include "data/garagedatabase.h"
#include "settings/serviceoperationsmodel.h"
#include "settings/servicereglamentmodel.h"
#include "settings/settingsdelegate.h"

#include <QJsonObject>
#include <QTimer>
#include <QWidget>

#include <memory>

class QTreeView;

namespace Ui {
class GarageSettingsForm;
}

/// The page of the host's settings dialog on which service operations and their limits per car model are
/// edited. Every change is stored at once and waits while the database is busy. What could not be read
/// because it was busy is read again until it succeeds, and no limit is stored before. GUI thread only.
class GarageSettingsForm final : public QWidget
{
    Q_OBJECT
public:
    explicit GarageSettingsForm(QWidget *parent = nullptr);
    ~GarageSettingsForm() override;

    /// The initial size of the page, so that the host's layouts provide it.
    QSize sizeHint() const override;
    /// Watches the schedule's table: some keys open the limits dialog of its current cell.
    bool eventFilter(QObject *watched, QEvent *event) override;

    const ServiceReglamentModel &reglamentModel() const { return m_reglamentModel; }
    /// Reads the car models and their limits again; the operations remain those of the page.
    void reloadReglamentModel();

signals:
    /// A message for the host.
    void pluginSignal(QString m, QString e, QJsonObject jsonData);

private slots: // connected by name
    void on_tvServiceReglament_doubleClicked(QModelIndex index);
    void on_actionAddOperation_triggered();
    void on_actionRemoveOperation_triggered();

private:
    void setUpTable(QTreeView *view, ClearbackgroundTableModel &model);
    /// Operation names of any length are column titles: long ones are elided, and the height of the header is
    /// limited.
    void ignoreEditors(const QTreeView *view);
    void setUpOperationTitles();
    /// The rows are laid out again when a text or a column's width changes how many lines they need.
    void setUpRowHeights();
    /// What the empty tables say.
    void setUpHints();
    /// Shows the operations of the file that the connection has open now. True if the page showed another
    /// file: then the user's choice must not be written.
    bool followDatabase();
    /// Shows the stored operations again if the disk refused a write. True if it did.
    bool followRefusedWrite();
    /// What the schedule's table shows beside the operations.
    struct Reglament
    {
        QStringList models;
        QVector<StoredLimit> limits;
    };
    /// Follows the database as well. If it was busy, the timer is active afterwards and what could not be
    /// read is empty.
    Reglament readReglament();
    void showReglament(const Reglament &reglament);
    void rereadReglament();
    void opnameChange(int opId, const QString &newName);
    void removeServiceOp();
    void serviceReglamentChange(const QModelIndex &index);
    void announceOperations();

    ServiceReglamentModel m_reglamentModel;
    ServiceOperationsModel m_operationsModel;
    GarageDatabase m_database;
    int m_shownFile = 0; ///< the database's fileCount() whose operations are shown
    int m_shownDiskFaults = 0; ///< the database's diskFaultCount() when the operations were read
    SettingsDelegate m_gridDelegate;
    QTimer m_rowHeightTimer; ///< active while the schedule's rows are to be laid out
    QTimer m_rereadTimer; ///< active while what is shown could not be read because the file was busy
    const std::unique_ptr<Ui::GarageSettingsForm> m_ui;
    QSize m_designedSize;
};
