#include "settings/garagesettingsform.h"

#include "data/scheduletables.h"
#include "models/cellkeys.h"
#include "models/columntitles.h"
#include "models/columnwidthguard.h"
#include "models/currentrowtracker.h"
#include "models/emptytablehint.h"
#include "models/focusmark.h"
#include "models/hoverlayoutfilter.h"
#include "models/plaintext.h"
#include "settings/actionsmenu.h"
#include "settings/confirmation.h"
#include "settings/modaldialog.h"
#include "settings/reglamentsettingsdialog.h"
#include "ui_garagesettingsform.h"

#include <QHeaderView>
#include <QJsonArray>

namespace {

bool isLimitsKey(const QKeyEvent &event)
{
    const bool isKey = CellKeys::isActivation(event.key()) || event.key() == Qt::Key_F2;
    return isKey && !CellKeys::isModified(event);
}

} // namespace

GarageSettingsForm::GarageSettingsForm(QWidget *parent)
    : QWidget(parent)
    , m_database(QStringLiteral("garageSettingsDb"))
    , m_ui(std::make_unique<Ui::GarageSettingsForm>())
{
    m_ui->setupUi(this);
    m_designedSize = size();
    setUpTable(m_ui->tvServiceOperations, m_operationsModel);
    ActionsMenu::install(m_ui->tvServiceOperations);
    connect(&m_operationsModel, &ServiceOperationsModel::operationNameChanged, this,
            &GarageSettingsForm::opnameChange);
    setUpTable(m_ui->tvServiceReglament, m_reglamentModel);
    ignoreEditors(m_ui->tvServiceReglament);
    m_ui->tvServiceReglament->installEventFilter(this);
    setUpOperationTitles();
    setUpRowHeights();
    setUpHints();
    for (QTreeView *view : findChildren<QTreeView *>())
        FocusMark::install(view);
    constexpr int rereadIntervalMs = 100;
    m_rereadTimer.setInterval(rereadIntervalMs);
    connect(&m_rereadTimer, &QTimer::timeout, this, &GarageSettingsForm::rereadReglament);
    reloadReglamentModel();
}

GarageSettingsForm::~GarageSettingsForm() = default;

QSize GarageSettingsForm::sizeHint() const
{
    return m_designedSize;
}

bool GarageSettingsForm::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        m_ui->tvServiceReglament->doItemsLayout();
    const QModelIndex current = m_ui->tvServiceReglament->currentIndex();
    if (event->type() != QEvent::KeyPress || !isLimitsKey(*static_cast<QKeyEvent *>(event))
        || !m_reglamentModel.isOperationColumn(current.column()))
        return QWidget::eventFilter(watched, event);
    // Return would click the default button of the host's dialog. A key that is held would open a dialog
    // again as soon as one is closed.
    event->accept();
    if (!static_cast<QKeyEvent *>(event)->isAutoRepeat())
        serviceReglamentChange(current);
    return true; // this page may be destroyed
}

void GarageSettingsForm::setUpTable(QTreeView *view, ClearbackgroundTableModel &model)
{
    view->setItemDelegate(&m_gridDelegate);
    ColumnTitles::install(view);
    HoverLayoutFilter::install(view);
    CurrentRowTracker::install(view, &model);
    model.applyColumnWidths(view);
}

/// For a view without editors: it does not look for those that the delegate opens in the other view. Qt 6
/// would print a warning.
void GarageSettingsForm::ignoreEditors(const QTreeView *view)
{
    disconnect(&m_gridDelegate, &QAbstractItemDelegate::commitData, view, nullptr);
    disconnect(&m_gridDelegate, &QAbstractItemDelegate::closeEditor, view, nullptr);
}

void GarageSettingsForm::setUpOperationTitles()
{
    constexpr int mostLines = 3;
    QHeaderView *header = m_ui->tvServiceReglament->header();
    header->setMaximumHeight(header->sizeHint().height()
                             + (mostLines - 1) * header->fontMetrics().lineSpacing());
}

