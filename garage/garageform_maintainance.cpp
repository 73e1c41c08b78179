// The maintenance tab: sorting, filters, and the recording of services and complaints.

#include "garage/garageform.h"

#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "data/servicerecordstore.h"
#include "resources/garageresources.h"
#include "settings/modaldialog.h"
#include "settings/servicedialog.h"
#include "settings/servicereglamentmodel.h"
#include "ui_garageform.h"

#include <QApplication>
#include <QJsonDocument>
#include <QMenu>

namespace {

QString caption(const MaintainanceItem &item)
{
    return item.model + QLatin1String("  ") + item.num;
}

ServiceRecord enteredRecord(const ServiceDialog &dialog, int carId)
{
    return {carId,           dialog.operationId(), dialog.dateTime(), dialog.personId(), dialog.personName(),
            dialog.comment()};
}

} // namespace

QDateTime GarageForm::currentMinute()
{
    const QDateTime now = QDateTime::currentDateTime();
    return QDateTime(now.date(), QTime(now.time().hour(), now.time().minute()));
}

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
    addServiceOp(m_maintainanceFilterProxy.mapToSource(index));
}

void GarageForm::attentionClicked(QModelIndex index)
{
    complainAbout(m_maintainanceFilterProxy.mapToSource(index));
}

void GarageForm::offerCarActions(QMenu &menu, const QModelIndex &index)
{
    // Both follow the car through a reload under the open menu.
    const QPersistentModelIndex cell = m_maintainanceFilterProxy.mapToSource(index);
    const int file = m_shownFile;
    using CellAction = void (GarageForm::*)(const QModelIndex &);
    const auto offer = [&](const QString &icon, const QString &text, CellAction action) {
        connect(menu.addAction(garageIcon(icon), text), &QAction::triggered, this, [=] {
            if (m_shownFile == file)
                (this->*action)(cell);
        });
    };
    offer(QStringLiteral(":/icons/iconService"), QGarageTreeView::serviceText(), &GarageForm::addServiceOp);
    offer(QStringLiteral(":/icons/iconAttention"), QGarageTreeView::attentionText(),
          &GarageForm::complainAbout);
}

void GarageForm::complainAbout(const QModelIndex &cell)
{
    if (cell.isValid())
        carComplain(m_maintainanceModel.itemAt(cell.row()));
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

void GarageForm::addServiceOp(const QModelIndex &clicked)
{
    if (!clicked.isValid())
        return;
    const QPersistentModelIndex cell = clicked;
    const MaintainanceItem item = m_maintainanceModel.itemAt(cell.row());
    const int columnOpId = ColumnKeys::operationId(m_maintainanceModel.columnKey(cell.column()));

    const int file = m_shownFile;
    ModalDialog<ServiceDialog> dialog(this);
    prepareDialog(*dialog, caption(item), columnOpId);
    dialog->setDateTime(QDateTime::currentDateTime());
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
    if (QWidget *open = m_complaintDialogs.value(carId)) {
        // Another dialog above it may have the focus.
        QWidget *active = QApplication::activeModalWidget();
        QWidget *dialogWithInput = active ? active : open;
        dialogWithInput->raise();
        dialogWithInput->activateWindow();
        return;
    }

    ModalDialog<ServiceDialog> dialog(this);
    dialog->setComplaintMode();
    prepareDialog(*dialog, caption(item), complaintOperationId);
    dialog->setDateTime(QDateTime::currentDateTime());
    int shownId = noId;
    if (const std::optional<OperationStat> complaint = openComplaint(carId)) {
        shownId = complaint->localId;
        dialog->setComment(complaint->comment);
        dialog->setDateTime(complaint->lastDone.toLocalTime());
    }

    m_complaintDialogs.insert(carId, dialog.get());
    const int file = m_shownFile;
    const bool accepted = dialog.exec() == QDialog::Accepted;
    if (!dialog.isOwnerAlive())
        return;
    m_complaintDialogs.remove(carId);
    if (!accepted || isFileReplaced(file))
        return;

    storeComplaint(shownId, enteredRecord(*dialog, carId));
    requestReload();
    forgetStoredComplaintAfterReload(carId);
}

void GarageForm::storeComplaint(int shownId, const ServiceRecord &record)
{
    // A reload may have closed the complaint meanwhile, or read another that the user has not seen. A
    // failed reload has emptied the table, so the state of the car is unknown.
    const std::optional<OperationStat> open = openComplaint(record.carId);
    const bool isKnown = open || m_maintainanceModel.itemById(record.carId);
    const bool isStillOpen = !isKnown || (open && open->localId == shownId);
    if (shownId != noId && isStillOpen) {
        ServiceRecordStore::amendComplaint(m_database, shownId, record);
        handleComplaintStored(shownId, record);
        return;
    }
    const int addedId = ServiceRecordStore::addComplaint(m_database, record);
    if (addedId != noId && record.opId == complaintOperationId)
        handleComplaintStored(addedId, record);
}

void GarageForm::handleComplaintStored(int localId, const ServiceRecord &record)
{
    OperationStat complaint;
    complaint.opId = complaintOperationId;
    complaint.lastDone = record.opTime;
    complaint.state = OpenState;
    complaint.comment = record.comment;
    complaint.localId = localId;
    m_storedComplaints.insert(record.carId, complaint);
}

void GarageForm::forgetStoredComplaintAfterReload(int carId)
{
    // The first call is queued behind the reload, the second one behind its result.
    QMetaObject::invokeMethod(
        &m_updater,
        [this, carId] {
            QMetaObject::invokeMethod(
                this, [this, carId] { m_storedComplaints.remove(carId); }, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

std::optional<OperationStat> GarageForm::openComplaint(int carId)
{
    const auto stored = m_storedComplaints.constFind(carId);
    if (stored != m_storedComplaints.cend())
        return *stored;
    const MaintainanceItem *item = m_maintainanceModel.itemById(carId);
    const OperationStat complaint = item ? item->operation(complaintOperationId) : OperationStat();
    return item && item->ops.contains(complaintOperationId) && complaint.state == OpenState
        ? std::optional<OperationStat>(complaint)
        : std::nullopt;
}

void GarageForm::remoteServiceData(const QJsonObject &jsonData)
{
    const QByteArray text = jsonData.value(QLatin1String("data")).toString().toUtf8();
    const QJsonArray records = QJsonDocument::fromJson(text).array();
    if (!records.isEmpty())
        emit updateServiceTable(records, m_personalList);
}
