#include "data/garageupdater.h"

#include "data/duelist.h"
#include "data/garagestatistics.h"
#include "data/servicerecordstore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDebug>
#include <QLoggingCategory>
#include <QScopedValueRollback>
#include <QSemaphore>
#include <QVector>

namespace {

// The rest of the 10 s is left for the end of the thread on a busy machine.
constexpr qint64 finishingTimeMs = 9500;
constexpr qint64 notFinishing = -1;

void mark(const char *step)
{
    qDebug() << step << QDateTime::currentDateTime();
}

/// Creates the global objects of Qt that mark() uses. exit() destroys them in reverse order, so those that
/// the thread creates first would be destroyed while it still runs.
void makeGlobalObjects()
{
    QLoggingCategory::defaultCategory();
    QString time;
    QDebug(&time) << QDateTime::currentDateTime();
    static_cast<void>(qFormatLogMessage(QtDebugMsg, QMessageLogContext(), time));
}

} // namespace

GarageUpdater::GarageUpdater()
    : m_moduleName(QStringLiteral("garage_stats_updater")), m_deadline(notFinishing)
{
    qRegisterMetaType<QList<MaintainanceModel::MaintainanceItem>>(
        "QList<MaintainanceModel::MaintainanceItem>");
    qRegisterMetaType<QList<ServiceLogModel::ServiceLogItem>>("QList<ServiceLogModel::ServiceLogItem>");
    // "String" is kept on purpose, because the type is known under this registered name.
    qRegisterMetaType<QMap<int, QString>>("QMap<int,String>");

    makeGlobalObjects();
    // Connected before the start: afterwards the thread may already have emitted the signal.
    connect(&m_thread, &QThread::started, this, &GarageUpdater::openDatabase);
    connect(&m_thread, &QThread::finished, this, &GarageUpdater::closeDatabase, Qt::DirectConnection);
    moveToThread(&m_thread);
    m_thread.start();
}

GarageUpdater::~GarageUpdater()
{
    stop();
}

void GarageUpdater::openDatabase()
{
    m_database = std::make_unique<GarageDatabase>(QStringLiteral("garageStatsLoader"),
                                                  [this] { return mustInterruptStatement(); });
}

void GarageUpdater::closeDatabase()
{
    m_database.reset();
}

void GarageUpdater::beginFinishing()
{
    // Only the first request sets the deadline.
    qint64 current = notFinishing;
    m_deadline.compare_exchange_strong(current, QDeadlineTimer(finishingTimeMs).deadline());
}

void GarageUpdater::finishWrites()
{
    beginFinishing();
    const auto isDone = std::make_shared<QSemaphore>(); // its release may come after the wait has ended
    QMetaObject::invokeMethod(
        this, [isDone] { isDone->release(); }, Qt::QueuedConnection);
    const qint64 remaining = m_deadline - QDeadlineTimer::current().deadline();
    isDone->tryAcquire(1, int(qMax<qint64>(0, remaining)));
}

void GarageUpdater::resumeReloads()
{
    if (m_stopping)
        return;
    m_deadline = notFinishing;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_isReloadDue)
                reloadStats();
        },
        Qt::QueuedConnection);
}

void GarageUpdater::stop()
{
    beginFinishing();
    m_stopping = true;
    // Queued behind the writes requested before. Without an application no queued call is delivered.
    if (QCoreApplication::instance())
        QMetaObject::invokeMethod(
            this, [this] { m_thread.quit(); }, Qt::QueuedConnection);
    else
        m_thread.quit();
    // A handler of Qt's messages may call exit() in any thread.
    if (QThread::currentThread() != &m_thread)
        m_thread.wait();
}

bool GarageUpdater::isFinishing() const
{
    return m_deadline != notFinishing;
}

bool GarageUpdater::isTimeUp() const
{
    return m_stopping && QDeadlineTimer::current().deadline() >= m_deadline;
}

bool GarageUpdater::mustEndReload()
{
    if (isFinishing())
        m_isReloadDue = true;
    return m_isReloadDue;
}

bool GarageUpdater::mustInterruptStatement()
{
    return m_isReading ? mustEndReload() : isTimeUp();
}

void GarageUpdater::send(const QString &event, const QJsonObject &jsonData)
{
    emit pluginSignal(m_moduleName, event, jsonData);
}

void GarageUpdater::reloadStats()
{
    m_isReloadDue = false;
    if (mustEndReload())
        return;
    m_database->ensureOpen();
    const QScopedValueRollback<bool> reading(m_isReading, true);

    mark("step 0 start ");
    QList<MaintainanceItem> cars = GarageStatistics::readCars(*m_database);
    if (mustEndReload())
        return;

    GarageStatistics::readDrivingSinceService(*m_database, cars);
    mark("step 1 done ");
    if (mustEndReload())
        return;

    const QList<ServiceLogItem> serviceLog = GarageStatistics::readServiceLog(*m_database);
    mark("step 2 done ");
    if (mustEndReload())
        return;

    const QList<ModelReglament> reglament = GarageStatistics::readReglament(*m_database);
    mark("step 3 done ");
    const ServiceOperations operations = GarageStatistics::readOperations(*m_database);
    if (mustEndReload())
        return;

    const QJsonObject status {
        {QStringLiteral("servicePendingList"), DueList::pendingServices(cars, reglament)},
        {QStringLiteral("maintainanceStatus"), DueList::carStatuses(cars)},
    };
    mark("step 4 done ");

    send(QStringLiteral("update_pending_service"), status);
    emit garageStatsUpdated(cars, serviceLog, operations);
}

void GarageUpdater::updateService(QJsonArray serviceOps, QJsonArray personalList)
{
    if (isTimeUp())
        return;
    QVector<RemoteServiceRecord> records;
    QJsonArray ids;
    records.reserve(serviceOps.size());
    for (const QJsonValue &value : qAsConst(serviceOps)) {
        const QJsonObject json = value.toObject();
        records.append(RemoteServiceRecord::fromJson(json, personalList));
        ids.append(json.value(QLatin1String("id")));
    }
    const bool isStored =
        ServiceRecordStore::storeRemote(*m_database, records, [this] { return !isTimeUp(); });

    reloadStats();
    if (isStored)
        send(QStringLiteral("remote_service_move_to_archive"), {{QStringLiteral("idList"), ids}});
}

void GarageUpdater::deleteOperation(int id, int remoteId)
{
    if (isTimeUp())
        return;
    const bool isCommitted = ServiceRecordStore::remove(*m_database, id, [this] { return !isTimeUp(); });
    if (!isCommitted && isTimeUp())
        return;

    send(QStringLiteral("remote_service_delete"),
         {{QStringLiteral("remoteId"), remoteId}, {QStringLiteral("localId"), id}});
    reloadStats();
}