void GarageSettingsForm::setUpRowHeights()
{
    QTreeView *view = m_ui->tvServiceReglament;
    m_rowHeightTimer.setSingleShot(true);
    m_rowHeightTimer.setInterval(0);
    connect(&m_rowHeightTimer, &QTimer::timeout, view, &QTreeView::doItemsLayout);
    const auto layOut = [this] { m_rowHeightTimer.start(); };
    connect(view->header(), &QHeaderView::sectionResized, &m_rowHeightTimer, layOut);
    connect(&m_reglamentModel, &QAbstractItemModel::dataChanged, &m_rowHeightTimer, layOut);
}

void GarageSettingsForm::setUpHints()
{
    const auto install = [this](QTreeView *view, const QString &text) {
        EmptyTableHint::install(view, [=] {
            return m_rereadTimer.isActive() ? tr("База занята. Таблица появится, когда она освободится.")
                                            : text;
        });
    };
    install(m_ui->tvServiceOperations,
            tr("Здесь появятся сервисные операции: нажмите правую кнопку мыши и выберите «Добавить»."));
    install(m_ui->tvServiceReglament,
            tr("Здесь появятся модели машин, которые заведены в программе хронометража."));
}

bool GarageSettingsForm::followDatabase()
{
    m_database.ensureOpen();
    const bool isOtherFile = m_database.fileCount() != m_shownFile;
    // The tables may have been created after the file.
    bool wasBusy = false;
    if (isOtherFile || !m_operationsModel.hasStoredOperation()) {
        const QVector<ServiceOperation> operations = ScheduleTables::readOperations(m_database, &wasBusy);
        if (!wasBusy || m_operationsModel.hasStoredOperation())
            m_operationsModel.setStoredOperations(operations);
    }
    if (wasBusy)
        m_rereadTimer.start();
    else
        m_shownFile = m_database.fileCount();
    return isOtherFile;
}

bool GarageSettingsForm::followRefusedWrite()
{
    if (m_database.diskFaultCount() == m_shownDiskFaults)
        return false;
    const QVector<ServiceOperation> operations = ScheduleTables::readOperations(m_database);
    // None if the file cannot be read either.
    if (!operations.isEmpty()) {
        m_operationsModel.setStoredOperations(operations);
        m_shownDiskFaults = m_database.diskFaultCount();
    }
    return true;
}

void GarageSettingsForm::reloadReglamentModel()
{
    showReglament(readReglament());
}

void GarageSettingsForm::rereadReglament()
{
    // An attempt that waited for the lock would block the host.
    const GarageDatabase::NoWaiting noWaiting(m_database);
    const Reglament reglament = readReglament();
    if (!m_rereadTimer.isActive())
        showReglament(reglament);
}

GarageSettingsForm::Reglament GarageSettingsForm::readReglament()
{
    m_rereadTimer.stop();
    followDatabase();
    followRefusedWrite();

    Reglament reglament;
    bool wasBusy = m_rereadTimer.isActive();
    if (!wasBusy)
        reglament.models = ScheduleTables::readCarModels(m_database, &wasBusy);
    if (!wasBusy)
        reglament.limits = ScheduleTables::readLimits(m_database, &wasBusy);
    if (wasBusy)
        m_rereadTimer.start();
    return reglament;
}

void GarageSettingsForm::showReglament(const Reglament &reglament)
{
    const ColumnWidthGuard widths(m_ui->tvServiceReglament, m_reglamentModel);
    const ClearbackgroundTableModel::LayoutChange change(m_reglamentModel);
    m_reglamentModel.clear();
    for (const QString &model : reglament.models)
        m_reglamentModel.addModel(model);
    for (int row = 0; row < m_operationsModel.rowCount(); ++row) {
        const ServiceOperation &operation = m_operationsModel.operationAt(row);
        if (m_operationsModel.isStored(row))
            m_reglamentModel.addOperation(operation.id, operation.name);
    }
    for (const StoredLimit &limit : reglament.limits)
        m_reglamentModel.setLimits(limit.model, limit.opId, limit.limits);
}

