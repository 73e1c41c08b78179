// The maintenance tab: sorting, filters, and the recording of services and complaints.

#include "garage/garageform.h"

#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "data/servicerecordstore.h"
#include "settings/modaldialog.h"
#include "settings/servicedialog.h"
#include "settings/servicereglamentmodel.h"
#include "ui_garageform.h"

#include <QJsonDocument>

namespace {

QDateTime currentMinute()
{
    const QDateTime now = QDateTime::currentDateTime();
    return QDateTime(now.date(), QTime(now.time().hour(), now.time().minute()));
}

QString caption(const MaintainanceItem &item)
{
    return item.model + QLatin1String("  ") + item.num;
}

ServiceRecord enteredRecord(const ServiceDialog &dialog, int carId)
{
    return {carId,           dialog.operationId(), dialog.dateTime(), dialog.personId(), dialog.personName(),
            dialog.comment()};
}

/// The car's complaint that is still open, or null.
const OperationStat *openComplaint(const MaintainanceItem &item)
{
    const auto complaint = item.ops.constFind(complaintOperationId);
    return complaint != item.ops.cend() && complaint->state == OpenState ? &*complaint : nullptr;
}

} // namespace

void GarageForm::on_cbSortKind_currentIndexChanged(int index)
{
    m_maintainanceModel.setSortMode(index);
}

void GarageForm::on_pbReloadMaintainance_clicked()
{
    requestReload();
}

void GarageForm::on_cbFilterModels_currentIndexChanged(QString arg1)
{
    m_maintainanceFilterProxy.setModelFilter(arg1, m_ui->cbFilterModels->currentIndex() != 0);
}

void GarageForm::on_cbFilterServiceState_currentIndexChanged(int index)
{
    m_maintainanceFilterProxy.setNeedsServiceOnly(index != 0);
}

void GarageForm::on_pushButton_clicked()
{
    m_maintainanceFilterProxy.resetFilters();
    m_ui->cbFilterModels->setCurrentIndex(0);
    m_ui->cbFilterServiceState->setCurrentIndex(0);
}

void GarageForm::reglamentChanged()
{
    m_maintainanceFilterProxy.refilter();
    m_ui->tvMaintainanceTable->viewport()->update();
}

void GarageForm::serviceClicked(QModelIndex index)
{
    addServiceOp(index);
}

void GarageForm::attentionClicked(QModelIndex index)
{
    const QModelIndex source = m_maintainanceFilterProxy.mapToSource(index);
    if (source.isValid())
        carComplain(m_maintainanceModel.itemAt(source.row()));
}

void GarageForm::complainAboutCar(const QJsonObject &jsonData)
{
    const int carId = jsonData.value(QLatin1String("carId")).toInt(noId);
    if (carId == noId)
        return;
    if (const MaintainanceItem *item = m_maintainanceModel.itemById(carId))
        carComplain(*item);
}

void GarageForm::prepareDialog(ServiceDialog &dialog, const QString &dialogCaption, int opId) const
{
    dialog.setTitleSuffix(dialogCaption);
    dialog.setOperations(m_operations);
    dialog.setOperation(opId);
    dialog.setPersonal(m_personalList);
}

void GarageForm::addServiceOp(const QModelIndex &index)
{
    const QPersistentModelIndex cell = m_maintainanceFilterProxy.mapToSource(index);
    if (!cell.isValid())
        return;
    const MaintainanceItem item = m_maintainanceModel.itemAt(cell.row());
    const int columnOpId = ColumnKeys::operationId(m_maintainanceModel.columnKey(cell.column()));

    const int file = m_shownFile;
    ModalDialog<ServiceDialog> dialog(this);
    prepareDialog(*dialog, caption(item), columnOpId);
    dialog->setDateTime(currentMinute());
    if (dialog.exec() != QDialog::Accepted || isFileReplaced(file))
        return;

    const ServiceRecord record = enteredRecord(*dialog, item.carId);
    const QString opName = dialog->operationName();
    ServiceRecordStore::addServiceDone(m_database, record);

    emit addRemoteOperation({{QStringLiteral("carId"), record.carId},
                             {QStringLiteral("opId"), record.opId},
                             {QStringLiteral("opName"), opName},
                             {QStringLiteral("opTime"), DateTimeText::forServiceAnnouncement(record.opTime)},
                             {QStringLiteral("pId"), record.personId},
                             {QStringLiteral("pName"), record.personName},
                             {QStringLiteral("comment"), record.comment}});

    // Shown at once; the counters follow with the reload.
    m_maintainanceModel.recordServiceDone(record.carId, record.opId, record.opTime, cell);
    requestReload();
}

void GarageForm::carComplain(const MaintainanceItem &item)
{
    const int carId = item.carId;
    if (ServiceDialog *open = m_complaintDialogs.value(carId)) {
        open->raise();
        open->activateWindow();
        return;
    }

    ModalDialog<ServiceDialog> dialog(this);
    dialog->setComplaintMode();
    prepareDialog(*dialog, caption(item), complaintOperationId);
    dialog->setDateTime(currentMinute());
    int shownId = noId;
    if (const OperationStat *complaint = openComplaint(item)) {
        shownId = complaint->localId;
        dialog->setComment(complaint->comment);
        dialog->setDateTime(complaint->lastDone);
    }

    m_complaintDialogs.insert(carId, dialog.get());
    const int file = m_shownFile;
    const bool accepted = dialog.exec() == QDialog::Accepted;
    if (!dialog.isOwnerAlive())
        return;
    m_complaintDialogs.remove(carId);
    if (!accepted || isFileReplaced(file))
        return;

    // A reload may have closed the complaint meanwhile, or read another one that the user has not seen.
    const ServiceRecord record = enteredRecord(*dialog, carId);
    if (shownId != noId && shownId == openComplaintId(carId))
        ServiceRecordStore::amendComplaint(m_database, shownId, record);
    else
        ServiceRecordStore::addComplaint(m_database, record);
    requestReload();
}

int GarageForm::openComplaintId(int carId)
{
    const MaintainanceItem *item = m_maintainanceModel.itemById(carId);
    const OperationStat *complaint = item ? openComplaint(*item) : nullptr;
    return complaint ? complaint->localId : noId;
}

void GarageForm::remoteServiceData(const QJsonObject &jsonData)
{
    const QByteArray text = jsonData.value(QLatin1String("data")).toString().toUtf8();
    const QJsonArray records = QJsonDocument::fromJson(text).array();
    if (!records.isEmpty())
        emit updateServiceTable(records, m_personalList);
}
