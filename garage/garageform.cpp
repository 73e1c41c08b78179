#include "garage/garageform.h"

#include "garage/comboentries.h"
#include "models/columntitles.h"
#include "models/columnwidthguard.h"
#include "models/currentrowtracker.h"
#include "models/emptytablehint.h"
#include "models/focusmark.h"
#include "models/hoverlayoutfilter.h"
#include "models/maintainancedelegate.h"
#include "models/scrollpositionguard.h"
#include "resources/garageresources.h"
#include "settings/actionsmenu.h"
#include "settings/cellmenu.h"
#include "settings/servicereglamentmodel.h"
#include "ui_garageform.h"

#include <QComboBox>
#include <QHeaderView>
#include <QSet>
#include <QSignalBlocker>

namespace {

/// Every car model once, in the order of first appearance.
QStringList modelNames(const QList<MaintainanceItem> &items)
{
    QStringList names;
    QSet<QString> seen;
    for (const MaintainanceItem &item : items) {
        if (seen.contains(item.model))
            continue;
        seen.insert(item.model);
        names.append(item.model);
    }
    return names;
}

} // namespace

GarageForm::GarageForm(QWidget *parent)
    : QWidget(parent)
    , m_maintainanceModel(this)
    , m_maintainanceFilterProxy(this)
    , m_allCarsModel(this)
    , m_availableCarsModel(this)
    , m_serviceLogModel(this)
    , m_serviceLogFilter(this)
    , m_database(QStringLiteral("maintainanceDbReader"))
    , m_ui(std::make_unique<Ui::GarageForm>())
{
    m_maintainanceModel.setObjectName(QStringLiteral("maintainanceModel"));
    // The spelling is kept on purpose, because hosts and tests find the proxy by this name.
    m_maintainanceFilterProxy.setObjectName(QStringLiteral("maintaincancFilterProxy"));

    m_ui->setupUi(this);
    for (QTreeView *view : findChildren<QTreeView *>())
        HoverLayoutFilter::install(view);
    setUpMaintainanceTab();
    setUpCarsTab();
    setUpServiceLogTab();
    setUpHints();
    for (QTreeView *view : findChildren<QTreeView *>())
        FocusMark::install(view);
    m_ui->tabWidget->setCurrentWidget(m_ui->tabCars);
    connectLoader();
}

GarageForm::~GarageForm() = default;

void GarageForm::setUpMaintainanceTab()
{
    QTreeView *view = m_ui->tvMaintainanceTable;
    // The view requests an order as soon as sorting is enabled: by then the model must be set, and the sort
    // indicator must be on the column of the initial order.
    m_maintainanceFilterProxy.setMaintainanceModel(&m_maintainanceModel);
    m_maintainanceModel.setRowNumberProxy(&m_maintainanceFilterProxy);
    auto *delegate = new MaintainanceDelegate(view);
    delegate->setServiceLog(&m_serviceLogModel);
    view->setItemDelegate(delegate);
    ColumnTitles::install(view);
    CurrentRowTracker::install(view, &m_maintainanceFilterProxy);
    view->header()->setSortIndicator(MaintainanceModel::numberColumn, Qt::AscendingOrder);
    view->setSortingEnabled(true);
    m_maintainanceModel.applyColumnWidths(view);

    connect(m_ui->tvMaintainanceTable, &QGarageTreeView::serviceButtonClicked, this,
            &GarageForm::serviceClicked);
    connect(m_ui->tvMaintainanceTable, &QGarageTreeView::attentionButtonClicked, this,
            &GarageForm::attentionClicked);
    CellMenu::install(view, [this](QMenu &menu, const QModelIndex &cell) { offerCarActions(menu, cell); });
}

void GarageForm::setUpCarsTab()
{
    m_ui->pbSetAvailable->setIcon(garageIcon(QStringLiteral(":/icons/iconMoveRight")));
    m_ui->pbRemoveAvailable->setIcon(garageIcon(QStringLiteral(":/icons/iconMoveLeft")));
    const auto setUp = [this](QTreeView *view, CarsListModel &model) {
        view->setItemDelegate(&m_gridDelegate);
        ColumnTitles::install(view);
        view->setModel(&model);
        model.applyColumnWidths(view);
    };
    setUp(m_ui->tvAllCars, m_allCarsModel);
    setUp(m_ui->tvAvailableCars, m_availableCarsModel);
}

void GarageForm::setUpServiceLogTab()
{
    m_serviceLogFilter.setSourceModel(&m_serviceLogModel);
    m_ui->tvServiceLog->setItemDelegate(&m_gridDelegate);
    ColumnTitles::install(m_ui->tvServiceLog);
    CurrentRowTracker::install(m_ui->tvServiceLog, &m_serviceLogFilter);
    ActionsMenu::install(m_ui->tvServiceLog);
    m_serviceLogModel.applyColumnWidths(m_ui->tvServiceLog);
}

void GarageForm::setUpHints()
{
    const auto noCars = [] {
        return tr("Здесь появятся машины, которые заведены в программе хронометража.");
    };
    EmptyTableHint::install(m_ui->tvAllCars, noCars);
    EmptyTableHint::install(m_ui->tvAvailableCars, [this] {
        return m_allCarsModel.rowCount() == 0
            ? tr("Здесь появятся машины, доступные для заездов.")
            : tr("Здесь появятся машины, доступные для заездов: выделите их слева и нажмите стрелку вправо.");
    });
    EmptyTableHint::install(m_ui->tvMaintainanceTable, [this, noCars] {
        if (!m_isFilled)
            return QString();
        return m_maintainanceModel.rowCount() == 0
            ? noCars()
            : tr("Под фильтры не подходит ни одна машина. «Сброс» покажет все.");
    });
    EmptyTableHint::install(m_ui->tvServiceLog, [this] {
        if (!m_isFilled)
            return QString();
        return m_serviceLogModel.rowCount() == 0
            ? tr("Здесь появятся записи о работах и жалобы, которые сделаны на вкладке «Техника».")
            : tr("Под фильтры не подходит ни одна запись. «Сброс» покажет все.");
    });
}

