// The service log tab: filters, and the actions on a record.

#include "garage/garageform.h"

#include "data/datetimetext.h"
#include "models/plaintext.h"
#include "settings/confirmation.h"
#include "settings/modaldialog.h"
#include "settings/servicedialog.h"
#include "ui_garageform.h"

#include <algorithm>
#include <iterator>

namespace {

/// Car, operation and time; what the record does not have is left out.
QString recordName(const ServiceLogItem &record)
{
    const QString car =
        PlainText::shortName(record.model) + QLatin1String("  ") + PlainText::shortName(record.num);
    QString operation = PlainText::shortName(record.opName);
    if (record.opId == complaintOperationId)
        operation = record.state == OpenState ? GarageForm::tr("Жалоба") : GarageForm::tr("Прочее");
    QStringList parts {car.trimmed(), operation, DateTimeText::forDisplay(record.opTime.toLocalTime())};
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

} // namespace

void GarageForm::on_pbReloadLog_clicked()
{
    requestReload();
}

void GarageForm::on_cbLogFilterModels_activated(int index)
{
    m_serviceLogFilter.setModelFilter(index > 0 ? m_ui->cbLogFilterModels->itemText(index) : QString());
}

void GarageForm::on_leLogFilterNum_textEdited(QString arg1)
{
    m_serviceLogFilter.setNumberFilter(arg1);
}

void GarageForm::on_cbLogFilterOperation_activated(int index)
{
    m_serviceLogFilter.setOperationFilter(m_ui->cbLogFilterOperation->itemData(index).toInt());
}

void GarageForm::on_pushButton_2_clicked()
{
    m_ui->cbLogFilterModels->setCurrentIndex(0);
    m_ui->leLogFilterNum->clear();
    m_ui->cbLogFilterOperation->setCurrentIndex(0);
    m_serviceLogFilter.reset();
}

const ServiceLogItem *GarageForm::currentLogItem() const
{
    const QModelIndex index = m_serviceLogFilter.mapToSource(m_ui->tvServiceLog->currentIndex());
    return index.isValid() ? &m_serviceLogModel.itemAt(index.row()) : nullptr;
}

void GarageForm::on_actionDeleteMaintainanceItem_triggered()
{
    const ServiceLogItem *current = currentLogItem();
    if (!current)
        return;
    const ServiceLogItem record = *current;
    const int file = m_shownFile;
    if (!confirmDeletion(this, recordName(record)) || isFileReplaced(file))
        return;
    // A reload may have moved or removed the record while the question was open.
    m_serviceLogModel.removeItem(m_serviceLogModel.rowOf(record.id));
    m_recordsBeingDeleted.insert(record.id);
    emit deleteOperation(record.id, record.remoteId);
}

void GarageForm::handleLoaderMessage(const QString &module, const QString &event, const QJsonObject &jsonData)
{
    Q_UNUSED(module)
    // All reloads that come after this message were read after the deletion.
    if (event == QLatin1String("remote_service_delete"))
        m_recordsBeingDeleted.remove(jsonData.value(QLatin1String("localId")).toInt(noId));
}

QList<ServiceLogItem> GarageForm::withoutRecordsBeingDeleted(const QList<ServiceLogItem> &items) const
{
    if (m_recordsBeingDeleted.isEmpty())
        return items;
    QList<ServiceLogItem> remaining;
    remaining.reserve(items.size());
    std::copy_if(items.cbegin(), items.cend(), std::back_inserter(remaining),
                 [this](const ServiceLogItem &item) { return !m_recordsBeingDeleted.contains(item.id); });
    return remaining;
}

void GarageForm::on_actionDoneOperation_triggered()
{
    const ServiceLogItem *current = currentLogItem();
    if (!current)
        return;
    const ServiceLogItem record = *current;
    const int file = m_shownFile;

    ModalDialog<ServiceDialog> dialog(this);
    prepareDialog(*dialog, record.model + QLatin1String("  ") + record.num, record.opId);
    dialog->setDateTime(record.opTime.isValid() ? record.opTime.toLocalTime() : currentMinute());
    dialog->setComment(record.comment);
    if (dialog.exec() != QDialog::Accepted || isFileReplaced(file))
        return;

    // Stored when the remote side returns it.
    emit addRemoteOperation(
        {{QStringLiteral("carId"), record.carId},
         {QStringLiteral("opId"), dialog->operationId()},
         {QStringLiteral("opName"), dialog->operationName()},
         {QStringLiteral("opDoneDateTime"), DateTimeText::forJsonWithZone(dialog->dateTime())},
         {QStringLiteral("operatorId"), dialog->personId()},
         {QStringLiteral("operatorName"), dialog->personName()},
         {QStringLiteral("comment"), dialog->comment()},
         {QStringLiteral("localId"), record.id},
         {QStringLiteral("updateFromLocal"), true},
         {QStringLiteral("opDoneDateTimeWeb"), DateTimeText::forJson(dialog->dateTime())}});
}