void GarageSettingsForm::opnameChange(int opId, const QString &newName)
{
    const bool isNew = m_operationsModel.isUnstored(opId);
    // An editor that only lost the focus commits an empty name.
    if (isNew && newName.isEmpty())
        return;

    const bool isOtherFile = followDatabase();
    if (isNew) {
        if (const std::optional<int> id = ScheduleTables::addOperation(m_database, newName))
            m_operationsModel.setNewOperationId(*id);
    } else if (!isOtherFile) {
        ScheduleTables::renameOperation(m_database, opId, newName);
    }
    reloadReglamentModel();
    announceOperations();
}

void GarageSettingsForm::announceOperations()
{
    followRefusedWrite();
    QJsonArray opsList;
    for (int row = 0; row < m_operationsModel.rowCount(); ++row) {
        const ServiceOperation &operation = m_operationsModel.operationAt(row);
        opsList.append(
            QJsonObject {{QStringLiteral("id"), operation.id}, {QStringLiteral("opName"), operation.name}});
    }
    emit pluginSignal(QStringLiteral("garage_settings"), QStringLiteral("service_ops_changed"),
                      {{QStringLiteral("opsList"), opsList}});
}

void GarageSettingsForm::on_actionAddOperation_triggered()
{
    const QModelIndex name = m_operationsModel.addEmptyOperation();
    m_ui->tvServiceOperations->setCurrentIndex(name);
    m_ui->tvServiceOperations->edit(name);
}

void GarageSettingsForm::on_actionRemoveOperation_triggered()
{
    removeServiceOp();
}

void GarageSettingsForm::removeServiceOp()
{
    const QModelIndex current = m_ui->tvServiceOperations->currentIndex();
    if (!current.isValid())
        return;
    const QPersistentModelIndex chosen = current;
    // The focus leaves an open editor, which may name or store the row: its name and id are read after.
    m_ui->tvServiceOperations->setFocus();
    if (!chosen.isValid())
        return;
    const QString name = PlainText::shortName(m_operationsModel.operationAt(chosen.row()).name);
    if (!confirmDeletion(this, name.isEmpty() ? tr("Операция без названия") : name) || followDatabase()
        || !chosen.isValid())
        return;
    // The reglament keeps the operation's column and limits until it is read again.
    if (m_operationsModel.isStored(chosen.row()))
        ScheduleTables::removeOperation(m_database, m_operationsModel.operationAt(chosen.row()).id);
    m_operationsModel.removeOperationAt(chosen.row());
    announceOperations();
}

void GarageSettingsForm::on_tvServiceReglament_doubleClicked(QModelIndex index)
{
    serviceReglamentChange(index);
}

void GarageSettingsForm::serviceReglamentChange(const QModelIndex &index)
{
    if (!index.isValid() || !m_reglamentModel.isOperationColumn(index.column()))
        return;
    const ReglamentLimit *record = m_reglamentModel.limitAt(index.row(), index.column());
    // Limits that were never read must not overwrite those in the file.
    if (!record || m_rereadTimer.isActive())
        return;
    const ReglamentLimit limit = *record;
    const QString model = m_reglamentModel.entries().at(index.row()).model;
    const QPersistentModelIndex cell = index;

    ModalDialog<ReglamentSettingsDialog> dialog(this, ModalDialog<ReglamentSettingsDialog>::WithoutParent);
    dialog->setOperationName(limit.opName);
    dialog->setModelName(model);
    dialog->setLimits(limit.limits);
    if (dialog.exec() != QDialog::Accepted)
        return;

    if (followDatabase()) {
        reloadReglamentModel();
        return;
    }
    if (m_rereadTimer.isActive())
        return;
    ScheduleTables::storeLimit(m_database, {model, limit.opId, dialog->limits()});
    m_reglamentModel.setLimits(cell, limit.opId, dialog->limits());
    if (followRefusedWrite())
        reloadReglamentModel();
}
