#pragma once

#include "data/garagedatabase.h"
#include "data/garageupdater.h"
#include "models/carslistmodel.h"
#include "models/griddelegate.h"
#include "models/maintainancefilterproxy.h"
#include "models/maintainancemodel.h"
#include "models/servicelogfilter.h"
#include "models/servicelogmodel.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include <memory>
#include <optional>

class QMenu;
class QTreeView;
class ServiceDialog;
class ServiceReglamentModel;
struct ServiceRecord;

namespace Ui {
class GarageForm;
}

/// The garage window with its three tabs: cars in work, maintenance, service log. Shows the loader's results,
/// writes the services and complaints that the user records, and sends all other requests to the host. GUI
/// thread only.
class GarageForm final : public QWidget
{
    Q_OBJECT
public:
    explicit GarageForm(QWidget *parent = nullptr);
    ~GarageForm() override;

    GarageUpdater &updater() { return m_updater; }

    /// The limits that the maintenance table uses; must outlive the window.
    void setReglament(const ServiceReglamentModel &reglament);
    /// The host's people, offered by the dialogs.
    void setPersonalList(const QJsonArray &personalList);
    /// Requests a reload from the loader: emits reloadGarageStats().
    void requestReload();
    /// Fills both car lists from the host's cars message.
    void loadCars(const QJsonObject &jsonData);

    /// Applies a remote request and fills the answer to it; the answer stays empty if there is none.
    QJsonObject remoteControlRequest(QJsonObject answer, const QJsonObject &jsonData);
    /// Passes the records in "data", a JSON text, to the loader; does nothing if there are none.
    void remoteServiceData(const QJsonObject &jsonData);
    /// Opens the complaint dialog for the car "carId"; does nothing for an unknown one.
    void complainAboutCar(const QJsonObject &jsonData);

signals:
    void closeGarage();
    void reloadGarageStats();
    /// Requests the storage of remote service records; the name is kept on purpose, because it is a contract.
    void updateServiceTable(QJsonArray opsList, QJsonArray personalList);
    void addRemoteOperation(QJsonObject jsonOperation);
    /// Requests the deletion of a service record. `opId` is the record's id; names kept on purpose, because
    /// they are a contract.
    void deleteOperation(int opId, int remoteId);
    void pluginSignal(QString event, QJsonObject jsonData);

public slots:
    void reloadMaintainanceData(QList<MaintainanceModel::MaintainanceItem> mlist,
                                QList<ServiceLogModel::ServiceLogItem> serviceLog,
                                QMap<int, QString> operationsList);

private slots: // connected by name, except serviceClicked and attentionClicked
    void on_pbCloseGarage_clicked();
    void on_pbCloseGarage_2_clicked();
    void on_pbCloseGarage_3_clicked();
    void serviceClicked(QModelIndex index);
    void attentionClicked(QModelIndex index);
    void on_cbSortKind_currentIndexChanged(int index);
    void on_pbReloadMaintainance_clicked();
    void on_pbReloadLog_clicked();
    void on_cbFilterModels_currentIndexChanged(QString arg1);
    void on_cbFilterServiceState_currentIndexChanged(int index);
    void on_pushButton_clicked(); // resets the table's filters; named by contract, as is the button
    void on_actionDeleteMaintainanceItem_triggered();
    void on_actionDoneOperation_triggered();
    void on_pbRemoveAvailable_clicked();
    void on_pbSetAvailable_clicked();
    void on_tvAvailableCars_doubleClicked(QModelIndex index);
    void on_tvAllCars_doubleClicked(QModelIndex index);
    void on_pushButton_2_clicked(); // resets the log's filters; named by contract, as is the button
    void on_cbLogFilterModels_activated(int index);
    void on_leLogFilterNum_textEdited(QString arg1);
    void on_cbLogFilterOperation_activated(int index);

protected:
    void showEvent(QShowEvent *event) override;

private:
    /// True, after requesting a reload, if the database file was replaced: ids from the previous file must
    /// not be used. `file` is m_shownFile at the time when they were read.
    bool isFileReplaced(int file);

    // Construction and reload.
    void setUpMaintainanceTab();
    void setUpCarsTab();
    void setUpServiceLogTab();
    void setUpHints();
    void connectLoader();
    void refillModelCombos(const QStringList &models);
    void refillOperationCombo();
    void refillMaintainanceTable(const QList<MaintainanceItem> &items);
    void refillServiceLog(const QList<ServiceLogItem> &items);

    // Availability.
    void changeAvailability(QTreeView *view, const CarsListModel &model, bool available);

    // Maintenance.
    void reglamentChanged();
    /// The actions of the hover buttons, for a cell of the table.
    void offerCarActions(QMenu &menu, const QModelIndex &index);
    /// Both for a cell of the model; they do nothing for an invalid one.
    void addServiceOp(const QModelIndex &clicked);
    void complainAbout(const QModelIndex &cell);
    void carComplain(const MaintainanceItem &item);
    std::optional<OperationStat> openComplaint(int carId);
    void storeComplaint(int shownId, const ServiceRecord &record);
    void handleComplaintStored(int localId, const ServiceRecord &record);
    void forgetStoredComplaintAfterReload(int carId);
    void prepareDialog(ServiceDialog &dialog, const QString &caption, int opId) const;
    static QDateTime currentMinute();

    // Service log.
    const ServiceLogItem *currentLogItem() const;
    void handleLoaderMessage(const QString &module, const QString &event, const QJsonObject &jsonData);
    QList<ServiceLogItem> withoutRecordsBeingDeleted(const QList<ServiceLogItem> &items) const;

    MaintainanceModel m_maintainanceModel;
    MaintainanceFilterProxy m_maintainanceFilterProxy;
    CarsListModel m_allCarsModel;
    CarsListModel m_availableCarsModel;
    ServiceLogModel m_serviceLogModel;
    ServiceLogFilter m_serviceLogFilter;
    GarageDatabase m_database;
    int m_shownFile = 0; ///< the database's fileCount() when the shown records came
    GarageUpdater m_updater;
    QJsonArray m_personalList;
    const std::unique_ptr<Ui::GarageForm> m_ui;

    GridDelegate m_gridDelegate;
    const ServiceReglamentModel *m_reglament = nullptr;
    bool m_isFilled = false; ///< a reload has come
    ServiceOperations m_operations; ///< of the last reload
    QHash<int, QPointer<ServiceDialog>> m_complaintDialogs; ///< open ones, by car id
    QHash<int, OperationStat> m_storedComplaints; ///< by car id, until a reload has read them
    QSet<int> m_recordsBeingDeleted; ///< local ids that the loader has not deleted yet
};