void GarageForm::connectLoader()
{
    connect(&m_updater, &GarageUpdater::garageStatsUpdated, this, &GarageForm::reloadMaintainanceData);
    connect(this, &GarageForm::reloadGarageStats, &m_updater, &GarageUpdater::reloadStats);
    connect(this, &GarageForm::updateServiceTable, &m_updater, &GarageUpdater::updateService);
    connect(this, &GarageForm::deleteOperation, &m_updater, &GarageUpdater::deleteOperation);
    connect(&m_updater, &GarageUpdater::pluginSignal, this, &GarageForm::handleLoaderMessage);
}

void GarageForm::setReglament(const ServiceReglamentModel &reglament)
{
    m_reglament = &reglament;
    m_maintainanceFilterProxy.setReglament(m_reglament);
    if (auto *delegate = qobject_cast<MaintainanceDelegate *>(m_ui->tvMaintainanceTable->itemDelegate()))
        delegate->setReglament(m_reglament);
    connect(m_reglament, &QAbstractItemModel::dataChanged, this, &GarageForm::reglamentChanged);
    connect(m_reglament, &QAbstractItemModel::layoutChanged, this, &GarageForm::reglamentChanged);
}

void GarageForm::setPersonalList(const QJsonArray &personalList)
{
    m_personalList = personalList;
}

void GarageForm::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    requestReload();
}

bool GarageForm::isFileReplaced(int file)
{
    m_database.ensureOpen();
    if (m_database.fileCount() == file)
        return false;
    requestReload();
    return true;
}

void GarageForm::requestReload()
{
    emit reloadGarageStats();
}

void GarageForm::reloadMaintainanceData(QList<MaintainanceModel::MaintainanceItem> mlist,
                                        QList<ServiceLogModel::ServiceLogItem> serviceLog,
                                        QMap<int, QString> operationsList)
{
    m_database.ensureOpen();
    m_shownFile = m_database.fileCount();
    m_operations = operationsList;
    m_isFilled = true;
    refillModelCombos(modelNames(mlist));
    refillMaintainanceTable(mlist);
    refillOperationCombo();
    refillServiceLog(serviceLog);
}

void GarageForm::refillModelCombos(const QStringList &models)
{
    const QSignalBlocker noFiltering(m_ui->cbFilterModels);
    const int chosenIndex = m_ui->cbFilterModels->currentIndex();

    QVector<ComboEntry> entries {{tr("Все")}};
    for (const QString &model : models)
        entries.append({model});
    setEntries(*m_ui->cbFilterModels, entries);
    setEntries(*m_ui->cbLogFilterModels, entries);

    const bool isOffered = chosenIndex >= 0 && chosenIndex < m_ui->cbFilterModels->count();
    m_ui->cbFilterModels->setCurrentIndex(isOffered ? chosenIndex : 0);

    const int logModel = m_serviceLogFilter.modelFilter().isEmpty()
        ? 0
        : int(models.indexOf(m_serviceLogFilter.modelFilter()) + 1);
    m_ui->cbLogFilterModels->setCurrentIndex(logModel);
}

void GarageForm::refillMaintainanceTable(const QList<MaintainanceItem> &items)
{
    {
        const ColumnWidthGuard widths(m_ui->tvMaintainanceTable, m_maintainanceModel);
        const ClearbackgroundTableModel::LayoutChange change(m_maintainanceModel);
        m_maintainanceModel.updateColumns(m_reglament, m_ui->tvMaintainanceTable);
        m_maintainanceModel.setItems(items);
    }
    on_cbFilterModels_currentIndexChanged(m_ui->cbFilterModels->currentText());
}

void GarageForm::refillOperationCombo()
{
    QComboBox *combo = m_ui->cbLogFilterOperation;
    const QVariant chosen = combo->currentIndex() >= 1 ? combo->currentData() : QVariant();

    QVector<ComboEntry> entries {{tr("Все"), ServiceLogFilter::anyOperation},
                                 {tr("Невыполненные"), ServiceLogFilter::pendingOnly}};
    for (auto it = m_operations.cbegin(); it != m_operations.cend(); ++it)
        entries.append({it.value(), it.key()});
    entries.append({tr("Прочее"), complaintOperationId});
    setEntries(*combo, entries);

    const int index = chosen.isValid() ? combo->findData(chosen) : 0;
    combo->setCurrentIndex(qMax(index, 0));
}

void GarageForm::refillServiceLog(const QList<ServiceLogItem> &items)
{
    const ScrollPositionGuard place(m_ui->tvServiceLog);
    {
        const ClearbackgroundTableModel::LayoutChange change(m_serviceLogModel);
        m_serviceLogModel.clear();
        m_serviceLogModel.append(withoutRecordsBeingDeleted(items));
        m_serviceLogModel.refresh();
    }
    // The previous selection may no longer be in the list.
    on_cbLogFilterModels_activated(m_ui->cbLogFilterModels->currentIndex());
    on_cbLogFilterOperation_activated(m_ui->cbLogFilterOperation->currentIndex());
}

void GarageForm::on_pbCloseGarage_clicked()
{
    emit closeGarage();
}

void GarageForm::on_pbCloseGarage_2_clicked()
{
    emit closeGarage();
}

void GarageForm::on_pbCloseGarage_3_clicked()
{
    emit closeGarage();
}
